// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keytranslator.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <linux/input-event-codes.h>

#include <map>
#include <vector>

namespace {

using Kind = TranslatorOutput::Kind;

/// A translator, and what its outputs have made of the keys.
class Recorder
{
public:
    void take(int node, const KeyTranslator::Event &event) { see(translator.take(node, event)); }
    void removeNode(int node)
    {
        TranslatorOutput output;
        while ((output = translator.removeNode(node)).kind != Kind::none)
            see(output);
    }

    KeyTranslator translator;
    int releaseChords = 0;
    int changes = 0;
    std::map<int, bool> down;

private:
    void see(const TranslatorOutput &output)
    {
        if (output.kind == Kind::releaseChord)
            ++releaseChords;
        else if (output.kind == Kind::key)
            change(output.usage, output.isDown);
        else if (output.kind == Kind::passedKey)
            change(0x10000 + output.code, output.isDown);
    }
    void change(int key, bool isDown)
    {
        ++changes;
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
    void removalReturnsOneKeyAtATime();
    void everyCodeOfANodeCanBeDown();
    void placesThatDoNotExistAreIgnored();
    void stormLeavesNothingDown();
};

void KeyTranslatorTest::hasPlacesForManyNodesButNotForMore()
{
    KeyTranslator translator;
    for (int node = 0; node < KeyTranslator::maximumNodes; ++node)
        QCOMPARE(translator.addNode(true), node);
    QCOMPARE(translator.addNode(true), -1);
}

void KeyTranslatorTest::removedPlaceIsUsedAgain()
{
    Recorder recorder;
    QCOMPARE(recorder.translator.addNode(true), 0);
    QCOMPARE(recorder.translator.addNode(true), 1);
    recorder.removeNode(0);
    recorder.take(0, {.type = EV_KEY, .code = KEY_A, .value = 1});
    QCOMPARE(recorder.changes, 0);
    QCOMPARE(recorder.translator.addNode(true), 0);
}

void KeyTranslatorTest::removalReturnsOneKeyAtATime()
{
    KeyTranslator translator;
    const int node = translator.addNode(true);
    for (const quint16 code : {KEY_A, KEY_PLAYPAUSE})
        (void)translator.take(node, {.type = EV_KEY, .code = code, .value = 1});
    QCOMPARE(translator.removeNode(node), (TranslatorOutput{.kind = Kind::key, .usage = 4, .code = KEY_A}));
    QCOMPARE(translator.addNode(true), 1); // its place is not free yet
    QCOMPARE(translator.removeNode(node), (TranslatorOutput{.kind = Kind::passedKey, .code = KEY_PLAYPAUSE}));
    QCOMPARE(translator.removeNode(node), TranslatorOutput());
    QCOMPARE(translator.addNode(true), 0);
}

void KeyTranslatorTest::everyCodeOfANodeCanBeDown()
{
    Recorder recorder;
    const int node = recorder.translator.addNode(true);
    for (quint16 code = 0; code < KEY_CNT; ++code)
        recorder.take(node, {.type = EV_KEY, .code = code, .value = 1});
    QCOMPARE(recorder.releaseChords, 1); // this keyboard reports all keys, so the chord is among them
    recorder.removeNode(node);
    QCOMPARE(std::ranges::count(recorder.down, true, &std::pair<const int, bool>::second), 0);
    constexpr int macroKeys = 5; // M1 to M5 have two codes each
    QCOMPARE(int(recorder.down.size()), KEY_CNT - macroKeys);
}

void KeyTranslatorTest::placesThatDoNotExistAreIgnored()
{
    Recorder recorder;
    for (const int node : {-1, 0, KeyTranslator::maximumNodes, 1 << 20}) {
        recorder.take(node, {.type = EV_KEY, .code = KEY_A, .value = 1});
        recorder.removeNode(node);
    }
    QCOMPARE(recorder.changes, 0);
}

void KeyTranslatorTest::stormLeavesNothingDown()
{
    QRandomGenerator random(20240229);
    Recorder recorder;
    std::vector<int> nodes;
    for (int index = 0; index < 4; ++index)
        nodes.push_back(recorder.translator.addNode(index % 2 == 0));
    for (int count = 0; count < 200'000; ++count) {
        auto &node = nodes[random.bounded(4u)];
        const quint32 kind = random.bounded(1000u);
        // Without Escape, because a separate test covers the chord.
        const auto code = static_cast<quint16>(KEY_1 + random.bounded(200u));
        if (kind == 0) {
            recorder.removeNode(node);
            node = recorder.translator.addNode(count % 2 == 0);
            QVERIFY(node >= 0);
        } else if (kind < 300) {
            const int usage = static_cast<int>(random.bounded(0x100u));
            recorder.take(node, {.type = EV_MSC, .code = MSC_SCAN, .value = 0x70000 + (usage == 41 ? 4 : usage)});
        } else if (kind < 400) {
            recorder.take(node, {.type = EV_SYN});
        } else {
            recorder.take(node, {.type = EV_KEY, .code = code, .value = random.bounded(0, 3)});
        }
    }
    QVERIFY(recorder.changes > 10'000);
    QCOMPARE(recorder.releaseChords, 0);
    for (const int node : nodes)
        recorder.removeNode(node);
    for (const auto &[key, isDown] : recorder.down)
        QVERIFY2(!isDown, qPrintable(QString::number(key)));
}

QTEST_APPLESS_MAIN(KeyTranslatorTest)
#include "keytranslatortest.moc"
