// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keytranslator.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <linux/input-event-codes.h>

#include <map>
#include <vector>

namespace {

class Recorder : public KeySink
{
public:
    void takeKey(HidUsage key, bool isDown, Time time) override { change(key.usage, isDown, time); }
    void passKey(quint16 code, bool isDown, Time time) override { change(0x10000 + code, isDown, time); }
    void passMotion(quint16, int, Time) override {}
    void takeReleaseChord() override { ++releaseChords; }

    int releaseChords = 0;
    int changes = 0;
    Time lastTime{};
    std::map<int, bool> down;

private:
    void change(int key, bool isDown, Time time)
    {
        ++changes;
        lastTime = time;
        // The key that completed the chord comes up without having gone down.
        if (releaseChords == 0)
            QVERIFY2(isDown != down[key], "each key goes down and up in turns");
        down[key] = isDown;
    }
};

} // namespace

class KeyTranslatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasPlacesForManyNodesButNotForMore();
    void removedPlaceIsUsedAgain();
    void reportsTheTimeOfTheEvent();
    void everyCodeOfANodeCanBeDown();
    void placesThatDoNotExistAreIgnored();
    void knowsWhetherAKeyIsDown();
    void stormLeavesNothingDown();
};

void KeyTranslatorTest::hasPlacesForManyNodesButNotForMore()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    for (int node = 0; node < KeyTranslator::maximumNodes; ++node)
        QCOMPARE(translator.addNode(true), node);
    QCOMPARE(translator.addNode(true), -1);
}

void KeyTranslatorTest::removedPlaceIsUsedAgain()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    QCOMPARE(translator.addNode(true), 0);
    QCOMPARE(translator.addNode(true), 1);
    translator.removeNode(0, {});
    translator.take(0, {.type = EV_KEY, .code = KEY_A, .value = 1});
    QCOMPARE(recorder.changes, 0);
    QCOMPARE(translator.addNode(true), 0);
}

void KeyTranslatorTest::reportsTheTimeOfTheEvent()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    const int node = translator.addNode(true);
    translator.take(node, {.type = EV_KEY, .code = KEY_A, .value = 1, .time = KeySink::Time(17)});
    QCOMPARE(recorder.lastTime.count(), 17);
    translator.removeNode(node, KeySink::Time(18));
    QCOMPARE(recorder.lastTime.count(), 18);
}

void KeyTranslatorTest::everyCodeOfANodeCanBeDown()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    const int node = translator.addNode(true);
    for (quint16 code = 0; code < KEY_CNT; ++code)
        translator.take(node, {.type = EV_KEY, .code = code, .value = 1});
    QCOMPARE(recorder.releaseChords, 1); // this keyboard reports all keys, so the chord is among them
    translator.removeNode(node, {});
    QCOMPARE(std::ranges::count(recorder.down, true, &std::pair<const int, bool>::second), 0);
    constexpr int macroKeys = 5; // M1 to M5 have two codes each
    QCOMPARE(int(recorder.down.size()), KEY_CNT - macroKeys);
}

void KeyTranslatorTest::placesThatDoNotExistAreIgnored()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    for (const int node : {-1, 0, KeyTranslator::maximumNodes, 1 << 20}) {
        translator.take(node, {.type = EV_KEY, .code = KEY_A, .value = 1});
        translator.removeNode(node, {});
    }
    QCOMPARE(recorder.changes, 0);
}

void KeyTranslatorTest::knowsWhetherAKeyIsDown()
{
    Recorder recorder;
    KeyTranslator translator(recorder);
    const int node = translator.addNode(false);
    QVERIFY(!translator.isDown(KEY_A));
    translator.take(node, {.type = EV_KEY, .code = KEY_A, .value = 1});
    QVERIFY(translator.isDown(KEY_A));
    translator.take(node, {.type = EV_KEY, .code = KEY_A, .value = 0});
    QVERIFY(!translator.isDown(KEY_A));
}

void KeyTranslatorTest::stormLeavesNothingDown()
{
    QRandomGenerator random(20240229);
    Recorder recorder;
    KeyTranslator translator(recorder);
    std::vector<int> nodes;
    for (int index = 0; index < 4; ++index)
        nodes.push_back(translator.addNode(index % 2 == 0));
    for (int count = 0; count < 200'000; ++count) {
        auto &node = nodes[random.bounded(4u)];
        const quint32 kind = random.bounded(1000u);
        // Without Escape, because a separate test covers the chord.
        const auto code = static_cast<quint16>(KEY_1 + random.bounded(200u));
        if (kind == 0) {
            translator.removeNode(node, {});
            node = translator.addNode(count % 2 == 0);
            QVERIFY(node >= 0);
        } else if (kind < 300) {
            const int usage = static_cast<int>(random.bounded(0x100u));
            translator.take(node, {.type = EV_MSC, .code = MSC_SCAN, .value = 0x70000 + (usage == 41 ? 4 : usage)});
        } else if (kind < 400) {
            translator.take(node, {.type = EV_SYN});
        } else {
            translator.take(node, {.type = EV_KEY, .code = code, .value = random.bounded(0, 3)});
        }
    }
    QVERIFY(recorder.changes > 10'000);
    QCOMPARE(recorder.releaseChords, 0);
    for (const int node : nodes)
        translator.removeNode(node, {});
    for (const auto &[key, isDown] : recorder.down)
        QVERIFY2(!isDown, qPrintable(QString::number(key)));
}

QTEST_APPLESS_MAIN(KeyTranslatorTest)
#include "keytranslatortest.moc"
