// SPDX-License-Identifier: MIT
// The effects of a request: its reply, the settings on the disk, and the notifications to the other clients.
#include "base/document.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace DaemonTestDocuments;

class DeviceDaemonTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void openingReportsTheKeyboard();
    void openingAcceptsFactorySettingsOnlyWithoutOtherSettings();
    void everyReplyCarriesStatusAndCommand_data();
    void everyReplyCarriesStatusAndCommand();
    void changeIsOnTheDiskBeforeItsReply();
    void requestWithoutReplyPortIsCarriedOutSilently();
    void repliesToTheOwnPortAreNotSent();
    void invalidReplyPortIsIgnored_data();
    void invalidReplyPortIsIgnored();
    void garbageIsDropped_data();
    void garbageIsDropped();
    void unknownCommandIsAnswered_data();
    void unknownCommandIsAnswered();
    void changeThatCannotBeWrittenChangesNothing();
    void profileUpdatedNamesTheSource_data();
    void profileUpdatedNamesTheSource();
    void profileUpdatedFollowsEveryChangeAndNothingElse();
    void firmwareVersionIsSentOnlyAsANotification();
    void failureReturnsTheDocumentToSomeCommandsOnly();
    void releaseIsNotReplied();
    void factorySettingsOfAClientAreAnnouncedToTheOthers();
    void failureIsLoggedWithItsFault_data();
    void failureIsLoggedWithItsFault();
};

void DeviceDaemonTest::openingReportsTheKeyboard()
{
    const QVariantMap request{{u"ProductName"_s, u"Kestra"_s},
                              {u"IsDeviceWired"_s, 1},
                              {u"DefaultQlPlistPath"_s, u"/nowhere/Kestra.plist"_s}};
    QCOMPARE(replyTo(Command::openDevice, request).values, (QVariantMap{{u"ReturnStatus"_s, 1}}));
    mKeyboard->remove();
    QCOMPARE(replyTo(Command::openDevice, request).values, (QVariantMap{{u"ReturnStatus"_s, 0}}));
}

void DeviceDaemonTest::openingAcceptsFactorySettingsOnlyWithoutOtherSettings()
{
    const QString path = mTemporary->filePath(u"Kestra.plist"_s);
    const QVariantMap factory{{u"Default Settings"_s, QVariantMap{{u"Profiles"_s, QVariantList{profile(u"Factory"_s)}},
                                                                  {u"Macros"_s, QVariantList()}}}};
    QVERIFY(PropertyList::writeFileAtomically(path, QlCoreUtility::convertDictionaryToData(factory).value()));
    const auto activeName = [&] {
        return Document(mDaemon->document()).activeProfile().value(u"ProfileName"_s).toString();
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
    QCOMPARE(activeName(), u"Mine"_s); // factory settings never replace a change
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
    QCOMPARE(Document(onDisk).activeProfileIndex(), 1);
    QCOMPARE(onDisk, reply.values.value(u"ReturnDictionary"_s).toMap());
}

void DeviceDaemonTest::requestWithoutReplyPortIsCarriedOutSilently()
{
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}, QString());
    QVERIFY(mReplies.isEmpty());
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, QString()}}));
}

void DeviceDaemonTest::repliesToTheOwnPortAreNotSent()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"names the daemon's own port"_s));
    send(Command::readSettings, {}, u"QuillCoreEngineMsgPort"_s);
    QVERIFY(mReplies.isEmpty());
}

void DeviceDaemonTest::invalidReplyPortIsIgnored_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("other letters") << u"\u00e9"_s;
    QTest::newRow("a pattern") << u"Test*"_s;
    QTest::newRow("another path") << u"../Port"_s;
}

void DeviceDaemonTest::invalidReplyPortIsIgnored()
{
    QFETCH(QString, port);
    for (const Command command : {Command::readSettings, Command::startSingleKeyRecording, Command::startEditHid}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"names a reply port that cannot exist"_s));
        if (command != Command::readSettings)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
        send(command, {}, port);
    }
    QVERIFY(mReplies.isEmpty());
    QVERIFY(mWatchedClient.isEmpty());
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
        QVERIFY(mKeyboard->pressGameMode());
    }
    QCOMPARE(mDaemon->document(), before);
    QCOMPARE(storedDocument(), before);
    QVERIFY(mNotifications.isEmpty());
    QVERIFY(!mKeyboard->isGameModeShown());
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 0}}), 0); // the disk has room again
}

