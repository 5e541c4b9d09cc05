// SPDX-License-Identifier: MIT
// The daemon without a bus: a real store and a virtual keyboard, with replies, notifications and time in the test's
// hands.
#include "daemon/devicedaemon.h"
#include "app/util/propertylist.h"
#include "app/util/qlcoreutility.h"
#include "daemon/settingsdocument.h"
#include "daemon/virtualkeyboard.h"
#include "macros/macrorecord.h"
#include "tests/support/filesizelimit.h"

#include <QDir>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DaemonProtocol::Command;

namespace {

struct Message
{
    QString to; // port of a reply, name of a notification
    qint32 command = 0;
    QVariantMap values;
};

QVariantMap profile(const QString &name, const QVariantMap &keys = {})
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

const QString client = u"TestReplyPort"_s;

} // namespace

class DeviceDaemonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void openingTellsWhetherTheKeyboardIsThere();
    void openingTakesTheClientsFactorySettingsOnlyWhenThereIsNothingElse();
    void everyReplyCarriesStatusAndCommand_data();
    void everyReplyCarriesStatusAndCommand();
    void changeIsOnTheDiskBeforeItsReply();
    void requestWithoutReplyPortIsObeyedSilently();
    void repliesToTheOwnPortAreNotSent();
    void garbageIsDropped_data();
    void garbageIsDropped();
    void unknownCommandIsAnswered_data();
    void unknownCommandIsAnswered();
    void changeThatCannotBeWrittenChangesNothing();
    void profileUpdatedNamesTheSource_data();
    void profileUpdatedNamesTheSource();
    void profileUpdatedFollowsEveryChangeAndNothingElse();
    void firmwareVersionComesByNotificationAlone();

    void recordsAMacro();
    void appendsToAMacro();
    void newRecordingWithoutEventsEmptiesTheMacro();
    void savingWithoutRecordingChangesNothing();
    void recordingFollowsItsMacroWhenRowsMove();
    void unsavedRecordingSurvivesAFullDisk();
    void capturesSingleKeys();
    void capturesKeysForAnEditedEvent();
    void capturedKeysDoNotReachTheComputer();
    void captureNeedsSomebodyAndAKeyboard();
    void captureEndsWithItsClient();
    void captureEndsWithRelease();

    void keysReachTheComputerByTheActiveProfile();
    void keySwitchesTheProfile();
    void heldKeyOutlivesTheProfileThatAnotherKeySwitches();
    void keyLaunchesAProgram();
    void removalLetsGoOfKeysAndCaptures();
    void gameModeIsToggledAndStored();
    void gameModeMakesTheCommandKeysDead();
    void brightnessKeysChangeTheActiveProfile();
    void keyPlaysAMacroAtItsTimes();
    void macroMayBeLateButDoesNotDrift();
    void changeStopsTheMacrosItConcerns_data();
    void changeStopsTheMacrosItConcerns();
    void recordingStopsMacrosAndDoesNotHearThem();
    void macroIsStoppedWhenItsKeySwitchesAway();
    void impossibleMacrosAreRefused_data();
    void impossibleMacrosAreRefused();
    void brightnessKeysAreKeysOfTheConsumerPage();
    void lightFollowsTheActiveProfile();
    void lightIsOffWithoutTheKeyboard();
    void recordsAMacroOnTheFly();
    void recordingOnTheFlyLetsTheKeysThrough();
    void onTheFlyKeyMustBeOneThatPlaysMacros();
    void onTheFlyGivesWayToClients_data();
    void onTheFlyGivesWayToClients();
    void onTheFlyEndsWithTheKeyboard();
    void onTheFlyIsNotEndedByAClientThatQuits();
    void onTheFlyMacroThatCannotBeStoredIsNone();
    void shutDownLetsGoOfEveryKey();
    void heldKeyIsLetGoOfAfterTheClientReleasesTheDevice();
    void randomUseLeavesNoKeyDown();
    void randomMessagesLeaveTheDaemonAliveAndTheDocumentValid();

private:
    void send(Command command, QVariantMap request = {}, const QString &port = client);
    Message replyTo(Command command, const QVariantMap &request = {});
    int statusOf(Command command, const QVariantMap &request = {})
    {
        return replyTo(command, request).values.value(u"ReturnStatus"_s, -1).toInt();
    }
    void pressMacroKey() { QCOMPARE(mKeyboard->pressMacroKey(), VirtualKeyboard::Result::done); }
    void press(int usage) { QCOMPARE(mKeyboard->press(7, static_cast<uint>(usage)), VirtualKeyboard::Result::done); }
    void release(int usage)
    {
        QCOMPARE(mKeyboard->release(7, static_cast<uint>(usage)), VirtualKeyboard::Result::done);
    }
    /// Lets time pass until `end`, calling the daemon when it wants to be called.
    void passTime(std::chrono::microseconds end);
    /// Starts a daemon with two macros: F1 plays the first until pressed again, F2 the second until released.
    void startWithMacros();
    QStringList takeNotificationNames();
    QVariantMap notification(const QString &name) const;
    QVariantMap storedDocument() const
    {
        return PropertyList::readPropertyListFile(mTemporary->filePath(u"settings.plist"_s)).value_or(QVariantMap());
    }
    void start(const QVariantMap &document);

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<DeviceDaemon> mDaemon;
    QList<Message> mReplies;
    QList<Message> mNotifications;
    QStringList mSent; // "+4", "-4": what the computer saw
    QStringList mLaunched;
    QString mWatchedClient;
    std::chrono::microseconds mNow = 0ms;
    std::optional<std::chrono::microseconds> mWakeTime; // what the daemon has asked for
    std::function<void()> mOnReply;
};

void DeviceDaemonTest::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QCOMPARE(mStore->open(), SettingsStore::OpenResult::open);
    start(startDocument());
}

void DeviceDaemonTest::start(const QVariantMap &document)
{
    mDaemon.reset();
    mKeyboard = std::make_unique<VirtualKeyboard>(KeyClock{
        .now = [this] { return mNow; }, .wakeAt = [this](std::optional<KeyPath::Time> time) { mWakeTime = time; }});
    connect(mKeyboard.get(), &VirtualKeyboard::sent, this,
            [this](uint, uint usage, bool down) { mSent += (down ? u'+' : u'-') + QString::number(usage); });
    DaemonOutlets outlets{
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
    };
    mDaemon = std::make_unique<DeviceDaemon>(*mStore, *mKeyboard, std::move(outlets), document);
}

