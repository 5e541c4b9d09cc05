// SPDX-License-Identifier: MIT
// Macros that are recorded with the keyboard alone.
#include "base/document.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DeviceDaemonOnTheFlyTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAMacroOnTheFly();
    void recordingOnTheFlyLetsTheKeysThrough();
    void onTheFlyKeyMustBeOneThatPlaysMacros();
    void onTheFlyGivesWayToClients_data();
    void onTheFlyGivesWayToClients();
    void onTheFlyEndsWithTheKeyboard();
    void onTheFlyIsNotEndedByAClientThatQuits();
    void onTheFlyMacroThatCannotBeStoredIsDiscarded();
    void onTheFlyNeedsRoomForAMacro();
};

void DeviceDaemonOnTheFlyTest::recordsAMacroOnTheFly()
{
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::recording);
    press(4);
    mNow += 30ms;
    release(4);
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::awaitingKey);
    mSent.clear();
    QCOMPARE(takeNotificationNames(), QStringList()); // not before the macro is stored
    press(65);
    release(65);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    QVERIFY(mSent.isEmpty()); // the key selects the macro's key and sends nothing
    const QVariantMap posted = notification(u"Saved New OTFM 271"_s);
    QCOMPARE(takeNotificationNames(), QStringList({u"Saved New OTFM 271"_s, u"Profile Updated 271"_s}));
    const QVariantMap stored = storedDocument();
    QCOMPARE(posted, (QVariantMap{{u"AllMacros"_s, Document(stored).macros()},
                                  {u"ActiveProfile"_s, Document(stored).activeProfile()}}));
    QCOMPARE(Document(stored).macros().size(), 3);
    const QVariantMap macro = Document(stored).macros().at(2).toMap();
    QCOMPARE(MacroRecord::events(macro),
             (QVariantList{MacroRecord::eventRecord({1, 0, 7, 4}), MacroRecord::eventRecord({0, 30, 7, 4})}));
    const QVariantMap entry = Document(stored).activeProfile().value(u"Keys"_s).toMap().value(u"65"_s).toMap();
    QCOMPARE(entry, (QVariantMap{{u"command"_s, 10}, {u"param1"_s, 2}, {u"param2"_s, 1}}));
}

void DeviceDaemonOnTheFlyTest::recordingOnTheFlyLetsTheKeysThrough()
{
    pressMacroKey();
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QCOMPARE(takeNotificationNames(), QStringList()); // no client records, so none needs the lines
    pressMacroKey();
    pressMacroKey(); // discards the recording
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    press(5);
    release(5);
    QCOMPARE(mSent.mid(2), QStringList({u"+5"_s, u"-5"_s}));
    QCOMPARE(Document(mDaemon->document()).macros().size(), 2);
}

void DeviceDaemonOnTheFlyTest::onTheFlyKeyMustBeOneThatPlaysMacros()
{
    pressMacroKey();
    press(4);
    release(4);
    pressMacroKey();
    mSent.clear();
    press(100); // a key that the keyboard does not have
    release(100);
    QVERIFY(mKeyboard->press(9, 1));
    QVERIFY(mKeyboard->release(9, 1));
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::awaitingKey);
    press(225); // a modifier alone counts as an ordinary key
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    release(225);
    QVERIFY(mSent.isEmpty());
    QVERIFY(Document(storedDocument()).activeProfile().value(u"Keys"_s).toMap().contains(u"225"_s));
}

void DeviceDaemonOnTheFlyTest::onTheFlyGivesWayToClients_data()
{
    QTest::addColumn<int>("command");
    QTest::newRow("macro recording") << int(Command::startMacroRecording);
    QTest::newRow("single key") << int(Command::startSingleKeyRecording);
    QTest::newRow("edited event") << int(Command::startEditHid);
}

void DeviceDaemonOnTheFlyTest::onTheFlyGivesWayToClients()
{
    QFETCH(int, command);
    for (const bool isKeyAwaited : {false, true}) {
        pressMacroKey();
        press(4);
        release(4);
        if (isKeyAwaited)
            pressMacroKey();
        QCOMPARE(statusOf(Command(command), {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
        pressMacroKey(); // the client owns the keys
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
        send(Command::releaseDevice);
    }
    QCOMPARE(Document(mDaemon->document()).macros().size(), 2);
}

void DeviceDaemonOnTheFlyTest::onTheFlyEndsWithTheKeyboard()
{
    for (const bool isKeyAwaited : {false, true}) {
        pressMacroKey();
        press(4);
        release(4);
        if (isKeyAwaited)
            pressMacroKey();
        mKeyboard->remove();
        QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
        QVERIFY(mKeyboard->pressMacroKey() == VirtualKeyboard::Refusal::notAttached);
        mKeyboard->attach();
        mSent.clear();
        press(5);
        release(5);
        QCOMPARE(mSent, QStringList({u"+5"_s, u"-5"_s}));
    }
}

void DeviceDaemonOnTheFlyTest::onTheFlyIsNotEndedByAClientThatQuits()
{
    pressMacroKey();
    press(4);
    release(4);
    send(Command::releaseDevice);
    pressMacroKey();
    send(Command::releaseDevice);
    send(Command::stopMacroRecording);
    send(Command::stopSingleKeyRecording);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::awaitingKey);
    press(5);
    QCOMPARE(Document(mDaemon->document()).macros().size(), 3);
}

void DeviceDaemonOnTheFlyTest::onTheFlyMacroThatCannotBeStoredIsDiscarded()
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
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
}

void DeviceDaemonOnTheFlyTest::onTheFlyNeedsRoomForAMacro()
{
    QVariantList macros;
    for (int i = 0; i < MacroRecord::maximumMacros; ++i)
        macros += DaemonTestDocuments::macro(QString::number(i), 4);
    start(SettingsDocument::completed(SettingsDocument::withMacros(mDaemon->document(), macros)));
    QTest::ignoreMessage(QtWarningMsg, "file: there is no room for a macro recorded on the keyboard");
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    send(Command::deleteMacro, {{u"macroID"_s, 0}});
    pressMacroKey();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::recording);
}

QTEST_GUILESS_MAIN(DeviceDaemonOnTheFlyTest)
#include "devicedaemonontheflytest.moc"
