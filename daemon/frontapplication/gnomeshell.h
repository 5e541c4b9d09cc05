// SPDX-License-Identifier: MIT
// The GNOME Shell of the session: whether it runs, and whether its extension reports the application in front. Owned by
// the DaemonSession; main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>

class GnomeShell : public QObject
{
    Q_OBJECT

public:
    explicit GnomeShell(const QDBusConnection &bus);

    [[nodiscard]] bool isRunning() const { return !mOwner.isEmpty(); }
    /// Whether this unique name of the bus is the Shell's, in which the extension runs.
    [[nodiscard]] bool isShell(const QString &client) const { return isRunning() && client == mOwner; }
    /// Whether the extension of the running Shell has reported, and has not ended since.
    [[nodiscard]] bool hasReported() const { return mHasReported; }

    /// Must be called when `client`, a unique name of the bus, has reported the application in front.
    void clientReported(const QString &client);
    /// Must be called when `client`, a unique name of the bus, reports no longer.
    void clientEnded(const QString &client);

Q_SIGNALS:
    /// The running Shell has reported for the first time, or again after the end of its extension.
    void reportsBegun();
    /// The Shell that has reported is gone, or its extension has ended.
    void reportsEnded();
    /// isRunning() may have changed.
    void changed();

private:
    void setOwner(const QString &owner);

    QDBusServiceWatcher mWatcher;
    QString mOwner;
    bool mHasReported = false;
};
