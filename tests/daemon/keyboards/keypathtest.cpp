// SPDX-License-Identifier: MIT
// The path of a key in one thread; the test controls the time and the answers of the other side.
#include "daemon/keyboards/keypath.h"
#include "base/document.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/support/notingchannel.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace KeyDocuments;

namespace {

constexpr quint16 keyA = 4;
constexpr quint16 keyB = 5;
constexpr quint16 switchKey = 58;  // to the second profile
constexpr quint16 nowhereKey = 59; // to a profile that does not exist
constexpr quint16 macroKey = 60;   // until pressed again

/// In the first profile A sends itself, in the second 30. Both have the same macro.
QVariantMap twoProfiles(int active = 0)
{
    const QVariantMap switches{{u"58"_s, entry(switchesProfile, 1)},
                               {u"59"_s, entry(switchesProfile, 9)},
                               {u"60"_s, entry(playsMacro, 0, 254)}};
    QVariantMap second = switches;
    second.insert(u"4"_s, entry(sendsKey, 30));
    second.insert(u"5"_s, entry(sendsKey, 6, 3)); // with Left Control and Left Shift
    second.insert(u"58"_s, entry(switchesProfile, 0));
    return document({profile(u"A"_s, switches), profile(u"B"_s, second)}, {macro(20, 10)}, active);
}

} // namespace

class KeyPathTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keysDoNothingBeforeTheStartAndAfterTheStop();
    void stopReleasesEverything();
    void emptyChannelReleasesEverything();
    void keyWithModifiersIsOneBatch();
    void switchAppliesToTheNextKey();
    void switchTakesLessThanAMillisecond();
    void refusalUndoesTheSwitch();
    void changeWithoutTheSwitchKeepsIt();
    void changeByOthersStopsMacros();
    void macroOfTheNewProfileOutlivesTheAnswer();
    void macroEndsWhenTheSwitchIsUndone();
    void switchToAMissingProfileIsReportedAndChangesNothing();
    void choicesAreNumberedThroughAllStarts();
    void macroRunsByTheTimeOfTheKey();
    void macrosWithMoreEventsThanTheComputerTakesRest();
    void keysAreReportedWithTheirOwnTimeWhenWanted();
    void capturedKeysAreReportedAndNotSent();

private:
    void press(quint16 key)
    {
        mChannel->keyChanged({HidUsage::keyboardPage, key}, true, mNow, {HidUsage::keyboardPage, key});
    }
    void release(quint16 key)
    {
        mChannel->keyChanged({HidUsage::keyboardPage, key}, false, mNow, {HidUsage::keyboardPage, key});
    }
    void tap(quint16 key)
    {
        press(key);
        release(key);
    }
    void answer(const QVariantMap &document, KeyPath::SwitchNumber lastSwitch, bool isOtherProfile)
    {
        mSettings = keySettingsOf(document, mSettings);
        mPath->change(std::make_shared<KeyPath::Change>(
            KeyPath::Change{.settings = mSettings, .lastSwitch = lastSwitch, .isOtherProfile = isOtherProfile}));
    }
    /// The usage that `key` sends; 0 for none.
    [[nodiscard]] quint16 sentBy(quint16 key);

    std::unique_ptr<NotingChannel> mChannel;
    std::unique_ptr<KeyPath> mPath;
    KeySettings mSettings; // the last settings that the path received
    KeyPath::Time mNow{};
    KeyPath::Time mCostOfAWakeUp{};
    std::optional<KeyPath::Time> mWakeTime;
};

void KeyPathTest::init()
{
    mNow = 1s;
    mCostOfAWakeUp = {};
    mWakeTime.reset();
    mChannel = std::make_unique<NotingChannel>();
    mPath = std::make_unique<KeyPath>(
        *mChannel, KeyClock{.now = [this] { return mNow += mCostOfAWakeUp / 2; }, // read at its start and end
                            .wakeAt = [this](std::optional<KeyPath::Time> time) { mWakeTime = time; }});
    mSettings = keySettingsOf(twoProfiles());
    KeySettings settings = mSettings;
    QCOMPARE(mPath->start(settings), KeyPath::SwitchNumber(0));
}

void KeyPathTest::cleanup()
{
    QVERIFY(!mChannel->hasMadeNoSense());
    QCOMPARE(mChannel->unflushed(), 0);
    mPath.reset();
    mChannel.reset();
}

quint16 KeyPathTest::sentBy(quint16 key)
{
    press(key);
    quint16 sent = 0;
    for (quint16 usage = HidUsage::firstKey; usage < HidUsage::firstModifier; ++usage) {
        if (mChannel->isDown(usage))
            sent = usage;
    }
    release(key);
    return sent;
}

void KeyPathTest::keysDoNothingBeforeTheStartAndAfterTheStop()
{
    mPath->stop();
    tap(keyA);
    answer(twoProfiles(1), 0, true); // crossed the stop on its way
    tap(keyA);
    QCOMPARE(mChannel->sent(), 0);
    KeySettings settings = keySettingsOf(twoProfiles());
    (void)mPath->start(settings);
    tap(keyA);
    QCOMPARE(mChannel->sent(), 2);
}

