// SPDX-License-Identifier: MIT
// The owner of the keys, and its effects on the keyboard, the watch on the client and the wake-ups.
#include "daemon/capture/capturesession.h"
#include "base/document.h"
#include "tests/support/testmain.h"

#include "daemon/capture/ontheflysession.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/daemonservices.h"
#include "macros/macrorecord.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = KeyCapture::Kind;

namespace {

constexpr uint keyA = 4;
constexpr uint keyB = 5;
constexpr uint keyEscape = 41;
constexpr MacroRecorder::Target target{.macroId = 7, .capacity = 100};

const QString client = u"Client"_s;
const QString another = u"Another"_s;
const QString program = u":1.7"_s; // the owner of the client's port

} // namespace

class CaptureSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void computerOwnsTheKeysAtFirst();
    void clientOwnsTheKeysUntilTheirRelease_data();
    void clientOwnsTheKeysUntilTheirRelease();
    void keyboardShowsTheClientThatOwnsTheKeys();
    void clientTakesTheKeysFromAnother();
    void endOfAnotherClientEndsNothing();
    void onTheFlyKeyIsAwaitedForNoClient();
    void recordingOnTheFlyCapturesNothing();
    void clientEndsAMacroRecordedOnTheKeyboard();
    void macroKeyDoesNothingDuringACapture();
    void endStopsEveryCapture();
    void recordingEndsWithItsCapture();
    void newRecordingReplacesThePreviousOne();
    void newCaptureForgetsAnEarlierEscape();
    void newCaptureForgetsEarlierKeys();
    void earlyWakeUpEndsNothing();
    void reportsEachKeyThatNoLongerFits();
    void recordsButtonsAmongTheKeys();
    void recordsButtonsOnlyForTheRecordingProgram_data();
    void recordsButtonsOnlyForTheRecordingProgram();
    void buttonHeldAtTheEndGetsItsRelease();
    void buttonThatNoLongerFitsIsReported();
    void buttonEndsTheHoldOfEscape();

private:
    void startCapture(const QString &port, Kind kind);
    /// Whether a key that is pressed now reaches the computer.
    [[nodiscard]] bool hasComputerTheKeys();
    void press(uint key) { QVERIFY(mKeyboard->press(7, key)); }
    void release(uint key) { QVERIFY(mKeyboard->release(7, key)); }
    void type(uint key)
    {
        press(key);
        release(key);
    }
    /// Records A on the keyboard; afterwards the session waits for the key that will play the macro.
    void awaitOnTheFlyKey();
    [[nodiscard]] int macroCount() const { return static_cast<int>(Document(mSettings->document()).macros().size()); }

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    DaemonServices mServices;
    std::unique_ptr<History> mHistory;
    std::unique_ptr<CurrentSettings> mSettings;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<CurrentKeyboard> mCurrentKeyboard;
    std::unique_ptr<OnTheFlySession> mOnTheFly;
    std::unique_ptr<CaptureSession> mSession;
    std::chrono::microseconds mNow{};
    std::optional<std::chrono::microseconds> mWakeTime;
    QString mWatchedClient; // empty: none
    QString mWatchedProgram = program;
    QStringList mNotifications;
    QVariantMap mLastValues;      // of the last notification
    QList<Kind> mKindsWhenPosted; // one for each notification
};

void CaptureSessionTest::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    mServices = {.sendReply = {},
                 .postNotification =
                     [this](const QString &name, const QVariantMap &values) {
                         mNotifications += name;
                         mLastValues = values;
                         mKindsWhenPosted += mSession->capture().kind();
                     },
                 .watchClient = [this](const QString &port) { mWatchedClient = port; },
                 .watchedProgram = [this] { return mWatchedProgram; },
                 .launchProgram = {},
                 .now = [this] { return mNow; },
                 .wakeAt = [this](std::optional<DaemonServices::Time> time) { mWakeTime = time; }};
    mHistory = std::make_unique<History>(mStore->folder());
    mSettings = std::make_unique<CurrentSettings>(*mStore, *mHistory, mServices, SettingsDocument::minimal(),
                                                  [](const QVariantMap &document) { return document; });
    mKeyboard = std::make_unique<VirtualKeyboard>(KeyClock{.now = [this] { return mNow; }});
    mCurrentKeyboard = std::make_unique<CurrentKeyboard>();
    mOnTheFly = std::make_unique<OnTheFlySession>(*mSettings, *mCurrentKeyboard, mServices);
    mSession = std::make_unique<CaptureSession>(*mCurrentKeyboard, *mOnTheFly, mServices);
    connect(mCurrentKeyboard.get(), &CurrentKeyboard::keyReported, this,
            [this](HidUsage key, bool isDown, KeyPath::Time time) { mSession->keyChanged(key, isDown, time); });
    connect(mCurrentKeyboard.get(), &CurrentKeyboard::keyCaptured, this,
            [this](HidUsage key, quint8 modifiers) { mSession->keyCaptured(key, modifiers); });
    mCurrentKeyboard->use(*mKeyboard, mSettings->document());
}