void DeviceDaemonTest::cleanup()
{
    mDaemon.reset();
    mKeyboard.reset();
    mStore.reset();
    mTemporary.reset();
    mReplies.clear();
    mNotifications.clear();
    mSent.clear();
    mLaunched.clear();
    mOnReply = {};
    mNow = 0ms;
    mWakeTime.reset();
}

void DeviceDaemonTest::send(Command command, QVariantMap request, const QString &port)
{
    request.insert(u"ProductID"_s, 271);
    if (!port.isEmpty())
        request.insert(u"ResponseMsgPortName"_s, port);
    mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request));
}

Message DeviceDaemonTest::replyTo(Command command, const QVariantMap &request)
{
    mReplies.clear();
    send(command, request);
    return mReplies.size() == 1 ? mReplies.first() : Message{u"%1 replies"_s.arg(mReplies.size()), -1, {}};
}

QStringList DeviceDaemonTest::takeNotificationNames()
{
    QStringList names;
    for (const Message &message : std::exchange(mNotifications, {}))
        names += message.to;
    return names;
}

QVariantMap DeviceDaemonTest::notification(const QString &name) const
{
    for (const Message &message : mNotifications) {
        if (message.to == name)
            return message.values;
    }
    return {{u"missing"_s, name}};
}

// Requests

void DeviceDaemonTest::openingTellsWhetherTheKeyboardIsThere()
{
    const QVariantMap request{{u"ProductName"_s, u"Kestra"_s},
                              {u"IsDeviceWired"_s, 1},
                              {u"DefaultQlPlistPath"_s, u"/nowhere/Kestra.plist"_s}};
    QCOMPARE(replyTo(Command::openDevice, request).values, (QVariantMap{{u"ReturnStatus"_s, 1}}));
    mKeyboard->remove();
    QCOMPARE(replyTo(Command::openDevice, request).values, (QVariantMap{{u"ReturnStatus"_s, 0}}));
}

void DeviceDaemonTest::openingTakesTheClientsFactorySettingsOnlyWhenThereIsNothingElse()
{
    const QString path = mTemporary->filePath(u"Kestra.plist"_s);
    const QVariantMap factory{{u"Default Settings"_s, QVariantMap{{u"Profiles"_s, QVariantList{profile(u"Factory"_s)}},
                                                                  {u"Macros"_s, QVariantList()}}}};
    QVERIFY(PropertyList::writeFileAtomically(path, QlCoreUtility::convertDictionaryToData(factory).value()));
    const auto activeName = [&] {
        return SettingsDocument::activeProfile(mDaemon->document()).value(u"ProfileName"_s).toString();
    };

    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, path}});
    QCOMPARE(activeName(), u"A"_s);

    start(SettingsDocument::minimal());
    mDaemon->setAwaitsFactorySettings(true);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no factory settings"_s));
    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, u"/nowhere/Kestra.plist"_s}});
    QCOMPARE(activeName(), u"Default Profile"_s);
    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, path}});
    QCOMPARE(activeName(), u"Factory"_s);

    start(SettingsDocument::minimal());
    mDaemon->setAwaitsFactorySettings(true);
    send(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"Mine"_s)}});
    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, path}});
    QCOMPARE(activeName(), u"Mine"_s); // a change is never thrown away for factory settings
}

void DeviceDaemonTest::everyReplyCarriesStatusAndCommand_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QStringList>("replyKeys");
    const QVariantMap event = MacroRecord::eventRecord({1, 0, 7, 4});
    const QStringList status{u"ReturnStatus"_s};
    const QStringList withDocument{u"ReturnDictionary"_s, u"ReturnStatus"_s};
    const auto row = [](const char *name, int command, const QVariantMap &request, const QStringList &keys) {
        QTest::newRow(name) << command << request << keys;
    };
    row("0", 0, {}, status);
    row("4", 4, {}, {u"AllDevSettings"_s, u"ReturnStatus"_s});
    row("5", 5, {{u"DeviceSettingsDictionary"_s, profile(u"N"_s)}}, withDocument);
    row("6", 6, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"AutoSwitchOn"_s, 1}}}},
        withDocument);
    row("7", 7, {{u"AllProfiles"_s, QVariantList{profile(u"N"_s)}}}, withDocument);
    row("9", 9, {{u"ProfileID"_s, 0}}, withDocument);
    row("10", 10, {{u"ProfileID"_s, 1}}, withDocument);
    row("18", 18, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}, status);
    row("19", 19, {}, status);
    row("21", 21, {}, status);
    row("22", 22, {{u"macroID"_s, 0}}, status);
    row("25", 25, {{u"MacroContents"_s, QVariantMap{{u"macroID"_s, 0}, {u"MacroName"_s, u"N"_s}}}}, status);
    row("27", 27, {{u"IndexOfMacroSequence"_s, 0}}, {u"MacroSequences"_s, u"ReturnStatus"_s});
    row("29", 29, {}, status);
    row("30", 30, {}, status);
    row("32", 32, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"N"_s}}}}, status);
    row("33", 33, {{u"macroID"_s, 0}}, status);
    row("34", 34, {{u"macroID"_s, 0}, {u"delay"_s, 0}, {u"HasNoDelay"_s, true}}, status);
}

void DeviceDaemonTest::everyReplyCarriesStatusAndCommand()
{
    QFETCH(int, command);
    QFETCH(QVariantMap, request);
    const Message reply = replyTo(static_cast<Command>(command), request);
    QCOMPARE(reply.to, client);
    QCOMPARE(reply.command, command);
    QTEST(QStringList(reply.values.keys()), "replyKeys");
    QCOMPARE(reply.values.value(u"ReturnStatus"_s).toInt(), command == 0 ? 1 : 0);
    if (reply.values.contains(u"ReturnDictionary"_s))
        QCOMPARE(reply.values.value(u"ReturnDictionary"_s).toMap(), mDaemon->document());
}

void DeviceDaemonTest::changeIsOnTheDiskBeforeItsReply()
{
    QVariantMap onDisk;
    mOnReply = [&] { onDisk = storedDocument(); };
    const Message reply = replyTo(Command::switchProfile, {{u"ProfileID"_s, 1}});
    QCOMPARE(SettingsDocument::activeProfileIndex(onDisk), 1);
    QCOMPARE(onDisk, reply.values.value(u"ReturnDictionary"_s).toMap());
}

