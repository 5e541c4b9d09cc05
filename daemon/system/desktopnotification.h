// SPDX-License-Identifier: MIT
// What the daemon tells the user on the screen: one bubble of the desktop's notification service
// (org.freedesktop.Notifications 1.2), replaced by the next. Owned by the daemon's process; the daemon's thread.
#pragma once

#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QObject>
#include <QString>

#include <optional>

class QDBusServiceWatcher;

/// A service that is missing or does not answer is not an error. A notice that is not passing is shown when a service
/// comes: the daemon may start before the desktop.
class DesktopNotification : public QObject
{
    Q_OBJECT

public:
    struct Notice
    {
        QString summary;
        QString body;
        /// Shown for a moment and not kept; else it stays as long as the desktop has it for ordinary ones.
        bool isPassing = true;
    };

    explicit DesktopNotification(const QDBusConnection &bus) : mBus(bus) {}

    /// Does not wait; of several that come while the service is still busy with one, the last is shown.
    void show(const Notice &notice);

private:
    void send(const Notice &notice);
    void answered(const Notice &notice, const QDBusPendingReply<uint> &reply);
    void watchService();

    QDBusConnection mBus;
    quint32 mShownId = 0; // of the bubble to replace; 0: none
    bool mIsBusy = false;
    std::optional<Notice> mNext;

    // Until a notice that is not passing is shown
    QDBusServiceWatcher *mServiceWatcher = nullptr;
    std::optional<Notice> mUnshown; // which waits for a service
    bool mHasServiceCome = false;   // since the notice was sent
};
