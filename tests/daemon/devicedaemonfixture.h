// SPDX-License-Identifier: MIT
// The daemon without a bus, for tests. It has a real store in a temporary folder and a virtual keyboard; the test
// receives its replies and notifications and sets the time. Created anew for each test function.
#pragma once

#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"

#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// Settings for the tests of the daemon.
namespace DaemonTestDocuments {
QVariantMap profile(const QString &name, const QVariantMap &keys = {});
QVariantMap keyEntry(int command, const QVariant &param1);
/// A macro that presses and releases the key, with 10 ms before each event.
QVariantMap macro(const QString &name, uint key);
QVariantMap macroEntry(int index, int repeat);
/// Two profiles, A active. F1 switches to B, F2 switches to a profile that does not exist, F3 launches a program. B
/// disables the key A.
QVariantMap startDocument();
/// Two profiles: F1 plays the first of two macros until pressed again, F2 the second until released, F3 switches to B.
QVariantMap documentWithMacros();
} // namespace DaemonTestDocuments

struct DaemonMessage
{
    QString to; // port of a reply, name of a notification
    qint32 command = 0;
    QVariantMap values;
};

class DeviceDaemonFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

protected:
    using Command = DaemonProtocol::Command;
    using Message = DaemonMessage;

    static inline const QString client = QStringLiteral("TestReplyPort");

    void send(Command command, QVariantMap request = {}, const QString &port = client);
    Message replyTo(Command command, const QVariantMap &request = {});
    int statusOf(Command command, const QVariantMap &request = {})
    {
        return replyTo(command, request).values.value(QStringLiteral("ReturnStatus"), -1).toInt();
    }
    void pressMacroKey() { QVERIFY(mKeyboard->pressMacroKey()); }
    void press(int usage) { QVERIFY(mKeyboard->press(7, static_cast<uint>(usage))); }
    void release(int usage) { QVERIFY(mKeyboard->release(7, static_cast<uint>(usage))); }
    /// Advances the time to `end`, and calls the daemon whenever it has requested a wake-up.
    void passTime(std::chrono::microseconds end);
    /// Starts a daemon with two macros: F1 plays the first until pressed again, F2 the second until released.
    void startWithMacros();
    QStringList takeNotificationNames();
    QVariantMap notification(const QString &name) const;
    QVariantMap storedDocument() const;
    /// Ends the daemon and starts one with these settings.
    void start(const QVariantMap &document);

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<DeviceDaemon> mDaemon;
    QList<Message> mReplies;
    QList<Message> mNotifications;
    QStringList mSent; // "+4", "-4": keys that the computer received
    QStringList mLaunched;
    QString mWatchedClient;
    std::chrono::microseconds mNow{};
    std::optional<std::chrono::microseconds> mWakeTime;       // requested by the keys
    std::optional<std::chrono::microseconds> mDaemonWakeTime; // requested by the daemon
    std::function<void()> mOnReply;
};