void CaptureSessionTest::cleanup()
{
    mSession.reset();
    mOnTheFly.reset();
    mCurrentKeyboard.reset();
    mKeyboard.reset();
    mSettings.reset();
    mStore.reset();
    mTemporary.reset();
    mNow = 0us;
    mWakeTime.reset();
    mWatchedClient.clear();
    mWatchedProgram = program;
    mNotifications.clear();
    mKindsWhenPosted.clear();
}

void CaptureSessionTest::startCapture(const QString &port, Kind kind)
{
    if (kind == Kind::macroRecording)
        mSession->startRecording(port, target);
    else
        mSession->startKeyCapture(port, kind);
}

bool CaptureSessionTest::hasComputerTheKeys()
{
    bool isSent = false;
    const auto connection = connect(mKeyboard.get(), &VirtualKeyboard::sent, this, [&isSent] { isSent = true; });
    (void)mKeyboard->press(HidUsage::keyboardPage, keyB);
    (void)mKeyboard->release(HidUsage::keyboardPage, keyB);
    disconnect(connection);
    return isSent;
}

void CaptureSessionTest::awaitOnTheFlyKey()
{
    mSession->macroKeyPressed(mNow);
    type(keyA);
    mSession->macroKeyPressed(mNow);
}

void CaptureSessionTest::computerOwnsTheKeysAtFirst()
{
    QCOMPARE(mSession->capture().kind(), Kind::none);
    QVERIFY(!mSession->capture().client());
    QVERIFY(hasComputerTheKeys());
    mSession->clientVanished(client);
    mSession->clientVanished(QString());
    QVERIFY(hasComputerTheKeys());
    QVERIFY(mNotifications.isEmpty());
}

void CaptureSessionTest::clientOwnsTheKeysUntilTheirRelease_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<bool>("isVanished");
    QTest::addColumn<QStringList>("notifications"); // of a typed key
    const QString lines = u"MacroSequence271"_s;
    for (const bool isVanished : {false, true}) {
        const char *end = isVanished ? "vanished" : "released";
        QTest::addRow("recording, %s", end) << Kind::macroRecording << isVanished << QStringList{lines, lines};
        QTest::addRow("single key, %s", end) << Kind::singleKey << isVanished << QStringList{u"SingleKeyEvent271"_s};
        QTest::addRow("event, %s", end) << Kind::editedEvent << isVanished << QStringList{u"SingleKeyEvent1048"_s};
    }
}

void CaptureSessionTest::clientOwnsTheKeysUntilTheirRelease()
{
    QFETCH(Kind, kind);
    QFETCH(bool, isVanished);
    startCapture(client, kind);
    QCOMPARE(mSession->capture().kind(), kind);
    QCOMPARE(mSession->capture().client(), std::optional(client));
    QCOMPARE(mWatchedClient, client);
    QVERIFY(!hasComputerTheKeys());
    QTEST(mNotifications, "notifications");
    isVanished ? mSession->clientVanished(client) : mSession->release("the test releases them");
    QCOMPARE(mSession->capture().kind(), Kind::none);
    QVERIFY(!mSession->capture().client());
    QVERIFY(mWatchedClient.isEmpty());
    QVERIFY(hasComputerTheKeys());
    QTEST(mNotifications, "notifications");
}

