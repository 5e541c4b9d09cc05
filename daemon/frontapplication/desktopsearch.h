// SPDX-License-Identifier: MIT
// Searches for a desktop while no source reports the application in front: at once, a few times after that, and then at
// every sign of a desktop. Owned by the DaemonSession; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"
#include "daemon/frontapplication/sessionenvironment.h"

#include <QDBusServiceWatcher>
#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <memory>

/// A daemon that waits for a desktop sleeps. These signs wake it:
/// - a socket of a compositor in $XDG_RUNTIME_DIR or of an X server in /tmp/.X11-unix,
/// - KWin, GNOME's shell or the user's service manager on the bus,
/// - a start of the session's target ("graphical-session.target") by the service manager.
/// The manager does not announce changes of its variables, and a desktop may need a while after its first sign. Each
/// sign is therefore followed by `retries` more attempts, each after twice the pause.
class DesktopSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int retries = 6;

    /// `watch` must outlive this. Nothing happens before start().
    DesktopSearch(FrontApplicationWatch &watch, const QDBusConnection &bus,
                  std::chrono::milliseconds firstPause = std::chrono::seconds(1),
                  const QString &x11Folder = QStringLiteral("/tmp/.X11-unix"));

    void start();

    /// Whether a timer is running; without one only a sign wakes it.
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
    QStringList mFolders; // with the sockets of desktops
    std::chrono::milliseconds mFirstPause;
    int mRetriesLeft = retries;
    bool mIsReading = false;
    QTimer mRetry;
    QSet<QString> mSockets;
    std::unique_ptr<QFileSystemWatcher> mFolderWatcher; // while signs are watched
    std::unique_ptr<QDBusServiceWatcher> mServiceWatcher;
};
