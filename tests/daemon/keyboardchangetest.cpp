// SPDX-License-Identifier: MIT
// The daemon with one keyboard after the other: actions that began on the first end, and the second replaces it.
#include "base/document.h"
#include "base/qlcoreutility.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/system/deadlinetimer.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedkeyboard.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace KeyDocuments;
using DaemonProtocol::Command;

namespace {

constexpr quint16 keyA = 4;
constexpr quint16 switchKey = 58;

/// In profile B, A is 30.
QVariantMap startDocument()
{
    QVariantMap first = profile(u"A"_s, {{u"58"_s, entry(switchesProfile, 1)}, {u"60"_s, entry(playsMacro, 0, 254)}});
    first.insert(u"BacklightLED"_s, 1);
    first.insert(u"BrightnessKBNormal"_s, 3);
    const QVariantMap second = profile(u"B"_s, {{u"4"_s, entry(sendsKey, 30)}, {u"58"_s, entry(switchesProfile, 0)}});
    const QVariantMap holds = MacroRecord::withEvents(
        {{u"MacroName"_s, u"Holds"_s}},
        {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = 0, .argument = 20}),
         MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = 60'000, .argument = 20})});
    return document({first, second}, {holds});
}

/// Counts the calls to show the light. A keyboard that was unplugged has forgotten it.
class CountingKeyboard : public VirtualKeyboard
{
public:
    using VirtualKeyboard::VirtualKeyboard;

    void showLight(const Backlight::Settings &settings) override
    {
        ++mLightCount;
        VirtualKeyboard::showLight(settings);
    }
    [[nodiscard]] int lightCount() const { return mLightCount; }

private:
    int mLightCount = 0;
};

} // namespace

class KeyboardChangeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void oldKeyboardIsReleased();
    void newKeyboardFollowsTheDocument();
    void lightOfTheOldKeyboardGoesOut();
    void oldKeyboardIsIgnored();
    void captureEnds();
    void recordingOnTheFlyEnds();
    void attachmentIsReportedWhenItChanges_data();
    void attachmentIsReportedWhenItChanges();
    void sameKeyboardChangesNothing();
    void keyboardCanBeUsedAgain();
    void attachedKeyboardShowsTheSettingsAgain();
    void switchOnAnotherThreadIsStoredAndReported();
    void switchOnAnotherThreadIsUndoneWhenItCannotBeStored();
    void removalOnAnotherThreadEndsTheCapture();
    void macroKeyActsAtOnce();
    void macroKeyWithoutKeysInBetweenDiscards();
    void macroKeyIsLeftAloneWhileAClientHasTheKeys();

private:
    void press(VirtualKeyboard &keyboard, quint16 key) { QVERIFY(keyboard.press(HidUsage::keyboardPage, key)); }
    void send(Command command, QVariantMap request = {})
    {
        request.insert(u"ResponseMsgPortName"_s, u"Port"_s);
        mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request));
    }
    [[nodiscard]] int activeProfile() const { return Document(mDaemon->document()).activeProfileIndex(); }

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    std::unique_ptr<VirtualKeyboard> mFirst;
    std::unique_ptr<VirtualKeyboard> mSecond;
    std::unique_ptr<ThreadedKeyboard> mThreaded;
    std::unique_ptr<DeviceDaemon> mDaemon;
    QStringList mNotifications;
    QString mWatchedClient;
};

void KeyboardChangeTest::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    mFirst = std::make_unique<VirtualKeyboard>();
    mSecond = std::make_unique<VirtualKeyboard>();
    mThreaded = std::make_unique<ThreadedKeyboard>();
    mDaemon = std::make_unique<DeviceDaemon>(
        *mStore, *mFirst,
        DaemonServices{.sendReply = [](const QString &, qint32, const QVariantMap &) {},
                       .postNotification = [this](const QString &name, const QVariantMap &) { mNotifications += name; },
                       .watchClient = [this](const QString &port) { mWatchedClient = port; },
                       .launchProgram = [](const QString &) {},
                       .now = DeadlineTimer::now},
        startDocument());
}

void KeyboardChangeTest::cleanup()
{
    mDaemon->shutDown();
    mDaemon.reset();
    mThreaded.reset();
    mSecond.reset();
    mFirst.reset();
    mStore.reset();
    mTemporary.reset();
    mNotifications.clear();
}

void KeyboardChangeTest::oldKeyboardIsReleased()
{
    press(*mFirst, keyA);
    press(*mFirst, 60);
    QTRY_COMPARE(mFirst->sentKeys().size(), 2); // including the macro's key
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mFirst->sentKeys().isEmpty());
    QVERIFY(mSecond->sentKeys().isEmpty());
}