void KeyPathTest::stopReleasesEverything()
{
    press(keyA);
    press(225);
    tap(macroKey);
    mNow += 10ms;
    mPath->wake();
    QCOMPARE(mChannel->downCount(), std::size_t(3));
    mPath->stop();
    QCOMPARE(mChannel->downCount(), std::size_t(0));
    QVERIFY(!mWakeTime);
}

void KeyPathTest::emptyChannelReleasesEverything()
{
    press(keyA);
    tap(macroKey);
    mNow += 10ms;
    mPath->wake();
    QCOMPARE(mChannel->downCount(), std::size_t(2));
    Q_EMIT mChannel->keysLost();
    QCOMPARE(mChannel->downCount(), std::size_t(0));
    QVERIFY(!mWakeTime);
    tap(keyA); // the keyboard is there again
    QCOMPARE(mChannel->sent(), 6);
}

void KeyPathTest::keyWithModifiersIsOneBatch()
{
    answer(twoProfiles(1), 0, true);
    press(keyB);
    QCOMPARE(mChannel->downCount(), std::size_t(3));
    QCOMPARE(mChannel->flushes(), 1);
    release(keyB);
    QCOMPARE(mChannel->flushes(), 2);
}

void KeyPathTest::switchAppliesToTheNextKey()
{
    const QSignalSpy chosen(mPath.get(), &KeyPath::profileChosen);
    press(keyA);
    press(switchKey);
    QVERIFY(mChannel->isDown(keyA)); // pressed before
    release(keyA);
    QCOMPARE(sentBy(keyA), quint16(30)); // without an answer so far
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.at(0), (QList<QVariant>{1, QVariant::fromValue(KeyPath::SwitchNumber(1))}));
    release(switchKey);
    answer(twoProfiles(1), 1, true);
    QCOMPARE(sentBy(keyA), quint16(30));
}

void KeyPathTest::switchTakesLessThanAMillisecond()
{
    constexpr int switches = 200;
    std::chrono::nanoseconds longest{};
    std::chrono::nanoseconds total{};
    for (int count = 0; count < switches; ++count) {
        const auto start = processorTime();
        tap(switchKey);
        const std::chrono::nanoseconds taken = processorTime() - start;
        longest = std::max(longest, taken);
        total += taken;
        QCOMPARE(sentBy(keyA), count % 2 == 0 ? quint16(30) : keyA);
    }
    qInfo("longest of %d: %lld us", switches,
          static_cast<long long>(std::chrono::duration_cast<std::chrono::microseconds>(longest).count()));
    QVERIFY(total / switches < 1ms);
}

void KeyPathTest::refusalUndoesTheSwitch()
{
    tap(switchKey);
    answer(twoProfiles(0), 1, false); // the switch could not be stored
    QCOMPARE(sentBy(keyA), keyA);
}

void KeyPathTest::changeWithoutTheSwitchKeepsIt()
{
    tap(switchKey);
    QVariantMap document = twoProfiles(0);
    QVariantList profiles = Document(document).profiles();
    profiles[1] = profile(u"B"_s, {{u"4"_s, entry(sendsKey, 31)}});
    document = SettingsDocument::withProfiles(document, profiles);
    answer(document, 0, false); // the change was on its way when the key switched
    QCOMPARE(sentBy(keyA), quint16(31));
    document = SettingsDocument::withProfiles(document, {profile(u"A"_s, {})});
    answer(document, 0, false); // the chosen profile no longer exists
    QCOMPARE(sentBy(keyA), keyA);
}

void KeyPathTest::changeByOthersStopsMacros()
{
    tap(macroKey);
    answer(twoProfiles(0), 0, false);
    QVERIFY(mWakeTime);
    answer(twoProfiles(1), 0, true);
    QVERIFY(!mWakeTime);
    QCOMPARE(sentBy(keyA), quint16(30));
}

void KeyPathTest::macroOfTheNewProfileOutlivesTheAnswer()
{
    tap(macroKey);
    tap(switchKey);
    QVERIFY(!mWakeTime); // the macro of the old profile has ended
    tap(macroKey);
    answer(twoProfiles(0), 0, false); // does not include the switch yet
    QVERIFY(mWakeTime);
    answer(twoProfiles(1), 1, true);
    QVERIFY(mWakeTime);
    answer(twoProfiles(0), 1, true); // another client switches back
    QVERIFY(!mWakeTime);
}

void KeyPathTest::macroEndsWhenTheSwitchIsUndone()
{
    tap(switchKey);
    tap(macroKey);
    mNow += 10ms;
    mPath->wake();
    QCOMPARE(mChannel->downCount(), std::size_t(1));
    answer(twoProfiles(0), 1, false);
    QVERIFY(!mWakeTime);
    QCOMPARE(mChannel->downCount(), std::size_t(0));
}

