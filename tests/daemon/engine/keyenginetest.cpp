// SPDX-License-Identifier: MIT
#include "daemon/engine/keyengine.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr HidUsage key(quint16 usage)
{
    return {HidUsage::keyboardPage, usage};
}

QVariantMap entry(int command, const QVariant &param1, const QVariant &param2)
{
    return {{u"command"_s, command}, {u"param1"_s, param1}, {u"param2"_s, param2}};
}

QVariantMap profile(const QVariantMap &keys)
{
    return {{u"Keys"_s, keys}};
}

/// "+4 -4": usages sent down and up; "profile 2", "launch x".
QString text(const EngineOutputs &outputs)
{
    QStringList words;
    for (const EngineOutput &output : outputs) {
        switch (output.kind) {
        case EngineOutput::Kind::sendDown: words += u"+%1"_s.arg(output.usage.usage); break;
        case EngineOutput::Kind::sendUp: words += u"-%1"_s.arg(output.usage.usage); break;
        case EngineOutput::Kind::captured:
            words += u"captured %1 %2"_s.arg(output.usage.usage).arg(output.modifiers);
            break;
        case EngineOutput::Kind::switchProfile: words += u"profile %1"_s.arg(output.profileIndex); break;
        case EngineOutput::Kind::launchProgram: words += u"launch %1"_s.arg(output.program); break;
        }
    }
    return words.join(u' ');
}

} // namespace

class KeyEngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsPressAndReleaseOfOneKey_data();
    void sendsPressAndReleaseOfOneKey();
    void onlyPlainNumbersNameAKey_data();
    void onlyPlainNumbersNameAKey();
    void repeatedPressAndStrayReleaseDoNothing();
    void releaseEndsTheOutputOfItsPress();
    void sharedUsageStaysDownUntilTheLastKey();
    void releaseAllReleasesEverything();
    void buttonsPassUnmapped();
};

void KeyEngineTest::sendsPressAndReleaseOfOneKey_data()
{
    QTest::addColumn<QVariantMap>("mapping"); // of key 4
    QTest::addColumn<QString>("press");
    QTest::addColumn<QString>("release");
    QTest::newRow("no entry") << QVariantMap() << u"+4"_s << u"-4"_s;
    QTest::newRow("no command") << QVariantMap{{u"param1"_s, 9}} << u"+4"_s << u"-4"_s;
    QTest::newRow("default, named code") << entry(45, 4, 0) << u"+4"_s << u"-4"_s;
    QTest::newRow("default, another code") << entry(45, 5, 0) << u"+5"_s << u"-5"_s;
    QTest::newRow("default, no code") << entry(45, 0, 0) << u"+4"_s << u"-4"_s;
    QTest::newRow("disabled") << entry(20, 0, 0) << QString() << QString();
    QTest::newRow("single key") << entry(16, 30, 0) << u"+30"_s << u"-30"_s;
    QTest::newRow("single key with modifiers") << entry(16, 6, 0x03) << u"+224 +225 +6"_s << u"-6 -224 -225"_s;
    QTest::newRow("modifiers alone") << entry(16, 0, 0x82) << u"+225 +231"_s << u"-225 -231"_s;
    QTest::newRow("a modifier of itself") << entry(16, 225, 0x02) << u"+225"_s << u"-225"_s;
    QTest::newRow("single key that is none") << entry(16, 999, 0) << QString() << QString();
    QTest::newRow("profile") << entry(17, 2, 0) << u"profile 2"_s << QString();
    QTest::newRow("program") << entry(46, u"/usr/bin/x"_s, QString()) << u"launch /usr/bin/x"_s << QString();
    QTest::newRow("unknown command") << entry(30, 9, 9) << QString() << QString();
    QTest::newRow("command 0") << entry(0, 9, 9) << u"+4"_s << u"-4"_s;
    QTest::newRow("negative command") << entry(-16, 9, 9) << u"+4"_s << u"-4"_s;
    QTest::newRow("command that is no number") << QVariantMap{{u"command"_s, QByteArray("x")}} << u"+4"_s << u"-4"_s;
    QTest::newRow("modifiers beyond their byte") << entry(16, 9, 0x101) << u"+224 +9"_s << u"-9 -224"_s;
    QTest::newRow("macro") << entry(10, 0, 255) << QString() << QString();
}