void CaptureSessionTest::keyboardShowsTheClientThatOwnsTheKeys()
{
    QStringList shown;
    connect(mKeyboard.get(), &VirtualKeyboard::captureChanged, this, [&](const QString &port) {
        shown += port;
        QCOMPARE(hasComputerTheKeys(), port.isEmpty()); // in effect already
    });
    QCOMPARE(mKeyboard->shownCapture(), QString());
    startCapture(client, Kind::singleKey);
    QCOMPARE(mKeyboard->shownCapture(), client);
    startCapture(client, Kind::macroRecording);
    startCapture(another, Kind::editedEvent);
    mSession->release("the test releases them");
    mSession->release("the test releases them again");
    awaitOnTheFlyKey(); // for no client
    QCOMPARE(shown, QStringList({client, another, QString()}));
}

void CaptureSessionTest::clientTakesTheKeysFromAnother()
{
    mSession->startKeyCapture(client, Kind::singleKey);
    mSession->startKeyCapture(another, Kind::singleKey);
    QCOMPARE(mWatchedClient, another);
    mSession->clientVanished(client);
    QVERIFY(!hasComputerTheKeys());
    mSession->clientVanished(another);
    QVERIFY(hasComputerTheKeys());
}

void CaptureSessionTest::endOfAnotherClientEndsNothing()
{
    mSession->startKeyCapture(client, Kind::editedEvent);
    mSession->clientVanished(another);
    mSession->clientVanished(QString());
    QCOMPARE(mSession->capture().client(), std::optional(client));
    QCOMPARE(mWatchedClient, client);
    QVERIFY(!hasComputerTheKeys());
}

void CaptureSessionTest::onTheFlyKeyIsAwaitedForNoClient()
{
    awaitOnTheFlyKey();
    QCOMPARE(mSession->capture().kind(), Kind::onTheFlyKey);
    QVERIFY(!mSession->capture().client());
    QVERIFY(mWatchedClient.isEmpty());
    // No client can end it, not even one without a name.
    mSession->clientVanished(client);
    mSession->clientVanished(QString());
    mSession->release("a client releases the keys");
    QCOMPARE(mSession->capture().kind(), Kind::onTheFlyKey);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::awaitingKey);
    QVERIFY(!hasComputerTheKeys()); // from now on this key plays the macro
    QCOMPARE(mSession->capture().kind(), Kind::none);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    QCOMPARE(macroCount(), 1);
    QCOMPARE(mNotifications, QStringList({u"Saved New OTFM 271"_s, u"Profile Updated 271"_s}));
    QCOMPARE(mKindsWhenPosted, QList<Kind>({Kind::none, Kind::none})); // the capture has already ended by then
    QVERIFY(hasComputerTheKeys());
}

void CaptureSessionTest::recordingOnTheFlyCapturesNothing()
{
    mSession->macroKeyPressed(mNow);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::recording);
    QCOMPARE(mSession->capture().kind(), Kind::none);
    QVERIFY(hasComputerTheKeys());
    mSession->release("a client releases the keys");
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::recording);
    type(keyA);
    press(keyEscape);
    QVERIFY(!mWakeTime.has_value()); // a held Escape does not end a recording on the keyboard
    release(keyEscape);
    mSession->macroKeyPressed(mNow);
    QCOMPARE(mOnTheFly->events().size(), 6); // includes the keys after the release
    QVERIFY(mNotifications.isEmpty());
}

void CaptureSessionTest::clientEndsAMacroRecordedOnTheKeyboard()
{
    awaitOnTheFlyKey();
    mSession->startKeyCapture(client, Kind::singleKey);
    QCOMPARE(mOnTheFly->state(), OnTheFlyState::off);
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    type(keyA);
    QCOMPARE(mNotifications, QStringList{u"SingleKeyEvent271"_s});
    QCOMPARE(macroCount(), 0);
}

void CaptureSessionTest::macroKeyDoesNothingDuringACapture()
{
    mSession->startRecording(client, target);
    mSession->macroKeyPressed(mNow);
    QCOMPARE(mOnTheFly->state(), OnTheFlyState::off);
    QCOMPARE(mSession->capture().kind(), Kind::macroRecording);
}

