// SPDX-License-Identifier: MIT
// Follows the daemon on the bus: whether it runs, why its active profile is active, and problems of its settings files.
// Never waits for the daemon, which may also come later, go, and come back. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class ServiceStatus : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to follow the daemon. Must be called once.
    void start();

    /// Must be called when the daemon has not answered a request: daemonAnswers() then reports that it responds again.
    void awaitAnswer();

    /// Absent until the bus has answered.
    [[nodiscard]] std::optional<bool> isRunning() const { return mIsRunning; }
    /// The application for which the active profile is active; empty when it was chosen by hand, absent when unknown.
    [[nodiscard]] const std::optional<QString> &profileApplication() const { return mProfileApplication; }
    /// Whether GNOME Shell would report the application in front if it had the extension.
    [[nodiscard]] bool needsShellExtension() const { return mNeedsShellExtension; }

Q_SIGNALS:
    void daemonHasCome();
    void daemonHasGone();
    void daemonAnswers();
    /// isRunning(), profileApplication() or needsShellExtension() has changed.
    void changed();
    /// needsShellExtension() has become true.
    void shellExtensionMissing();
    /// A problem of the settings files since the daemon started, as English sentences. Each is reported once.
    void problemFound(const QString &problem);

private Q_SLOTS:
    void readProblems();
    void setProfileApplication(const QString &application);
    void setNeedsShellExtension(bool needsIt);

private:
    void setRunning(bool isRunning);
    void readAll();

    std::optional<bool> mIsRunning;
    bool mAwaitsAnswer = false;
    std::optional<QString> mProfileApplication;
    bool mNeedsShellExtension = false;
    QStringList mProblems; ///< the reported ones
};
