// SPDX-License-Identifier: MIT
#include "macros/eventline.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class EventLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recognisesTheLinesOfTheParser_data();
    void recognisesTheLinesOfTheParser();
    void readsTheDelay_data();
    void readsTheDelay();
};

void EventLineTest::recognisesTheLinesOfTheParser_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("page");
    QTest::addColumn<uint>("argument");
    QTest::addColumn<EventLineKind>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("key down") << 1 << 7 << 4U << EventLineKind::press << u"A"_s;
    QTest::newRow("key up") << 0 << 7 << 4U << EventLineKind::release << u"A"_s;
    QTest::newRow("an arrow key up") << 0 << 7 << 82U << EventLineKind::release << u"Up Arrow"_s;
    QTest::newRow("a key without a name up") << 0 << 7 << 50U << EventLineKind::release << u""_s;
    QTest::newRow("left button down") << 1 << 9 << 1U << EventLineKind::press << u"Left Button"_s;
    QTest::newRow("right button up") << 0 << 9 << 2U << EventLineKind::release << u"Right Button"_s;
    QTest::newRow("third button up") << 0 << 9 << 3U << EventLineKind::release << u"Button 3"_s;
}

void EventLineTest::recognisesTheLinesOfTheParser()
{
    QFETCH(int, command);
    QFETCH(int, page);
    QFETCH(uint, argument);
    const QStringList lines = eventParser::parseSequence(
        MacroRecord::eventRecord({.command = command, .delayMs = 20, .page = page, .argument = argument}));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(eventLineKind(lines.at(0)), EventLineKind::delay);
    QTEST(eventLineKind(lines.at(1)), "kind");
    QVERIFY(nameInEventLine(lines.at(0)).isNull());
    QVERIFY(!nameInEventLine(lines.at(1)).isNull());
    QTEST(nameInEventLine(lines.at(1)).toString(), "name");
    QCOMPARE(delayMsOfLine(lines.at(0)), 20);
    QCOMPARE(delayMsOfLine(lines.at(1)), std::nullopt);
}

void EventLineTest::readsTheDelay_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<std::optional<int>>("delayMs");
    QTest::newRow("none") << u"0.000 seconds delay\n"_s << std::optional(0);
    QTest::newRow("milliseconds") << u"0.015 seconds delay\n"_s << std::optional(15);
    QTest::newRow("rounded by the conversion") << u"1.001 seconds delay\n"_s << std::optional(1001);
    QTest::newRow("longest") << u"2147483.647 seconds delay\n"_s << std::optional(2147483647);
    QTest::newRow("too long") << u"2147483.648 seconds delay\n"_s << std::optional<int>();
    QTest::newRow("not a number") << u"nan seconds delay\n"_s << std::optional<int>();
    QTest::newRow("words") << u"a few seconds delay\n"_s << std::optional<int>();
}

void EventLineTest::readsTheDelay()
{
    QFETCH(QString, line);
    QTEST(delayMsOfLine(line), "delayMs");
}

QTEST_APPLESS_MAIN(EventLineTest)
#include "eventlinetest.moc"