void CaptureSessionTest::endStopsEveryCapture()
{
    mSession->startKeyCapture(client, Kind::singleKey);
    mSession->end("the test ends it");
    QVERIFY(mWatchedClient.isEmpty());
    QVERIFY(hasComputerTheKeys());
    awaitOnTheFlyKey();
    mSession->end("the test ends it");
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    QVERIFY(hasComputerTheKeys());
    QCOMPARE(macroCount(), 0);
}

void CaptureSessionTest::recordingEndsWithItsCapture()
{
    mSession->startRecording(client, target);
    press(keyA);
    QVERIFY(!mSession->recorder().recorded(target.macroId));
    mNow += 30ms;
    mSession->startKeyCapture(client, Kind::singleKey);
    const std::optional<QVariantList> events = mSession->recorder().recorded(target.macroId);
    QVERIFY(events.has_value());
    // The end of the recording releases the key that is still down.
    QCOMPARE(*events, (QVariantList{MacroRecord::eventRecord({MacroRecord::keyDown, 0, HidUsage::keyboardPage, keyA}),
                                    MacroRecord::eventRecord({MacroRecord::keyUp, 30, HidUsage::keyboardPage, keyA})}));
    mSession->release("the test releases them");
    QVERIFY(mSession->recorder().recorded(target.macroId).has_value());
}

void CaptureSessionTest::newRecordingReplacesThePreviousOne()
{
    mSession->startRecording(client, target);
    type(keyA);
    mSession->startRecording(another, {.macroId = 8, .capacity = 100});
    mSession->release("the test releases them");
    QVERIFY(!mSession->recorder().recorded(target.macroId));
    QCOMPARE(mSession->recorder().recorded(8), std::optional(QVariantList()));
}

void CaptureSessionTest::newCaptureForgetsAnEarlierEscape()
{
    mSession->startKeyCapture(client, Kind::singleKey);
    press(keyEscape);
    QCOMPARE(mWakeTime, std::optional<std::chrono::microseconds>(1s));
    mSession->startKeyCapture(client, Kind::editedEvent);
    QVERIFY(!mWakeTime.has_value());
    mNow = 1s;
    mSession->wake();
    QCOMPARE(mSession->capture().kind(), Kind::editedEvent);
    release(keyEscape);
    press(keyEscape);
    mNow = 2s;
    mSession->wake();
    QCOMPARE(mSession->capture().kind(), Kind::none);
    QVERIFY(mWatchedClient.isEmpty());
}

void CaptureSessionTest::newCaptureForgetsEarlierKeys()
{
    mSession->startKeyCapture(client, Kind::singleKey);
    type(keyA);
    type(keyB);
    mSession->startKeyCapture(client, Kind::singleKey);
    press(keyEscape);
    mNotifications.clear();
    mNow = 1s;
    mSession->wake();
    QVERIFY(mNotifications.isEmpty()); // no key before Escape to post again
    QCOMPARE(mSession->capture().kind(), Kind::none);
}

void CaptureSessionTest::earlyWakeUpEndsNothing()
{
    mSession->wake();
    mSession->startKeyCapture(client, Kind::singleKey);
    mSession->wake();
    press(keyEscape);
    mNow = 999ms;
    mSession->wake();
    QCOMPARE(mSession->capture().kind(), Kind::singleKey);
    QCOMPARE(mWatchedClient, client);
}

void CaptureSessionTest::reportsEachKeyThatNoLongerFits()
{
    const QString isFull = u"isMacroFull"_s;
    mSession->startRecording(client, {.macroId = 7, .capacity = 3});
    press(keyA);
    QVERIFY(!mLastValues.contains(isFull));
    press(keyB); // its release would fit no longer
    QCOMPARE(mLastValues, (QVariantMap{{u"messagesArray"_s, QStringList()}, {isFull, true}}));
    QCOMPARE(mNotifications.size(), 2);
    release(keyB);
    QCOMPARE(mNotifications.size(), 2);
    release(keyA);
    QCOMPARE(mNotifications.size(), 3);
    QVERIFY(!mLastValues.contains(isFull));
    type(keyA);
    QCOMPARE(mNotifications.size(), 4);
    QCOMPARE(mLastValues.value(isFull), QVariant(true));
    mSession->release("the test releases them");
    QCOMPARE(mSession->recorder().recorded(7)->size(), 2);
    type(keyA); // reaches the computer
    QCOMPARE(mNotifications.size(), 4);
}