void DeviceDaemonTest::requestWithoutReplyPortIsObeyedSilently()
{
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}, QString());
    QVERIFY(mReplies.isEmpty());
    QCOMPARE(SettingsDocument::activeProfileIndex(mDaemon->document()), 1);
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, QString()}}));
}

void DeviceDaemonTest::repliesToTheOwnPortAreNotSent()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"names the daemon's own port"_s));
    send(Command::readSettings, {}, u"QuillCoreEngineMsgPort"_s);
    QVERIFY(mReplies.isEmpty());
}

void DeviceDaemonTest::garbageIsDropped_data()
{
    QTest::addColumn<std::optional<QByteArray>>("data");
    QTest::newRow("no data") << std::optional<QByteArray>();
    QTest::newRow("garbage") << std::optional(QByteArray("bplist00garbage"));
    QTest::newRow("zeros") << std::optional(QByteArray(100, '\0'));
    QTest::newRow("an array") << PropertyList::writeBinary(QVariantList{1, 2});
}

void DeviceDaemonTest::garbageIsDropped()
{
    QFETCH(std::optional<QByteArray>, data);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is not a dictionary and is dropped"_s));
    mDaemon->handleMessage(static_cast<qint32>(Command::switchProfile), data);
    QVERIFY(mReplies.isEmpty());
    QVERIFY(mNotifications.isEmpty());
    QCOMPARE(mDaemon->document(), startDocument());
}

void DeviceDaemonTest::unknownCommandIsAnswered_data()
{
    QTest::addColumn<int>("command");
    for (const int command : {-1, 1, 2, 8, 26, 31, 35, 36, 39, 1000, 2'147'483'647})
        QTest::addRow("%d", command) << command;
}

void DeviceDaemonTest::unknownCommandIsAnswered()
{
    QFETCH(int, command);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"unknown command"_s));
    const Message reply = replyTo(static_cast<Command>(command));
    QCOMPARE(reply.values, (QVariantMap{{u"ReturnStatus"_s, static_cast<int>(Status::unknownCommand)}}));
    QCOMPARE(reply.command, command);
    QCOMPARE(mDaemon->document(), startDocument());
}

void DeviceDaemonTest::changeThatCannotBeWrittenChangesNothing()
{
    send(Command::switchProfile, {{u"ProfileID"_s, 1}});
    const QVariantMap before = mDaemon->document();
    mNotifications.clear();
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
        const Message reply = replyTo(Command::switchProfile, {{u"ProfileID"_s, 0}});
        QCOMPARE(reply.values.value(u"ReturnStatus"_s), QVariant(static_cast<int>(Status::notSaved)));
        QCOMPARE(reply.values.value(u"ReturnDictionary"_s).toMap(), before);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::done);
    }
    QCOMPARE(mDaemon->document(), before);
    QCOMPARE(storedDocument(), before);
    QVERIFY(mNotifications.isEmpty());
    QVERIFY(!mKeyboard->isGameModeShown());
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 0}}), 0); // there is room again
}

void DeviceDaemonTest::profileUpdatedNamesTheSource_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QVariant>("given");
    QTest::addColumn<QString>("source");
    QTest::newRow("the configurator's port")
        << u"KeyboardConfiguratorReplyPort"_s << QVariant() << u"org.quillkestra.Configurator"_s;
    QTest::newRow("another port") << u"kestractl.42"_s << QVariant() << u"kestractl.42"_s;
    QTest::newRow("the request says so") << u"KeyboardConfiguratorReplyPort"_s << QVariant(u"mine"_s) << u"mine"_s;
    QTest::newRow("not text") << u"kestractl.42"_s << QVariant(3) << u"kestractl.42"_s;
    QTest::newRow("nobody") << QString() << QVariant() << QString();
}

void DeviceDaemonTest::profileUpdatedNamesTheSource()
{
    QFETCH(QString, port);
    QFETCH(QVariant, given);
    QFETCH(QString, source);
    QVariantMap request{{u"ProfileID"_s, 1}};
    if (given.isValid())
        request.insert(u"Source App"_s, given);
    send(Command::switchProfile, request, port);
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, source}}));
}

void DeviceDaemonTest::profileUpdatedFollowsEveryChangeAndNothingElse()
{
    bool isReplied = false;
    mOnReply = [&] { isReplied = mNotifications.isEmpty(); };
    send(Command::switchProfile, {{u"ProfileID"_s, 1}});
    QVERIFY(isReplied); // the reply first, then the notification
    QCOMPARE(takeNotificationNames(), QStringList{u"Profile Updated 271"_s});
    send(Command::switchProfile, {{u"ProfileID"_s, 1}});
    send(Command::readSettings);
    send(Command::removeAllEvents, {{u"macroID"_s, 0}});
    QCOMPARE(takeNotificationNames(), QStringList());
    send(Command::addMacro, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"N"_s}}}});
    QCOMPARE(takeNotificationNames(), QStringList{u"Profile Updated 271"_s});
}

void DeviceDaemonTest::firmwareVersionComesByNotificationAlone()
{
    send(Command::queryFirmwareVersion);
    QCOMPARE(notification(u"commandReplyNotification271"_s),
             (QVariantMap{
                 {u"MessageID"_s, 14}, {u"ReturnStatus"_s, 0}, {u"FirmwareVersion"_s, mKeyboard->firmwareVersion()}}));
    mNotifications.clear();
    mKeyboard->remove();
    send(Command::queryFirmwareVersion);
    QCOMPARE(notification(u"commandReplyNotification271"_s),
             (QVariantMap{{u"MessageID"_s, 14},
                          {u"ReturnStatus"_s, static_cast<int>(Status::deviceAbsent)},
                          {u"FirmwareVersion"_s, QString()}}));
    QVERIFY(mReplies.isEmpty());
}

// Captures

void DeviceDaemonTest::recordsAMacro()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    mNow += 15ms;
    release(4);
    QCOMPARE(mNotifications.size(), 2);
    QCOMPARE(mNotifications.at(0).to, u"MacroSequence271"_s);
    QCOMPARE(mNotifications.at(0).values, (QVariantMap{{u"messagesArray"_s, QStringList{u"Key Press A"_s}}}));
    QCOMPARE(mNotifications.at(1).values,
             (QVariantMap{{u"messagesArray"_s, QStringList{u"0.015 seconds delay\n"_s, u"Key Release A"_s}}}));
    QCOMPARE(mDaemon->document(), startDocument()); // nothing is stored before it is asked for
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    press(5);
    QCOMPARE(mNotifications.size(), 2);
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(replyTo(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}})
                 .values.value(u"MacroSequences"_s)
                 .toStringList(),
             QStringList({u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s}));
    QCOMPARE(storedDocument(), mDaemon->document());
}

