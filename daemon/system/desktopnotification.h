// SPDX-License-Identifier: MIT
// An on-screen message of the daemon: one bubble of the desktop's notification service (org.freedesktop.Notifications
// 1.2), which the next message replaces. Owned by the DesktopNotices; main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QObject>
#include <QString>

#include <optional>

class QDBusServiceWatcher;

/// A service that is missing or does not answer is not an error. A lasting notice is sent again when a service appears,
/// because the daemon may start before the desktop.
class DesktopNotification : public QObject
{
    Q_OBJECT

public:
    struct Notice
    {
        QString summary;
        QString body;
        /// A passing notice appears for a moment and is not kept. A lasting one has the desktop's usual duration.
        bool isPassing = true;
    };

    explicit DesktopNotification(const QDBusConnection &bus) : mBus(bus) {}

    /// Does not wait. If several notices arrive while the service is busy, only the last one is shown.
    void show(const Notice &notice);

private:
    void send(const Notice &notice);
    void answered(const Notice &notice, const QDBusPendingReply<uint> &reply);
    void watchService();

    QDBusConnection mBus;
    quint32 mShownId = 0; // the bubble to replace; 0: none
    bool mIsBusy = false;
    std::optional<Notice> mNext;

    // Used until a lasting notice has been shown
    QDBusServiceWatcher *mServiceWatcher = nullptr;
    std::optional<Notice> mUnshown; // waits for a service
    bool mHasServiceCome = false;   // since the notice was sent
};