void CaptureSessionTest::recordsButtonsAmongTheKeys()
{
    mSession->startRecording(client, target);
    mNow = 10ms;
    press(keyA);
    mNow = 30ms;
    QVERIFY(mSession->recordButton(program, 3, true));
    QCOMPARE(mNotifications.last(), u"MacroSequence271"_s);
    const QStringList lines = mLastValues.value(u"messagesArray"_s).toStringList();
    QCOMPARE(lines, (QStringList{u"0.020 seconds delay\n"_s, u"Button 3 down\n"_s}));
    mNow = 35ms;
    release(keyA);
    mNow = 60ms;
    QVERIFY(mSession->recordButton(program, 3, false));
    QVERIFY(mSession->recordButton(program, 3, false)); // not held: nothing to record
    QCOMPARE(mNotifications.size(), 4);
    mSession->release("the test stops the recording");
    const QVariantList expected{MacroRecord::eventRecord({.command = 1, .delayMs = 0, .page = 7, .argument = keyA}),
                                MacroRecord::eventRecord({.command = 1, .delayMs = 20, .page = 9, .argument = 3}),
                                MacroRecord::eventRecord({.command = 0, .delayMs = 5, .page = 7, .argument = keyA}),
                                MacroRecord::eventRecord({.command = 0, .delayMs = 25, .page = 9, .argument = 3})};
    QCOMPARE(mSession->recorder().recorded(target.macroId).value_or(QVariantList()), expected);
}

void CaptureSessionTest::recordsButtonsOnlyForTheRecordingProgram_data()
{
    QTest::addColumn<Kind>("kind"); // none: no capture
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QString>("caller");
    QTest::newRow("another program") << Kind::macroRecording << program << u":1.8"_s;
    QTest::newRow("unknown owner") << Kind::macroRecording << QString() << QString();
    QTest::newRow("no capture") << Kind::none << program << program;
    QTest::newRow("single key") << Kind::singleKey << program << program;
    QTest::newRow("event") << Kind::editedEvent << program << program;
}

void CaptureSessionTest::recordsButtonsOnlyForTheRecordingProgram()
{
    QFETCH(Kind, kind);
    QFETCH(QString, owner);
    QFETCH(QString, caller);
    mWatchedProgram = owner;
    if (kind != Kind::none)
        startCapture(client, kind);
    QVERIFY(!mSession->recordButton(caller, 1, true));
    QVERIFY(mNotifications.isEmpty());
    mSession->release("the test stops the recording");
    QVERIFY(mSession->recorder().recorded(target.macroId).value_or(QVariantList()).isEmpty());
}

void CaptureSessionTest::buttonHeldAtTheEndGetsItsRelease()
{
    mSession->startRecording(client, target);
    QVERIFY(mSession->recordButton(program, 1, true));
    mNow = 40ms;
    mSession->clientVanished(client);
    QVERIFY(!mSession->recordButton(program, 1, false));
    const QVariantList events = mSession->recorder().recorded(target.macroId).value_or(QVariantList());
    QCOMPARE(events.size(), 2);
    const QVariantMap release = MacroRecord::eventRecord({.command = 0, .delayMs = 40, .page = 9, .argument = 1});
    QCOMPARE(events.last().toMap(), release);
}

void CaptureSessionTest::buttonThatNoLongerFitsIsReported()
{
    mSession->startRecording(client, {.macroId = 7, .capacity = 1});
    QVERIFY(mSession->recordButton(program, 1, true));
    QCOMPARE(mNotifications.size(), 1);
    QCOMPARE(mLastValues, (QVariantMap{{u"messagesArray"_s, QStringList()}, {u"isMacroFull"_s, true}}));
}

void CaptureSessionTest::buttonEndsTheHoldOfEscape()
{
    mSession->startRecording(client, target);
    press(keyEscape);
    QVERIFY(mWakeTime);
    QVERIFY(mSession->recordButton(program, 1, true));
    QVERIFY(!mWakeTime); // Escape is not held alone
}

QTEST_GUILESS_MAIN(CaptureSessionTest)
#include "capturesessiontest.moc"