void DeviceDaemonTest::appendsToAMacro()
{
    recordsAMacro();
    mNotifications.clear();
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 1}}), 0);
    press(6);
    QCOMPARE(notification(u"MacroSequence271"_s).value(u"messagesArray"_s).toStringList(),
             QStringList({u"0.020 seconds delay\n"_s, u"Key Press C"_s}));
    release(6);
    // Saving also ends a recording that nobody stopped.
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 1}}), 0);
    QCOMPARE(replyTo(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}})
                 .values.value(u"MacroSequences"_s)
                 .toStringList(),
             QStringList({u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s, u"0.020 seconds delay\n"_s,
                          u"Key Press C"_s, u"0.000 seconds delay\n"_s, u"Key Release C"_s}));
}

void DeviceDaemonTest::newRecordingWithoutEventsEmptiesTheMacro()
{
    recordsAMacro();
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    QVERIFY(MacroRecord::events(SettingsDocument::macros(mDaemon->document()).at(1).toMap()).isEmpty());
}

void DeviceDaemonTest::savingWithoutRecordingChangesNothing()
{
    recordsAMacro();
    const QVariantMap before = mDaemon->document();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nothing recorded"_s));
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}),
             static_cast<int>(Status::nothingRecorded));
    QCOMPARE(mDaemon->document(), before);
}

void DeviceDaemonTest::recordingFollowsItsMacroWhenRowsMove()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    release(4);
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nothing recorded"_s));
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}),
             static_cast<int>(Status::nothingRecorded));
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 0}}), 0);
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(MacroRecord::events(SettingsDocument::macros(mDaemon->document()).first().toMap()).size(), 2);
}

void DeviceDaemonTest::unsavedRecordingSurvivesAFullDisk()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
        QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}),
                 static_cast<int>(Status::notSaved));
    }
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(MacroRecord::events(SettingsDocument::macros(mDaemon->document()).first().toMap()).size(), 2);
}

void DeviceDaemonTest::capturesSingleKeys()
{
    press(225);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(224);
    press(6);
    release(224);
    press(7);
    const auto captured = [](int key, int modifiers) {
        return QVariantMap{{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifiers}};
    };
    QCOMPARE(mNotifications.size(), 3);
    QCOMPARE(mNotifications.at(0).to, u"SingleKeyEvent271"_s);
    QCOMPARE(mNotifications.at(0).values, captured(224, 0x02)); // itself is no modifier of it
    QCOMPARE(mNotifications.at(1).values, captured(6, 0x03));
    QCOMPARE(mNotifications.at(2).values, captured(7, 0x02));
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    press(8);
    QCOMPARE(mNotifications.size(), 3);
}

void DeviceDaemonTest::capturesKeysForAnEditedEvent()
{
    QCOMPARE(statusOf(Command::startEditHid), 0);
    press(225);
    QCOMPARE(mNotifications.size(), 1);
    QCOMPARE(mNotifications.at(0).to, u"SingleKeyEvent1048"_s);
    QCOMPARE(mNotifications.at(0).values, (QVariantMap{{u"singleKey"_s, 225}, {u"singleKeyModif"_s, 0}}));
    QCOMPARE(mKeyboard->press(9, 1), VirtualKeyboard::Result::done); // a mouse button is no key
    QCOMPARE(mNotifications.size(), 1);
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    press(8);
    QCOMPARE(mNotifications.size(), 1);
}

void DeviceDaemonTest::capturedKeysDoNotReachTheComputer()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(5);
    release(4);
    release(5);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    press(6);
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    release(6);
    press(6);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+6"_s}));
}

void DeviceDaemonTest::captureNeedsSomebodyAndAKeyboard()
{
    const QVariantMap recording{{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}};
    const QList<std::pair<Command, QVariantMap>> captures{
        {Command::startMacroRecording, recording}, {Command::startEditHid, {}}, {Command::startSingleKeyRecording, {}}};
    for (const auto &[command, request] : captures) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
        send(command, request, QString());
        press(4);
        QCOMPARE(mSent.takeLast(), u"+4"_s); // not captured
        release(4);
    }
    mKeyboard->remove();
    for (const auto &[command, request] : captures) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"device absent"_s));
        QCOMPARE(statusOf(command, request), static_cast<int>(Status::deviceAbsent));
    }
    mKeyboard->attach();
    for (const QVariantMap &request : {QVariantMap{{u"macroID"_s, 2}, {u"isAppendRecording"_s, 0}},
                                       QVariantMap{{u"macroID"_s, -1}, {u"isAppendRecording"_s, 0}}}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"index out of range"_s));
        QCOMPARE(statusOf(Command::startMacroRecording, request), static_cast<int>(Status::indexOutOfRange));
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}}), static_cast<int>(Status::malformedRequest));
    QCOMPARE(mWatchedClient, QString());
}

void DeviceDaemonTest::captureEndsWithItsClient()
{
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    QCOMPARE(mWatchedClient, client);
    mDaemon->clientVanished(u"SomebodyElse"_s);
    press(4);
    QCOMPARE(mSent, QStringList());
    mDaemon->clientVanished(client);
    QCOMPARE(mWatchedClient, QString());
    press(5);
    QCOMPARE(mSent, QStringList{u"+5"_s});
}

void DeviceDaemonTest::captureEndsWithRelease()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    mReplies.clear();
    send(Command::releaseDevice, {}, QString());
    QVERIFY(mReplies.isEmpty());
    press(5);
    QCOMPARE(mSent, QStringList{u"+5"_s});
}

// The keyboard

void DeviceDaemonTest::keysReachTheComputerByTheActiveProfile()
{
    press(4);
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}); // which disables the key that is down
    release(4);
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    send(Command::updateProfile,
         {{u"ProfileID"_s, 1},
          {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(16, 30)}}}}}});
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+30"_s, u"-30"_s}));
}

void DeviceDaemonTest::keySwitchesTheProfile()
{
    press(58);
    QCOMPARE(SettingsDocument::activeProfileIndex(mDaemon->document()), 1);
    QCOMPARE(storedDocument(), mDaemon->document());
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
    release(58);
    QCOMPARE(mSent, QStringList());

    send(Command::switchProfile, {{u"ProfileID"_s, 0}});
    mNotifications.clear();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"profile 9, which does not exist"_s));
    press(59);
    QCOMPARE(SettingsDocument::activeProfileIndex(mDaemon->document()), 0);
    QVERIFY(mNotifications.isEmpty());
}

