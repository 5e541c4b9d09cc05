// SPDX-License-Identifier: MIT
#include "tests/daemon/devicedaemonfixture.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "macros/macrorecord.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace DaemonTestDocuments;

namespace DaemonTestDocuments {
QVariantMap profile(const QString &name, const QVariantMap &keys)
{
    return {{u"ProfileName"_s, name}, {u"Keys"_s, keys}, {u"BrightnessKBNormal"_s, 3}};
}

QVariantMap keyEntry(int command, const QVariant &param1)
{
    return {{u"command"_s, command}, {u"param1"_s, param1}, {u"param2"_s, 0}};
}

QVariantMap startDocument()
{
    const QVariantMap macro{{u"MacroName"_s, u"M"_s}, {u"delay"_s, 20}, {u"sequence"_s, QVariantMap()}};
    return SettingsDocument::completed(
        {{u"Profiles"_s, QVariantList{profile(u"A"_s, {{u"58"_s, keyEntry(17, 1)},
                                                       {u"59"_s, keyEntry(17, 9)},
                                                       {u"60"_s, keyEntry(46, u"prog"_s)}}),
                                      profile(u"B"_s, {{u"4"_s, keyEntry(20, 0)}})}},
         {u"Macros"_s, QVariantList{macro, macro}},
         {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

QVariantMap macro(const QString &name, uint key)
{
    return MacroRecord::withEvents(
        {{u"MacroName"_s, name}},
        {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = 10, .argument = key}),
         MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = 10, .argument = key})});
}

QVariantMap macroEntry(int index, int repeat)
{
    return {{u"command"_s, 10}, {u"param1"_s, index}, {u"param2"_s, repeat}};
}

QVariantMap documentWithMacros()
{
    const QVariantMap keys{{u"58"_s, macroEntry(0, 254)}, {u"59"_s, macroEntry(1, 255)}, {u"60"_s, keyEntry(17, 1)}};
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{profile(u"A"_s, keys), profile(u"B"_s, keys)}},
                                        {u"Macros"_s, QVariantList{macro(u"First"_s, 4), macro(u"Second"_s, 5)}},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

} // namespace DaemonTestDocuments

void DeviceDaemonFixture::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    start(startDocument());
}

void DeviceDaemonFixture::start(const QVariantMap &document)
{
    mDaemon.reset();
    mKeyboard = std::make_unique<VirtualKeyboard>(KeyClock{
        .now = [this] { return mNow; }, .wakeAt = [this](std::optional<KeyPath::Time> time) { mWakeTime = time; }});
    connect(mKeyboard.get(), &VirtualKeyboard::sent, this,
            [this](uint, uint usage, bool down) { mSent += (down ? u'+' : u'-') + QString::number(usage); });
    DaemonServices services{
        .sendReply =
            [this](const QString &port, qint32 command, const QVariantMap &reply) {
                mReplies += {port, command, reply};
                if (mOnReply)
                    mOnReply();
            },
        .postNotification =
            [this](const QString &name, const QVariantMap &userInfo) {
                mNotifications += {name, 0, userInfo};
            },
        .watchClient = [this](const QString &port) { mWatchedClient = port; },
        .launchProgram = [this](const QString &program) { mLaunched += program; },
        .now = [this] { return mNow; },
        .sinceBoot = [this] { return mNow; },
        .wakeAt = [this](std::optional<KeyPath::Time> time) { mDaemonWakeTime = time; },
    };
    mDaemon = std::make_unique<DeviceDaemon>(*mStore, *mKeyboard, std::move(services), document);
}

void DeviceDaemonFixture::cleanup()
{
    mDaemon.reset();
    mKeyboard.reset();
    mStore.reset();
    mTemporary.reset();
    mReplies.clear();
    mNotifications.clear();
    mSent.clear();
    mLaunched.clear();
    mWatchedClient.clear();
    mOnReply = {};
    mNow = 0ms;
    mWakeTime.reset();
    mDaemonWakeTime.reset();
}

void DeviceDaemonFixture::send(Command command, QVariantMap request, const QString &port)
{
    request.insert(u"ProductID"_s, 271);
    if (!port.isEmpty())
        request.insert(u"ResponseMsgPortName"_s, port);
    mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request));
}

DeviceDaemonFixture::Message DeviceDaemonFixture::replyTo(Command command, const QVariantMap &request)
{
    mReplies.clear();
    send(command, request);
    return mReplies.size() == 1 ? mReplies.first() : Message{u"%1 replies"_s.arg(mReplies.size()), -1, {}};
}

QStringList DeviceDaemonFixture::takeNotificationNames()
{
    QStringList names;
    for (const Message &message : std::exchange(mNotifications, {}))
        names += message.to;
    return names;
}

QVariantMap DeviceDaemonFixture::notification(const QString &name) const
{
    for (const Message &message : mNotifications) {
        if (message.to == name)
            return message.values;
    }
    return {{u"missing"_s, name}};
}

void DeviceDaemonFixture::passTime(std::chrono::microseconds end)
{
    const auto isNext = [end](const auto &time, const auto &other) {
        return time && *time <= end && (!other || *time <= *other);
    };
    while (true) {
        if (isNext(mWakeTime, mDaemonWakeTime)) {
            mNow = std::max(mNow, *std::exchange(mWakeTime, std::nullopt));
            mKeyboard->keys().wake();
        } else if (isNext(mDaemonWakeTime, mWakeTime)) {
            mNow = std::max(mNow, *std::exchange(mDaemonWakeTime, std::nullopt));
            mDaemon->wake();
        } else {
            break;
        }
    }
    mNow = end;
}

void DeviceDaemonFixture::startWithMacros()
{
    start(documentWithMacros());
}

QVariantMap DeviceDaemonFixture::storedDocument() const
{
    return PropertyList::readPropertyListFile(mTemporary->filePath(u"settings.plist"_s)).valueOr({});
}