void KeyEngineTest::sendsPressAndReleaseOfOneKey()
{
    QFETCH(QVariantMap, mapping);
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(profile(mapping.isEmpty() ? QVariantMap() : QVariantMap{{u"4"_s, mapping}})));
    QTEST(text(engine.keyDown(key(4), 0ms)), "press");
    QTEST(text(engine.keyUp(key(4), 1ms)), "release");
    QVERIFY(engine.sentDown().isEmpty());
}

void KeyEngineTest::onlyPlainNumbersNameAKey_data()
{
    QTest::addColumn<QString>("name"); // of an entry beside that of key 4
    QTest::newRow("a zero first") << u"04"_s;
    QTest::newRow("a sign") << u"+4"_s;
    QTest::newRow("a space") << u" 4"_s;
}

void KeyEngineTest::onlyPlainNumbersNameAKey()
{
    QFETCH(QString, name);
    const QVariantMap other = entry(16, 9, 0);
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(profile({{name, other}})));
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), u"+4"_s);
    QCOMPARE(text(engine.keyUp(key(4), 1ms)), u"-4"_s);
    (void)engine.setKeyMap(KeyMap(profile({{name, other}, {u"4"_s, entry(16, 30, 0)}})));
    QCOMPARE(text(engine.keyDown(key(4), 2ms)), u"+30"_s);
}

void KeyEngineTest::repeatedPressAndStrayReleaseDoNothing()
{
    KeyEngine engine;
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), QString());
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), u"+4"_s);
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), QString());
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), u"-4"_s);
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), QString());
}

void KeyEngineTest::releaseEndsTheOutputOfItsPress()
{
    KeyEngine engine;
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), u"+4"_s);
    (void)engine.setKeyMap(KeyMap(profile({{u"4"_s, entry(16, 9, 1)}})));
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), u"-4"_s);
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), u"+224 +9"_s);
    (void)engine.setKeyMap(KeyMap(profile({{u"4"_s, entry(20, 0, 0)}})));
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), u"-9 -224"_s);
}

void KeyEngineTest::sharedUsageStaysDownUntilTheLastKey()
{
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(profile({{u"5"_s, entry(16, 4, 0)}})));
    QCOMPARE(text(engine.keyDown(key(4), 0ms)), u"+4"_s);
    QCOMPARE(text(engine.keyDown(key(5), 0ms)), QString());
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), QString());
    QCOMPARE(text(engine.keyUp(key(5), 0ms)), u"-4"_s);
}

void KeyEngineTest::releaseAllReleasesEverything()
{
    KeyEngine engine;
    (void)engine.keyDown(key(4), 0ms);
    (void)engine.keyDown(key(225), 0ms);
    QCOMPARE(text(engine.releaseAll()), u"-225 -4"_s);
    QCOMPARE(text(engine.releaseAll()), QString());
    QCOMPARE(text(engine.keyUp(key(4), 0ms)), QString());
}

void KeyEngineTest::buttonsPassUnmapped()
{
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(profile({{u"4"_s, entry(20, 0, 0)}})));
    const HidUsage button{HidUsage::buttonPage, 4};
    QCOMPARE(engine.keyDown(button, 0ms), EngineOutputs({{.kind = EngineOutput::Kind::sendDown, .usage = button}}));
    QCOMPARE(engine.keyUp(button, 0ms), EngineOutputs({{.kind = EngineOutput::Kind::sendUp, .usage = button}}));
}

QTEST_APPLESS_MAIN(KeyEngineTest)
#include "keyenginetest.moc"