void DeviceDaemonTest::heldKeyOutlivesTheProfileThatAnotherKeySwitches()
{
    press(4);
    press(58); // profile B, which disables A
    release(4);
    press(4);
    release(4);
    release(58);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
}

void DeviceDaemonTest::keyLaunchesAProgram()
{
    press(60);
    release(60);
    QCOMPARE(mLaunched, QStringList{u"prog"_s});
}

void DeviceDaemonTest::removalLetsGoOfKeysAndCaptures()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    mKeyboard->remove();
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QCOMPARE(takeNotificationNames(), QStringList{u"Device Removed 271"_s});
    QCOMPARE(mKeyboard->press(7, 4), VirtualKeyboard::Result::notAttached);
    mKeyboard->remove(); // once
    mKeyboard->attach();
    mKeyboard->attach();
    QCOMPARE(notification(u"Device Attached 271"_s), (QVariantMap{{u"ProductID"_s, 271}}));
    QCOMPARE(takeNotificationNames(), QStringList{u"Device Attached 271"_s});
    press(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+4"_s}));
}

void DeviceDaemonTest::gameModeIsToggledAndStored()
{
    QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::done);
    QVERIFY(SettingsDocument::isGameModeOn(mDaemon->document()));
    QVERIFY(SettingsDocument::isGameModeOn(storedDocument()));
    QVERIFY(mKeyboard->isGameModeShown());
    QCOMPARE(takeNotificationNames(), QStringList({u"Game Mode Pressed 271"_s, u"Profile Updated 271"_s}));
    QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::done);
    QVERIFY(!SettingsDocument::isGameModeOn(mDaemon->document()));
    mKeyboard->remove();
    QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::notAttached);
}

void DeviceDaemonTest::gameModeMakesTheCommandKeysDead()
{
    press(227);
    QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::done);
    QCOMPARE(mSent, QStringList({u"+227"_s, u"-227"_s}));
    release(227);
    press(231);
    release(231);
    QCOMPARE(mSent.size(), 2);
    start(storedDocument()); // the daemon starts again, in game mode
    press(231);
    release(231);
    QCOMPARE(mSent.size(), 2);
    QCOMPARE(mKeyboard->pressGameMode(), VirtualKeyboard::Result::done);
    press(231);
    QCOMPARE(mSent.takeLast(), u"+231"_s);
}

void DeviceDaemonTest::brightnessKeysChangeTheActiveProfile()
{
    QCOMPARE(mKeyboard->shownBrightness(), 3);
    QCOMPARE(mKeyboard->changeBrightness(1), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->shownBrightness(), 4);
    QCOMPARE(SettingsDocument::activeProfile(storedDocument()).value(u"BrightnessKBNormal"_s), QVariant(4));
    QCOMPARE(notification(u"Illumination Updated 271"_s), (QVariantMap{{u"BrightnessKBNormal"_s, 4}}));
    QCOMPARE(takeNotificationNames(), QStringList({u"Illumination Updated 271"_s, u"Profile Updated 271"_s}));
    QCOMPARE(mKeyboard->changeBrightness(1), VirtualKeyboard::Result::done); // as bright as it goes
    QCOMPARE(takeNotificationNames(), QStringList());
    QCOMPARE(mKeyboard->setBrightness(0), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->setBrightness(5), VirtualKeyboard::Result::noSuchBrightness);
    QCOMPARE(mKeyboard->setBrightness(-1), VirtualKeyboard::Result::noSuchBrightness);
    QCOMPARE(mKeyboard->shownBrightness(), 0);
}

// Macros

void DeviceDaemonTest::passTime(std::chrono::microseconds end)
{
    while (mWakeTime && *mWakeTime <= end) {
        mNow = std::max(mNow, *std::exchange(mWakeTime, std::nullopt));
        mKeyboard->keys().wake();
    }
    mNow = end;
}

void DeviceDaemonTest::startWithMacros()
{
    start(documentWithMacros());
}

void DeviceDaemonTest::keyPlaysAMacroAtItsTimes()
{
    startWithMacros();
    press(59);
    QCOMPARE(mSent, QStringList());
    passTime(9999us);
    QCOMPARE(mSent, QStringList());
    passTime(10ms);
    QCOMPARE(mSent, QStringList{u"+5"_s});
    passTime(31ms);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s, u"+5"_s}));
    release(59);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s, u"+5"_s, u"-5"_s}));
    QVERIFY(!mWakeTime); // nothing wakes the daemon any more
}

void DeviceDaemonTest::macroMayBeLateButDoesNotDrift()
{
    startWithMacros();
    press(58);
    release(58);
    QRandomGenerator random(58);
    for (int event = 1; event <= 1000; ++event) {
        QVERIFY(mWakeTime);
        QCOMPARE(mWakeTime->count(), event * 10'000);
        mNow = *mWakeTime + std::chrono::microseconds(random.bounded(3000));
        mKeyboard->keys().wake();
        QCOMPARE(mSent.size(), event);
    }
    press(58);
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

void DeviceDaemonTest::changeStopsTheMacrosItConcerns_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<bool>("stopsFirst");
    QTest::addColumn<bool>("stopsSecond");
    const auto row = [](const char *name, Command command, const QVariantMap &request, bool first, bool second) {
        QTest::newRow(name) << static_cast<int>(command) << request << first << second;
    };
    const QVariantMap event = MacroRecord::eventRecord({.command = 1, .delayMs = 1, .argument = 6});
    row("edit an event", Command::updateEvent, {{u"macroID"_s, 0}, {u"sequenceIdx"_s, 0}, {u"sequence"_s, event}}, true,
        false);
    row("remove an event", Command::removeEvent, {{u"macroID"_s, 1}, {u"macroEventTableIndex"_s, 0}}, false, true);
    row("remove all events", Command::removeAllEvents, {{u"macroID"_s, 0}}, true, false);
    row("set a delay", Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 1}, {u"delay"_s, 5}}, false, true);
    row("set all delays", Command::setAllDelays, {{u"macroID"_s, 0}, {u"delay"_s, 0}, {u"HasNoDelay"_s, true}}, true,
        false);
    row("delete the first", Command::deleteMacro, {{u"macroID"_s, 0}}, true, false);
    row("delete the second", Command::deleteMacro, {{u"macroID"_s, 1}}, false, true);
    row("rename", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"X"_s}, {u"macroID"_s, 0}}}}, false, false);
    row("add a macro", Command::addMacro, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"X"_s}}}}, false, false);
    row("switch the profile", Command::switchProfile, {{u"ProfileID"_s, 1}}, true, true);
    row("switch to the same profile", Command::switchProfile, {{u"ProfileID"_s, 0}}, false, false);
    row("assign the first key anew", Command::updateProfile,
        {{u"ProfileID"_s, 0},
         {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"59"_s, macroEntry(1, 255)}}}}}},
        true, false);
    row("read", Command::readSettings, {}, false, false);
    row("a change that is refused", Command::deleteMacro, {{u"macroID"_s, 9}}, false, false);
    row("record", Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}, true, true);
    row("capture", Command::startSingleKeyRecording, {}, true, true);
}