void KeyPathTest::switchToAMissingProfileIsReportedAndChangesNothing()
{
    const QSignalSpy chosen(mPath.get(), &KeyPath::profileChosen);
    tap(macroKey);
    tap(nowhereKey);
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.at(0).at(0).toInt(), 9);
    QCOMPARE(sentBy(keyA), keyA);
    QVERIFY(mWakeTime);
    // Another client has switched meanwhile. After the answer both sides agree on the profile.
    answer(twoProfiles(1), 0, true);
    answer(twoProfiles(1), 1, false);
    QCOMPARE(sentBy(keyA), quint16(30));
    QVERIFY(!mWakeTime);
}

void KeyPathTest::choicesAreNumberedThroughAllStarts()
{
    tap(switchKey);
    mPath->stop();
    KeySettings settings = keySettingsOf(twoProfiles());
    QCOMPARE(mPath->start(settings), KeyPath::SwitchNumber(1));
    QCOMPARE(sentBy(keyA), keyA);
    const QSignalSpy chosen(mPath.get(), &KeyPath::profileChosen);
    tap(switchKey);
    QCOMPARE(chosen.at(0).at(1).value<KeyPath::SwitchNumber>(), KeyPath::SwitchNumber(2));
}

void KeyPathTest::macroRunsByTheTimeOfTheKey()
{
    const KeyPath::Time pressed = mNow;
    mNow += 4ms; // the delay of the key on its way
    mChannel->keyChanged({HidUsage::keyboardPage, macroKey}, true, pressed, {HidUsage::keyboardPage, macroKey});
    QCOMPARE(mWakeTime, std::optional(KeyPath::Time(pressed + 10ms)));
}

void KeyPathTest::macrosWithMoreEventsThanTheComputerTakesRest()
{
    constexpr auto longestRun = 100ms; // half of what RealtimeKit allows
    QVariantMap keys;
    QVariantList macros;
    for (int index = 0; index < 8; ++index) {
        macros += macro(20 + static_cast<uint>(index), 0);
        keys.insert(QString::number(macroKey + index), entry(playsMacro, index, 254));
    }
    mSettings = keySettingsOf(document({profile(u"A"_s, keys)}, macros));
    KeySettings settings = mSettings;
    (void)mPath->start(settings);
    for (quint16 index = 0; index < 8; ++index)
        tap(static_cast<quint16>(macroKey + index));

    mCostOfAWakeUp = 4ms; // each macro wants 2 events every millisecond, and a wake-up sends 16 at most
    const KeyPath::Time start = mNow;
    KeyPath::Time lastRest = mNow;
    KeyPath::Time rested{};
    while (mNow - start < 1s) {
        QVERIFY(mWakeTime);
        if (*mWakeTime > mNow) {
            rested += *mWakeTime - mNow;
            mNow = *mWakeTime;
            lastRest = mNow;
        }
        mPath->wake();
        QVERIFY(mNow - lastRest < longestRun);
    }
    QVERIFY2(rested > 400ms && rested < 600ms, qPrintable(QString::number(rested.count())));
    mCostOfAWakeUp = {};
    for (quint16 index = 0; index < 8; ++index)
        tap(static_cast<quint16>(macroKey + index));
    QCOMPARE(mChannel->downCount(), std::size_t(0));
    QVERIFY(!mWakeTime);
}

void KeyPathTest::keysAreReportedWithTheirOwnTimeWhenWanted()
{
    QList<std::pair<quint16, KeyPath::Time>> reported;
    connect(mPath.get(), &KeyPath::keyReported, this,
            [&](HidUsage key, bool, KeyPath::Time time) { reported.emplaceBack(key.usage, time); });
    tap(keyA);
    QVERIFY(reported.isEmpty());
    mPath->listen({.isCapturing = true, .isReporting = true});
    const KeyPath::Time pressed = mNow;
    mNow += 3ms;
    mChannel->keyChanged({HidUsage::keyboardPage, keyB}, true, pressed, {HidUsage::keyboardPage, keyB});
    QCOMPARE(reported, (QList<std::pair<quint16, KeyPath::Time>>{{keyB, pressed}}));
    mPath->listen({});
    release(keyB);
    QCOMPARE(reported.size(), 1);
    QCOMPARE(mChannel->sent(), 2); // of A
}

void KeyPathTest::capturedKeysAreReportedAndNotSent()
{
    QList<std::pair<quint16, int>> captured;
    connect(mPath.get(), &KeyPath::keyCaptured, this,
            [&](HidUsage key, quint8 modifiers) { captured.emplaceBack(key.usage, modifiers); });
    press(225);
    mPath->listen({.isCapturing = true, .isReporting = false});
    tap(switchKey);
    release(225);
    mPath->listen({});
    QCOMPARE(captured, (QList<std::pair<quint16, int>>{{switchKey, 2}}));
    QCOMPARE(sentBy(keyA), keyA);
    QCOMPARE(mChannel->downCount(), std::size_t(0));
}

QTEST_GUILESS_MAIN(KeyPathTest)
#include "keypathtest.moc"
