// SPDX-License-Identifier: MIT
// Searches for a desktop while nothing tells which application is in front: at once, a few times after that, and then
// whenever something suggests that a desktop has come. Owned by the daemon's process; the daemon's thread.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"
#include "daemon/frontapplication/sessionenvironment.h"

#include <QDBusServiceWatcher>
#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <memory>

/// A daemon that waits for a desktop sleeps: it is woken by
/// - a socket of a compositor in $XDG_RUNTIME_DIR or of an X server in /tmp/.X11-unix,
/// - KWin, GNOME's shell or the user's service manager on the bus,
/// - the service manager, when the session's target ("graphical-session.target") has been started.
/// The manager does not tell that its variables change, and a desktop may take a while from its first sign to the
/// moment when it answers; therefore every sign is followed by `retries` more attempts, each after twice the pause.
class DesktopSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int retries = 6;

    /// `watch` must live longer. Nothing happens before start().
    DesktopSearch(FrontApplicationWatch &watch, const QDBusConnection &bus,
                  std::chrono::milliseconds firstPause = std::chrono::seconds(1),
                  const QString &x11Folder = QStringLiteral("/tmp/.X11-unix"));

    void start();

    /// Whether it waits with a timer running; without one only a sign wakes it.
    [[nodiscard]] bool isRetrying() const { return mRetry.isActive(); }

private Q_SLOTS:
    /// The session's target has been started or stopped.
    void jobRemoved() { signSeen(); }

private:
    void signSeen();
    void search();
    void sourceMissing();
    void sourceFound();
    void watchSigns();
    void connectToManager(bool isConnected);
    [[nodiscard]] QSet<QString> sockets() const;
    void folderChanged();

    FrontApplicationWatch &mWatch;
    QDBusConnection mBus;
    SessionEnvironment mEnvironment;
    QStringList mFolders; // in which the sockets of desktops are
    std::chrono::milliseconds mFirstPause;
    int mRetriesLeft = retries;
    bool mIsReading = false;
    QTimer mRetry;
    QSet<QString> mSockets;
    std::unique_ptr<QFileSystemWatcher> mFolderWatcher; // while signs are watched
    std::unique_ptr<QDBusServiceWatcher> mServiceWatcher;
};