void DeviceDaemonTest::changeStopsTheMacrosItConcerns()
{
    QFETCH(int, command);
    QFETCH(QVariantMap, request);
    QFETCH(bool, stopsFirst);
    QFETCH(bool, stopsSecond);
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    startWithMacros();
    press(58);
    release(58);
    press(59);
    passTime(15ms);
    QCOMPARE(mSent, (QStringList{u"+4"_s, u"+5"_s}));
    mSent.clear();
    // It is stopped before the reply tells that it is changed.
    QStringList sentBeforeReply;
    mOnReply = [&] { sentBeforeReply = mSent; };
    send(static_cast<Command>(command), request);
    mOnReply = {};
    QStringList expected;
    if (stopsFirst)
        expected += u"-4"_s;
    if (stopsSecond)
        expected += u"-5"_s;
    QCOMPARE(sentBeforeReply, expected);
    mSent.clear();
    passTime(25ms);
    QCOMPARE(mSent.contains(u"-4"_s), !stopsFirst);
    QCOMPARE(mSent.contains(u"-5"_s), !stopsSecond);
    release(59);
    mKeyboard->remove();
    QVERIFY(mKeyboard->sentKeys().isEmpty());
    QLoggingCategory::setFilterRules(QString());
}

void DeviceDaemonTest::recordingStopsMacrosAndDoesNotHearThem()
{
    startWithMacros();
    press(58);
    release(58);
    passTime(15ms);
    send(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}});
    QCOMPARE(mSent, (QStringList{u"+4"_s, u"-4"_s}));
    takeNotificationNames();
    passTime(1s);
    QCOMPARE(takeNotificationNames(), QStringList());
    QCOMPARE(mSent.size(), 2);
}

void DeviceDaemonTest::macroIsStoppedWhenItsKeySwitchesAway()
{
    startWithMacros();
    press(59);
    passTime(15ms);
    press(60);
    QCOMPARE(SettingsDocument::activeProfileIndex(mDaemon->document()), 1);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s}));
    passTime(1s);
    release(60);
    release(59);
    QCOMPARE(mSent.size(), 2);
}

void DeviceDaemonTest::impossibleMacrosAreRefused_data()
{
    QTest::addColumn<QVariant>("contents");
    QTest::addColumn<int>("status");
    const auto named = [](const QVariant &sequence) {
        return QVariant(QVariantMap{{u"MacroName"_s, u"X"_s}, {u"sequence"_s, sequence}});
    };
    const auto withEvents = [&](const QVariant &events) { return named(QVariantMap{{u"Events"_s, events}}); };
    QTest::newRow("no dictionary") << QVariant(5) << 2;
    QTest::newRow("name that is no text") << QVariant(QVariantMap{{u"MacroName"_s, 5}}) << 2;
    QTest::newRow("sequence that is an array") << named(QVariantList{1}) << 2;
    QTest::newRow("events that are text") << withEvents(u"A"_s) << 2;
    QTest::newRow("event that is text") << withEvents(QVariantList{u"A"_s}) << 2;
    QTest::newRow("delay that is text") << withEvents(QVariantList{QVariantMap{{u"delay"_s, u"soon"_s}}}) << 2;
    QTest::newRow("one event too many") << withEvents(
        QVariantList(MacroRecord::maximumEvents + 1, QVariant(QVariantMap())))
                                        << 4;
    QTest::newRow("900 000 events") << withEvents(QVariantList(900'000, QVariant(QVariantMap()))) << 4;
    // Stored as they are: what the engine does not understand it does not play.
    QTest::newRow("another page") << withEvents(QVariantList{MacroRecord::eventRecord({.page = 12})}) << 0;
    QTest::newRow("no such key") << withEvents(QVariantList{MacroRecord::eventRecord({.argument = 4000})}) << 0;
    QTest::newRow("negative delay") << withEvents(QVariantList{MacroRecord::eventRecord({.delayMs = -1})}) << 0;
    QTest::newRow("another key of the sequence") << named(QVariantMap{{u"MacroEvents"_s, QVariantList{1, 2}}}) << 0;
}

void DeviceDaemonTest::impossibleMacrosAreRefused()
{
    QFETCH(QVariant, contents);
    QFETCH(int, status);
    startWithMacros();
    const QVariantMap before = mDaemon->document();
    if (status != 0)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"request 32"_s));
    QCOMPARE(statusOf(Command::addMacro, {{u"MacroContents"_s, contents}}), status);
    if (status != 0) {
        QVERIFY(mDaemon->document() == before);
        return;
    }
    QVariantMap stored = SettingsDocument::macros(mDaemon->document()).constLast().toMap();
    stored.remove(u"macroID"_s);
    QCOMPARE(stored, contents.toMap());
    send(Command::updateProfile,
         {{u"ProfileID"_s, 0},
          {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(10, 2)}}}}}});
    press(4);
    passTime(1s);
    release(4);
    QCOMPARE(mSent, QStringList());
}

void DeviceDaemonTest::brightnessKeysAreKeysOfTheConsumerPage()
{
    QCOMPARE(mKeyboard->press(12, 0x7A), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->shownBrightness(), 2);
    QCOMPARE(notification(u"Illumination Updated 271"_s), (QVariantMap{{u"BrightnessKBNormal"_s, 2}}));
    QCOMPARE(mKeyboard->press(12, 0x7A), VirtualKeyboard::Result::done); // still down
    QCOMPARE(mKeyboard->shownBrightness(), 2);
    QCOMPARE(mKeyboard->release(12, 0x7A), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->press(12, 0x79), VirtualKeyboard::Result::done);
    mKeyboard->releaseAll();
    QCOMPARE(mKeyboard->shownBrightness(), 3);
    QVERIFY(mSent.isEmpty()); // the keyboard's own business
    QCOMPARE(mKeyboard->press(12, 0x78), VirtualKeyboard::Result::noSuchKey);
    QCOMPARE(mKeyboard->press(12, 0x7B), VirtualKeyboard::Result::noSuchKey);
    // Captured keys are keys of the keyboard page: brightness stays adjustable meanwhile.
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    QCOMPARE(mKeyboard->press(12, 0x79), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->shownBrightness(), 4);
}