void KeyboardChangeTest::newKeyboardFollowsTheDocument()
{
    QVERIFY(mFirst->pressGameMode());
    QVERIFY(mSecond->shownLight().isOff());
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mSecond->isGameModeShown());
    QVERIFY(!mSecond->shownLight().isOff());
    press(*mSecond, HidUsage::leftCommand); // disabled by game mode
    QVERIFY(mSecond->sentKeys().isEmpty());
    press(*mSecond, switchKey);
    QCOMPARE(activeProfile(), 1);
    press(*mSecond, keyA);
    QCOMPARE(mSecond->sentKeys(), (QList<HidUsage>{{HidUsage::keyboardPage, 30}}));
    QVERIFY(mSecond->shownLight().isOff());
}

void KeyboardChangeTest::lightOfTheOldKeyboardGoesOut()
{
    send(Command::updateProfile,
         {{u"ProfileID"_s, 0},
          {u"DeviceSettingsDictionary"_s, QVariantMap{{u"LEDKBEffects"_s, Backlight::spectrumCyclingEffect}}}});
    QVERIFY(mFirst->lightSleep());
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mFirst->shownLight().isOff());
    QVERIFY(!mFirst->lightSleep());
    QVERIFY(mSecond->lightSleep());
    mFirst->remove();
    mFirst->attach();
    QVERIFY(!mFirst->lightSleep());
    mDaemon->useKeyboard(*mFirst);
    QVERIFY(mFirst->lightSleep());
    QVERIFY(!mFirst->shownLight().isOff());
}

void KeyboardChangeTest::oldKeyboardIsIgnored()
{
    constexpr VirtualKeyboard::Refusal notInUse = VirtualKeyboard::Refusal::notInUse;
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mFirst->press(HidUsage::keyboardPage, keyA) == notInUse);
    QVERIFY(mFirst->press(HidUsage::keyboardPage, switchKey) == notInUse);
    QVERIFY(mFirst->pressedKeys().isEmpty());
    QVERIFY(mFirst->pressGameMode() == notInUse);
    QVERIFY(mFirst->setBrightness(0) == notInUse);
    QVERIFY(mFirst->changeBrightness(1) == notInUse);
    QVERIFY(mFirst->pressMacroKey() == notInUse);
    mFirst->remove();
    QVERIFY(mFirst->sentKeys().isEmpty());
    QVERIFY(mNotifications.isEmpty());
    QVERIFY(mDaemon->document() == startDocument());
    QCOMPARE(mSecond->shownOnTheFly(), OnTheFlyState::off);
}

void KeyboardChangeTest::captureEnds()
{
    send(Command::startSingleKeyRecording);
    QCOMPARE(mWatchedClient, u"Port"_s);
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mWatchedClient.isEmpty());
    press(*mSecond, keyA);
    QCOMPARE(mSecond->sentKeys().size(), 1);
    QVERIFY(mNotifications.isEmpty());
}

void KeyboardChangeTest::recordingOnTheFlyEnds()
{
    QVERIFY(mFirst->pressMacroKey());
    mDaemon->useKeyboard(*mSecond);
    QCOMPARE(mFirst->shownOnTheFly(), OnTheFlyState::off);
    QCOMPARE(mSecond->shownOnTheFly(), OnTheFlyState::off);
}

void KeyboardChangeTest::attachmentIsReportedWhenItChanges_data()
{
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<bool>("isSecond");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("both there") << true << true << QStringList();
    QTest::newRow("none there") << false << false << QStringList();
    QTest::newRow("the second is missing") << true << false << QStringList{u"Device Removed 271"_s};
    QTest::newRow("the second is there") << false << true << QStringList{u"Device Attached 271"_s};
}

void KeyboardChangeTest::attachmentIsReportedWhenItChanges()
{
    QFETCH(bool, isFirst);
    QFETCH(bool, isSecond);
    if (!isFirst)
        mFirst->remove();
    if (!isSecond)
        mSecond->remove();
    mNotifications.clear();
    mDaemon->useKeyboard(*mSecond);
    QTEST(mNotifications, "told");
}

void KeyboardChangeTest::sameKeyboardChangesNothing()
{
    press(*mFirst, keyA);
    send(Command::startSingleKeyRecording);
    mDaemon->useKeyboard(*mFirst);
    QCOMPARE(mFirst->sentKeys().size(), 1);
    QCOMPARE(mWatchedClient, u"Port"_s);
}

void KeyboardChangeTest::keyboardCanBeUsedAgain()
{
    press(*mFirst, keyA);
    mDaemon->useKeyboard(*mSecond);
    QVERIFY(mFirst->release(HidUsage::keyboardPage, keyA));
    mDaemon->useKeyboard(*mFirst);
    press(*mFirst, switchKey);
    QCOMPARE(activeProfile(), 1);
    press(*mFirst, keyA);
    QCOMPARE(mFirst->sentKeys(), (QList<HidUsage>{{HidUsage::keyboardPage, 30}}));
}

void KeyboardChangeTest::attachedKeyboardShowsTheSettingsAgain()
{
    CountingKeyboard keyboard;
    mDaemon->useKeyboard(keyboard);
    QCOMPARE(keyboard.lightCount(), 1);
    keyboard.remove();
    QCOMPARE(keyboard.lightCount(), 1);
    keyboard.attach();
    QCOMPARE(keyboard.lightCount(), 2);
    mDaemon->useKeyboard(*mFirst);
}