void DeviceDaemonTest::profileUpdatedNamesTheSource_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QVariant>("given");
    QTest::addColumn<QString>("source");
    QTest::newRow("the configurator's port")
        << u"KeyboardConfiguratorReplyPort"_s << QVariant() << u"org.quillkestra.Configurator"_s;
    QTest::newRow("another port") << u"kestractl-42"_s << QVariant() << u"kestractl-42"_s;
    QTest::newRow("the request says so") << u"KeyboardConfiguratorReplyPort"_s << QVariant(u"mine"_s) << u"mine"_s;
    QTest::newRow("not text") << u"kestractl-42"_s << QVariant(3) << u"kestractl-42"_s;
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

void DeviceDaemonTest::firmwareVersionIsSentOnlyAsANotification()
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

void DeviceDaemonTest::failureReturnsTheDocumentToSomeCommandsOnly()
{
    for (const Command command : {Command::switchProfile, Command::deleteProfile}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"index out of range"_s));
        const QVariantMap values = replyTo(command, {{u"ProfileID"_s, 9}}).values;
        QCOMPARE(values.value(u"ReturnStatus"_s), QVariant(static_cast<int>(Status::indexOutOfRange)));
        // A client that receives a document assumes that the profile was deleted.
        QCOMPARE(values.contains(u"ReturnDictionary"_s), command == Command::switchProfile);
    }
}

void DeviceDaemonTest::releaseIsNotReplied()
{
    send(Command::releaseDevice);
    QVERIFY(mReplies.isEmpty());
}

void DeviceDaemonTest::factorySettingsOfAClientAreAnnouncedToTheOthers()
{
    const QString path = mTemporary->filePath(u"Kestra.plist"_s);
    const QVariantMap factory{{u"Default Settings"_s, QVariantMap{{u"Profiles"_s, QVariantList{profile(u"Factory"_s)}},
                                                                  {u"Macros"_s, QVariantList()}}}};
    QVERIFY(PropertyList::writeFileAtomically(path, QlCoreUtility::convertDictionaryToData(factory).value()));
    start(SettingsDocument::minimal());
    mDaemon->setAwaitsFactorySettings(true);
    QStringList namesBeforeReply;
    mOnReply = [&] { namesBeforeReply = takeNotificationNames(); };
    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, path}});
    QCOMPARE(namesBeforeReply, QStringList{u"Profile Updated 271"_s});
    send(Command::openDevice, {{u"DefaultQlPlistPath"_s, path}});
    QCOMPARE(namesBeforeReply, QStringList());
    QCOMPARE(takeNotificationNames(), QStringList());
}

void DeviceDaemonTest::failureIsLoggedWithItsFault_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QString>("line");
    QTest::newRow("client") << Command::switchProfile << QVariantMap{{u"ProfileID"_s, 9}}
                            << u"client: request 10 of \"TestReplyPort\": index out of range"_s;
    QTest::newRow("file") << Command::switchProfile << QVariantMap{{u"ProfileID"_s, 1}}
                          << u"file: request 10 of \"TestReplyPort\": not saved"_s;
    QTest::newRow("keyboard") << Command::startEditHid << QVariantMap()
                              << u"keyboard: request 21 of \"TestReplyPort\": device absent"_s;
}

void DeviceDaemonTest::failureIsLoggedWithItsFault()
{
    QFETCH(Command, command);
    QFETCH(QVariantMap, request);
    QFETCH(QString, line);
    mKeyboard->remove();
    const FileSizeLimit fullDisk(16);
    if (line.startsWith("file"_L1))
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
    send(command, request);
    QCOMPARE(mReplies.size(), 1);
}

QTEST_GUILESS_MAIN(DeviceDaemonTest)
#include "devicedaemontest.moc"