void DeviceDaemonTest::lightFollowsTheActiveProfile()
{
    QStringList seen;
    connect(mKeyboard.get(), &VirtualKeyboard::lightChanged, this,
            [&seen](Backlight::Color color) { seen += Backlight::colorText(color); });
    const auto update = [this](const QVariantMap &settings) {
        return statusOf(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, settings}});
    };
    QVERIFY(mKeyboard->shownLight().isOff()); // the profile does not say that it is on
    const QVariantMap blue{{u"Red"_s, 0.0}, {u"Green"_s, 0.0}, {u"Blue"_s, 1.0}};
    QCOMPARE(update({{u"BacklightLED"_s, 1}, {u"LEDKBColors"_s, QVariantList{blue}}}), 0);
    QCOMPARE(mKeyboard->setBrightness(4), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->setBrightness(0), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->setBrightness(2), VirtualKeyboard::Result::done);
    QCOMPARE(update({{u"BacklightLED"_s, 0}}), 0);
    QCOMPARE(update({{u"BacklightLED"_s, 1}}), 0);
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0); // which has no light
    QCOMPARE(seen, QStringList({u"#0000bf"_s, u"#0000ff"_s, u"#000000"_s, u"#000080"_s, u"#000000"_s, u"#000080"_s,
                                u"#000000"_s}));
}

void DeviceDaemonTest::lightIsOffWithoutTheKeyboard()
{
    QCOMPARE(statusOf(Command::updateProfile,
                      {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"BacklightLED"_s, 1}}}}),
             0);
    QVERIFY(!mKeyboard->shownLight().isOff());
    mKeyboard->remove();
    QVERIFY(mKeyboard->shownLight().isOff());
    mKeyboard->attach();
    QVERIFY(!mKeyboard->shownLight().isOff());
}

void DeviceDaemonTest::recordsAMacroOnTheFly()
{
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::recording);
    press(4);
    mNow += 30ms;
    release(4);
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::awaitingKey);
    mSent.clear();
    QCOMPARE(takeNotificationNames(), QStringList()); // until it is stored
    press(65);
    release(65);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
    QVERIFY(mSent.isEmpty()); // the key says what is to play the macro, and nothing else
    const QVariantMap posted = notification(u"Saved New OTFM 271"_s);
    QCOMPARE(takeNotificationNames(), QStringList({u"Saved New OTFM 271"_s, u"Profile Updated 271"_s}));
    const QVariantMap stored = storedDocument();
    QCOMPARE(posted, (QVariantMap{{u"AllMacros"_s, SettingsDocument::macros(stored)},
                                  {u"ActiveProfile"_s, SettingsDocument::activeProfile(stored)}}));
    QCOMPARE(SettingsDocument::macros(stored).size(), 3);
    const QVariantMap macro = SettingsDocument::macros(stored).at(2).toMap();
    QCOMPARE(MacroRecord::events(macro),
             (QVariantList{MacroRecord::eventRecord({1, 0, 7, 4}), MacroRecord::eventRecord({0, 30, 7, 4})}));
    const QVariantMap entry = SettingsDocument::activeProfile(stored).value(u"Keys"_s).toMap().value(u"65"_s).toMap();
    QCOMPARE(entry, (QVariantMap{{u"command"_s, 10}, {u"param1"_s, 2}, {u"param2"_s, 1}}));
}

void DeviceDaemonTest::recordingOnTheFlyLetsTheKeysThrough()
{
    pressMacroKey();
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QCOMPARE(takeNotificationNames(), QStringList()); // no client records: nobody wants the lines
    pressMacroKey();
    pressMacroKey(); // thrown away
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
    press(5);
    release(5);
    QCOMPARE(mSent.mid(2), QStringList({u"+5"_s, u"-5"_s}));
    QCOMPARE(SettingsDocument::macros(mDaemon->document()).size(), 2);
}

void DeviceDaemonTest::onTheFlyKeyMustBeOneThatPlaysMacros()
{
    pressMacroKey();
    press(4);
    release(4);
    pressMacroKey();
    mSent.clear();
    press(100); // a key that the keyboard does not have
    release(100);
    QCOMPARE(mKeyboard->press(9, 1), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->release(9, 1), VirtualKeyboard::Result::done);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::awaitingKey);
    press(225); // a modifier alone is a key like any other
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
    release(225);
    QVERIFY(mSent.isEmpty());
    QVERIFY(SettingsDocument::activeProfile(storedDocument()).value(u"Keys"_s).toMap().contains(u"225"_s));
}

void DeviceDaemonTest::onTheFlyGivesWayToClients_data()
{
    QTest::addColumn<int>("command");
    QTest::newRow("macro recording") << int(Command::startMacroRecording);
    QTest::newRow("single key") << int(Command::startSingleKeyRecording);
    QTest::newRow("edited event") << int(Command::startEditHid);
}

void DeviceDaemonTest::onTheFlyGivesWayToClients()
{
    QFETCH(int, command);
    for (const bool isKeyAwaited : {false, true}) {
        pressMacroKey();
        press(4);
        release(4);
        if (isKeyAwaited)
            pressMacroKey();
        QCOMPARE(statusOf(Command(command), {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
        pressMacroKey(); // the keys are the client's
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
        send(Command::releaseDevice);
    }
    QCOMPARE(SettingsDocument::macros(mDaemon->document()).size(), 2);
}

void DeviceDaemonTest::onTheFlyEndsWithTheKeyboard()
{
    for (const bool isKeyAwaited : {false, true}) {
        pressMacroKey();
        press(4);
        release(4);
        if (isKeyAwaited)
            pressMacroKey();
        mKeyboard->remove();
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
        QCOMPARE(mKeyboard->pressMacroKey(), VirtualKeyboard::Result::notAttached);
        mKeyboard->attach();
        mSent.clear();
        press(5);
        release(5);
        QCOMPARE(mSent, QStringList({u"+5"_s, u"-5"_s}));
    }
}

void DeviceDaemonTest::onTheFlyIsNotEndedByAClientThatQuits()
{
    pressMacroKey();
    press(4);
    release(4);
    send(Command::releaseDevice);
    pressMacroKey();
    send(Command::releaseDevice);
    send(Command::stopMacroRecording);
    send(Command::stopSingleKeyRecording);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::awaitingKey);
    press(5);
    QCOMPARE(SettingsDocument::macros(mDaemon->document()).size(), 3);
}

void DeviceDaemonTest::onTheFlyMacroThatCannotBeStoredIsNone()
{
    pressMacroKey();
    press(4);
    release(4);
    pressMacroKey();
    const QVariantMap before = mDaemon->document();
    takeNotificationNames();
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be stored"_s));
        press(5);
    }
    QCOMPARE(mDaemon->document(), before);
    QCOMPARE(takeNotificationNames(), QStringList());
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyRecorder::State::off);
}