void KeyboardChangeTest::switchOnAnotherThreadIsStoredAndReported()
{
    mDaemon->useKeyboard(*mThreaded);
    mThreaded->press(switchKey);
    mThreaded->press(keyA);
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(30)); });
    QCOMPARE(activeProfile(), 0); // this thread has not received the switch yet
    QTRY_COMPARE(activeProfile(), 1);
    QCOMPARE(mNotifications, QStringList{u"Profile Updated 271"_s});
    mDaemon->useKeyboard(*mFirst);
    mThreaded->runOnKeys([](NotingChannel &channel) { QCOMPARE(channel.downCount(), std::size_t(0)); });
}

void KeyboardChangeTest::switchOnAnotherThreadIsUndoneWhenItCannotBeStored()
{
    mDaemon->useKeyboard(*mThreaded);
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        mThreaded->press(switchKey);
        mThreaded->release(switchKey);
        QCoreApplication::processEvents();
    }
    QCOMPARE(activeProfile(), 0);
    mThreaded->press(keyA);
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(keyA)); });
    mThreaded->release(keyA);
    mThreaded->press(switchKey); // the disk has room again
    QTRY_COMPARE(activeProfile(), 1);
}

void KeyboardChangeTest::removalOnAnotherThreadEndsTheCapture()
{
    mDaemon->useKeyboard(*mThreaded);
    send(Command::startSingleKeyRecording);
    mThreaded->press(keyA);
    QTRY_COMPARE(mNotifications, QStringList{u"SingleKeyEvent271"_s});
    mThreaded->runOnKeys([](NotingChannel &channel) { Q_EMIT channel.keysLost(); });
    mThreaded->setAttached(false);
    QVERIFY(mWatchedClient.isEmpty());
    mThreaded->setAttached(true);
    mThreaded->press(keyA);
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(keyA)); });
}

/// The keys come faster than the main thread, which is this one, receives any of them.
void KeyboardChangeTest::macroKeyActsAtOnce()
{
    mDaemon->useKeyboard(*mThreaded);
    const auto type = [this](quint16 key) {
        mThreaded->press(key);
        mThreaded->release(key);
    };
    mThreaded->pressMacroKey();
    type(keyA);
    mThreaded->pressMacroKey();
    mThreaded->press(60); // will play the macro
    mThreaded->runOnKeys([](NotingChannel &channel) { QCOMPARE(channel.downCount(), std::size_t(0)); });
    mThreaded->release(60);
    QTRY_VERIFY(mNotifications.contains(u"Saved New OTFM 271"_s));
    const QVariantList macros = Document(mDaemon->document()).macros();
    QCOMPARE(macros.size(), 2);
    const QVariantList events = MacroRecord::events(macros.last().toMap());
    QCOMPARE(events.size(), 2);
    QCOMPARE(MacroRecord::eventFields(events.first().toMap()).argument, keyA);
    mThreaded->press(keyA); // the computer has the keys again
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(keyA)); });
}

void KeyboardChangeTest::macroKeyWithoutKeysInBetweenDiscards()
{
    mDaemon->useKeyboard(*mThreaded);
    mThreaded->pressMacroKey();
    mThreaded->pressMacroKey();
    mThreaded->press(keyA);
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(keyA)); });
    mThreaded->release(keyA);
    mThreaded->pressMacroKey(); // starts a recording, with a key
    mThreaded->press(keyA);
    mThreaded->release(keyA);
    mThreaded->pressMacroKey();
    mThreaded->pressMacroKey(); // discards it
    mThreaded->press(keyA);
    mThreaded->runOnKeys([](NotingChannel &channel) { QVERIFY(channel.isDown(keyA)); });
    QCoreApplication::processEvents();
    QCOMPARE(Document(mDaemon->document()).macros().size(), 1);
}

void KeyboardChangeTest::macroKeyIsLeftAloneWhileAClientHasTheKeys()
{
    mDaemon->useKeyboard(*mThreaded);
    mThreaded->pressMacroKey();
    send(Command::startSingleKeyRecording); // before this thread has received the Macro key
    QCoreApplication::processEvents();
    mThreaded->press(keyA);
    QTRY_COMPARE(mNotifications, QStringList{u"SingleKeyEvent271"_s});
    mThreaded->runOnKeys([](NotingChannel &channel) { QCOMPARE(channel.downCount(), std::size_t(0)); });
    mThreaded->release(keyA);
    mThreaded->pressMacroKey();
    mThreaded->press(keyA);
    QTRY_COMPARE(mNotifications.size(), 2);
    mThreaded->runOnKeys([](NotingChannel &channel) { QCOMPARE(channel.downCount(), std::size_t(0)); });
}

QTEST_GUILESS_MAIN(KeyboardChangeTest)
#include "keyboardchangetest.moc"