void DeviceDaemonTest::shutDownLetsGoOfEveryKey()
{
    press(4);
    press(225);
    mDaemon->shutDown();
    QCOMPARE(mSent, QStringList({u"+4"_s, u"+225"_s, u"-225"_s, u"-4"_s}));
}

void DeviceDaemonTest::heldKeyIsLetGoOfAfterTheClientReleasesTheDevice()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(5);
    send(Command::releaseDevice, {}, QString());
    release(5);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

// Property, from the keyboard to the computer: keys, clients and the plug in any order leave nothing down.
void DeviceDaemonTest::randomUseLeavesNoKeyDown()
{
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    QRandomGenerator random(30);
    const QList<int> keys{4, 5, 58, 225, 227};
    const auto randomKeys = [&] {
        QVariantMap mappings;
        for (const int key : keys) {
            const int command = QList<int>{45, 16, 20, 17, 10}.at(random.bounded(5));
            mappings.insert(QString::number(key), command == 10
                                                      ? macroEntry(random.bounded(3), random.bounded(253, 256))
                                                      : keyEntry(command, random.bounded(8)));
        }
        return QVariantMap{{u"Keys"_s, mappings}};
    };
    startWithMacros();
    for (int step = 0; step < 3000; ++step) {
        switch (random.bounded(30)) {
        case 14: send(Command::removeAllEvents, {{u"macroID"_s, random.bounded(3)}}); break;
        case 10:
            send(Command::addMacro, {{u"MacroContents"_s, macro(u"Another"_s, uint(4 + random.bounded(2)))}});
            send(Command::deleteMacro, {{u"macroID"_s, random.bounded(2)}});
            break;
        case 11:
        case 12:
        case 13: passTime(mNow + std::chrono::microseconds(random.bounded(40'000))); break;
        case 0:
            send(Command::updateProfile,
                 {{u"ProfileID"_s, random.bounded(2)}, {u"DeviceSettingsDictionary"_s, randomKeys()}});
            break;
        case 1: send(Command::switchProfile, {{u"ProfileID"_s, random.bounded(2)}}); break;
        case 2: (void)mKeyboard->pressGameMode(); break;
        case 3: send(Command::startSingleKeyRecording); break;
        case 4:
        case 5: send(Command::stopSingleKeyRecording); break;
        case 6: mKeyboard->remove(); break;
        case 7:
        case 8: mKeyboard->attach(); break;
        case 9: (void)mKeyboard->pressMacroKey(); break;
        default: {
            const auto key = static_cast<uint>(keys.at(random.bounded(int(keys.size()))));
            (void)(random.bounded(2) == 0 ? mKeyboard->press(7, key) : mKeyboard->release(7, key));
        }
        }
        QVERIFY(mKeyboard->isAttached() || mKeyboard->sentKeys().isEmpty());
    }
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(mSent.size() > 100);
    mKeyboard->attach();
    mKeyboard->releaseAll();
    send(Command::switchProfile, {{u"ProfileID"_s, 0}});
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}); // one of the two stops the macros
    QVERIFY(mKeyboard->sentKeys().isEmpty());
    QVERIFY(!mWakeTime);
}

// Chance: any command, any bytes, keys and plugging in between.
void DeviceDaemonTest::randomMessagesLeaveTheDaemonAliveAndTheDocumentValid()
{
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    QRandomGenerator random(271);
    const QStringList keys{u"ProfileID"_s,
                           u"DeviceSettingsDictionary"_s,
                           u"AllProfiles"_s,
                           u"macroID"_s,
                           u"isAppendRecording"_s,
                           u"sequenceIdx"_s,
                           u"sequence"_s,
                           u"MacroContents"_s,
                           u"MacroName"_s,
                           u"delay"_s,
                           u"HasNoDelay"_s,
                           u"DefaultQlPlistPath"_s,
                           u"ResponseMsgPortName"_s,
                           u"Source App"_s,
                           u"ProductID"_s};
    const auto value = [&]() -> QVariant {
        switch (random.bounded(7)) {
        case 0: return random.bounded(-2, 4);
        case 1: return random.bounded(2) == 1;
        case 2: return random.generateDouble();
        case 3: return u"text"_s;
        case 4: return QVariantMap{{u"MacroName"_s, u"x"_s}, {u"macroID"_s, 0}};
        case 5: return QVariantList{profile(u"x"_s)};
        default: return QByteArray("\0\1", 2);
        }
    };
    for (int round = 0; round < 3000; ++round) {
        const qint32 command = random.bounded(-2, 45);
        QVariantMap request;
        for (int count = random.bounded(8); count > 0; --count)
            request.insert(keys.at(random.bounded(int(keys.size()))), value());
        QByteArray data = QlCoreUtility::convertDictionaryToData(request).value();
        if (random.bounded(4) == 0)
            data[random.bounded(int(data.size()))] = static_cast<char>(random.bounded(256));
        mDaemon->handleMessage(command, data);
        const auto usage = static_cast<uint>(random.bounded(4, 60));
        (void)(random.bounded(2) ? mKeyboard->press(7, usage) : mKeyboard->release(7, usage));
        if (random.bounded(100) == 0)
            random.bounded(2) ? mKeyboard->remove() : mKeyboard->attach();
        const QString problem = SettingsDocument::problemOf(mDaemon->document());
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(storedDocument(), mDaemon->document());
    mKeyboard->remove();
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

QTEST_GUILESS_MAIN(DeviceDaemonTest)
#include "devicedaemontest.moc"
