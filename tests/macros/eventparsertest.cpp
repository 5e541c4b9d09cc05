// SPDX-License-Identifier: MIT
#include "macros/eventparser.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap makeEvent(int command, int delay, int page, qlonglong argument)
{
    return {{u"command"_s, command}, {u"delay"_s, delay}, {u"page"_s, page}, {u"argument"_s, argument}};
}

// Every name of the codes 40 to 231 in the order of the codes, written a second time on purpose.
const QMap<int, QString> &namesByCode()
{
    static const QMap<int, QString> names = [] {
        QMap<int, QString> result;
        int code = 40;
        const QStringList from40{u"Return"_s,
                                 u"Escape"_s,
                                 u"Delete"_s,
                                 u"Tab"_s,
                                 u"Space"_s,
                                 u"-"_s,
                                 u"="_s,
                                 u"["_s,
                                 u"]"_s,
                                 u"\\"_s,
                                 QString(),
                                 u";"_s,
                                 u"'"_s,
                                 u"`"_s,
                                 u","_s,
                                 u"."_s,
                                 u"/"_s,
                                 u"Caps Lock"_s,
                                 u"F1"_s,
                                 u"F2"_s,
                                 u"F3"_s,
                                 u"F4"_s,
                                 u"F5"_s,
                                 u"F6"_s,
                                 u"F7"_s,
                                 u"F8"_s,
                                 u"F9"_s,
                                 u"F10"_s,
                                 u"F11"_s,
                                 u"F12"_s,
                                 u"Print Screen"_s,
                                 u"Screen Lock"_s,
                                 u"Pause"_s,
                                 u"Insert"_s,
                                 u"Home"_s,
                                 u"Page Up"_s,
                                 u"Delete"_s,
                                 u"End"_s,
                                 u"Page Down"_s,
                                 u"Right Arrow"_s,
                                 u"Left Arrow"_s,
                                 u"Down Arrow"_s,
                                 u"Up Arrow"_s,
                                 u"Clear"_s,
                                 u"Numpad /"_s,
                                 u"Numpad *"_s,
                                 u"Numpad -"_s,
                                 u"Numpad +"_s,
                                 u"Numpad Enter"_s,
                                 u"Numpad 1"_s,
                                 u"Numpad 2"_s,
                                 u"Numpad 3"_s,
                                 u"Numpad 4"_s,
                                 u"Numpad 5"_s,
                                 u"Numpad 6"_s,
                                 u"Numpad 7"_s,
                                 u"Numpad 8"_s,
                                 u"Numpad 9"_s,
                                 u"Numpad 0"_s,
                                 u"Numpad ."_s,
                                 u"|"_s,
                                 u"Menu"_s,
                                 u"Power"_s,
                                 u"Numpad ="_s,
                                 u"F13"_s,
                                 u"F14"_s,
                                 u"F15"_s,
                                 u"F16"_s,
                                 u"F17"_s,
                                 u"F18"_s,
                                 u"F19"_s,
                                 u"F20"_s,
                                 u"F21"_s,
                                 u"F22"_s,
                                 u"F23"_s,
                                 u"F24"_s};
        for (const QString &name : from40)
            result.insert(code++, name);
        code = 224;
        for (const QString &name : {u"Left Control"_s, u"Left Shift"_s, u"Left Alt"_s, u"Left Command"_s,
                                    u"Right Control"_s, u"Right Shift"_s, u"Right Alt"_s, u"Right Command"_s})
            result.insert(code++, name);
        return result;
    }();
    return names;
}

} // namespace

class EventParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void parsesOneEvent_data();
    void parsesOneEvent();
    void readsRealsAndWideNumbersAsIntegers();
    void leavesOutTheFirstDelayLine();
    void firstEventWithoutLineContributesNothing();
    void emptySequenceHasNoLines();
    void namesEveryKeyCode();
    void namesKeysWithModifiers_data();
    void namesKeysWithModifiers();
    void everyModifierBitHasItsCode();
    void appendsModifierCodesToTheArray();
    void knowsTheCharactersOfLetterAndDigitKeys();
    void heldKeysAreInOrderOfTheFirstPress();
    void heldListIsClearedByNamingWithoutModifier();
    void namingWithModifierKeepsTheHeldList();
    void handlesEdgesOfTheHidStack_data();
    void handlesEdgesOfTheHidStack();
};

void EventParserTest::init()
{
    // Naming a key without a modifier clears the held-key list of earlier tests.
    QCOMPARE(eventParser::getStringWithHIDWithModifier(0, 0), QString());
}

void EventParserTest::parsesOneEvent_data()
{
    QTest::addColumn<QVariantMap>("input");
    QTest::addColumn<QStringList>("lines");
    const QString noDelay = u"0.000 seconds delay\n"_s;

    QTest::newRow("delay 0") << makeEvent(1, 0, 7, 4) << QStringList{noDelay, u"Key Press A"_s};
    QTest::newRow("delay 15") << makeEvent(1, 15, 7, 4) << QStringList{u"0.015 seconds delay\n"_s, u"Key Press A"_s};
    QTest::newRow("delay 1500") << makeEvent(0, 1500, 7, 39)
                                << QStringList{u"1.500 seconds delay\n"_s, u"Key Release 0"_s};
    QTest::newRow("negative delay") << makeEvent(1, -5, 7, 4)
                                    << QStringList{u"-0.005 seconds delay\n"_s, u"Key Press A"_s};
    QTest::newRow("key without name") << makeEvent(1, 0, 7, 50) << QStringList{noDelay, u"Key Press "_s};
    QTest::newRow("key 3") << makeEvent(0, 0, 7, 3) << QStringList{noDelay, u"Key Release "_s};
    QTest::newRow("key 232") << makeEvent(0, 0, 7, 232) << QStringList{noDelay, u"Key Release "_s};
    QTest::newRow("key argument is not masked") << makeEvent(1, 0, 7, 256 + 4) << QStringList{noDelay, u"Key Press "_s};
    QTest::newRow("key above int") << makeEvent(1, 0, 7, 0xffffffffLL) << QStringList{noDelay, u"Key Press "_s};
    QTest::newRow("modifier key") << makeEvent(1, 0, 7, 225) << QStringList{noDelay, u"Key Press Left Shift"_s};
    QTest::newRow("key, command 2") << makeEvent(2, 0, 7, 4) << QStringList{noDelay};
    QTest::newRow("command low 8 bits") << makeEvent(0x101, 0, 7, 4) << QStringList{noDelay, u"Key Press A"_s};
    QTest::newRow("command 256 is 0") << makeEvent(0x100, 0, 7, 4) << QStringList{noDelay, u"Key Release A"_s};
    QTest::newRow("command -1") << makeEvent(-1, 0, 7, 4) << QStringList{noDelay};
    QTest::newRow("page low 8 bits") << makeEvent(1, 0, 0x107, 4) << QStringList{noDelay, u"Key Press A"_s};
    QTest::newRow("page 9 low 8 bits") << makeEvent(1, 0, 0x209, 1) << QStringList{noDelay, u"Left Button down\n"_s};
    QTest::newRow("left down") << makeEvent(1, 0, 9, 1) << QStringList{noDelay, u"Left Button down\n"_s};
    QTest::newRow("left up") << makeEvent(0, 0, 9, 1) << QStringList{noDelay, u"Left Button up\n"_s};
    QTest::newRow("right down") << makeEvent(1, 0, 9, 2) << QStringList{noDelay, u"Right Button down\n"_s};
    QTest::newRow("right up") << makeEvent(0, 0, 9, 2) << QStringList{noDelay, u"Right Button up\n"_s};
    for (int button = 3; button <= 9; ++button) {
        QTest::addRow("button %d down", button)
            << makeEvent(1, 0, 9, button) << QStringList{noDelay, u"Button %1 down\n"_s.arg(button)};
        QTest::addRow("button %d up", button)
            << makeEvent(0, 0, 9, button) << QStringList{noDelay, u"Button %1 up\n"_s.arg(button)};
    }
    QTest::newRow("button 0") << makeEvent(1, 0, 9, 0) << QStringList{noDelay};
    QTest::newRow("button 10") << makeEvent(1, 0, 9, 10) << QStringList{noDelay};
    QTest::newRow("button 257 is not 1") << makeEvent(1, 0, 9, 257) << QStringList{noDelay};
    QTest::newRow("button -1 is unsigned") << makeEvent(1, 0, 9, -1) << QStringList{noDelay};
    QTest::newRow("button, command 2") << makeEvent(2, 0, 9, 1) << QStringList{noDelay};
    for (const int page : {0, 1, 8, 12, 255, -1})
        QTest::addRow("page %d", page) << makeEvent(1, 0, page, 4) << QStringList{noDelay};
    QTest::newRow("empty event") << QVariantMap() << QStringList{noDelay};
}

void EventParserTest::parsesOneEvent()
{
    QFETCH(QVariantMap, input);
    QFETCH(QStringList, lines);
    QCOMPARE(eventParser::parseSequence(input), lines);
    QCOMPARE(eventParser::hasEventLine(input), lines.size() == 2);
}

void EventParserTest::readsRealsAndWideNumbersAsIntegers()
{
    const QVariantMap input{{u"command"_s, 1.9}, {u"delay"_s, 15.9}, {u"page"_s, qlonglong(7)}, {u"argument"_s, 4u}};
    QCOMPARE(eventParser::parseSequence(input), QStringList({u"0.015 seconds delay\n"_s, u"Key Press A"_s}));
}

void EventParserTest::leavesOutTheFirstDelayLine()
{
    QCOMPARE(eventParser::getMessagesArray({makeEvent(1, 30, 7, 4)}), QStringList{u"Key Press A"_s});
    QCOMPARE(eventParser::getMessagesArray({makeEvent(1, 30, 7, 4), makeEvent(0, 15, 7, 4), makeEvent(1, 0, 9, 3),
                                            makeEvent(1, 2, 9, 10), makeEvent(0, 1500, 9, 3)}),
             QStringList({u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s, u"0.000 seconds delay\n"_s,
                          u"Button 3 down\n"_s, u"0.002 seconds delay\n"_s, u"1.500 seconds delay\n"_s,
                          u"Button 3 up\n"_s}));
}

void EventParserTest::firstEventWithoutLineContributesNothing()
{
    QCOMPARE(eventParser::getMessagesArray({makeEvent(1, 30, 8, 4), makeEvent(1, 15, 7, 5)}),
             QStringList({u"0.015 seconds delay\n"_s, u"Key Press B"_s}));
}

void EventParserTest::emptySequenceHasNoLines()
{
    QCOMPARE(eventParser::getMessagesArray({}), QStringList());
}

void EventParserTest::namesEveryKeyCode()
{
    const QString characters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890"_s;
    for (int hid = -300; hid <= 600; ++hid) {
        const QString expected = hid >= 4 && hid < 40 ? QString(characters.at(hid - 4)) : namesByCode().value(hid);
        QCOMPARE(eventParser::getStringWithHIDWithModifier(hid, 0), expected);
    }
}

void EventParserTest::namesKeysWithModifiers_data()
{
    QTest::addColumn<int>("hid");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<QString>("name");

    QTest::newRow("two modifiers") << 6 << 0x03 << u"Left Control + Left Shift + C"_s;
    QTest::newRow("a modifier as key") << 225 << 0x02 << u"Left Shift + Left Shift"_s;
    QTest::newRow("codes up to 3 add nothing") << 2 << 0x01 << u"Left Control"_s;
    QTest::newRow("code 0 adds nothing") << 0 << 0x01 << u"Left Control"_s;
    QTest::newRow("code 3 adds nothing") << 3 << 0x01 << u"Left Control"_s;
    QTest::newRow("code 4 is the first key") << 4 << 0x01 << u"Left Control + A"_s;
    QTest::newRow("unknown key ends in plus") << 50 << 0x01 << u"Left Control + "_s;
    QTest::newRow("key above 231") << 232 << 0x01 << u"Left Control + "_s;
    QTest::newRow("negative code") << -1 << 0x01 << u"Left Control + "_s;
    QTest::newRow("all modifiers")
        << 41 << 0xff
        << u"Left Control + Left Shift + Left Alt + Left Command + Right Control + Right Shift + Right Alt + Right Command + Escape"_s;
    QTest::newRow("only the low 8 bits name modifiers") << 6 << 0x102 << u"Left Shift + C"_s;
    // The given value is not 0, so the joining plus appears although the low 8 bits contain no modifier.
    QTest::newRow("256 is not 0") << 6 << 0x100 << u" + C"_s;
    QTest::newRow("256 with code 0") << 0 << 0x100 << QString();
    QTest::newRow("negative modifier") << 6 << -255 << u"Left Control + C"_s;
    QTest::newRow("nothing") << 0 << 0 << QString();
}

void EventParserTest::namesKeysWithModifiers()
{
    QFETCH(int, hid);
    QFETCH(int, modifier);
    QTEST(eventParser::getStringWithHIDWithModifier(hid, modifier), "name");
}

void EventParserTest::everyModifierBitHasItsCode()
{
    for (int modifier = 0; modifier <= 0xff; ++modifier) {
        QList<int> codes;
        eventParser::getModifierHIDRetVal(static_cast<quint8>(modifier), codes);
        QList<int> expected;
        for (int bit = 0; bit < 8; ++bit) {
            if (modifier & (1 << bit))
                expected += 224 + bit;
        }
        QCOMPARE(codes, expected);
    }
}

void EventParserTest::appendsModifierCodesToTheArray()
{
    QList<int> codes{4};
    eventParser::getModifierHIDRetVal(0x81, codes);
    QCOMPARE(codes, QList<int>({4, 224, 231}));
}

void EventParserTest::knowsTheCharactersOfLetterAndDigitKeys()
{
    const QByteArray characters("ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890");
    for (int hid = 0; hid <= 255; ++hid) {
        const char expected = hid >= 4 && hid <= 39 ? characters.at(hid - 4) : '\0';
        QCOMPARE(eventParser::returnASCII(static_cast<quint8>(hid)), expected);
    }
}

void EventParserTest::heldKeysAreInOrderOfTheFirstPress()
{
    const auto managed = [](QList<int> held) {
        eventParser::manageHIDStack(held);
        return held;
    };
    QCOMPARE(managed({20, 4}), QList<int>({20, 4}));       // the first call takes the order unchanged
    QCOMPARE(managed({4, 20}), QList<int>({20, 4}));       // without a change: order of the first press
    QCOMPARE(managed({4, 9, 20}), QList<int>({20, 4, 9})); // newly pressed last
    QCOMPARE(managed({9, 4}), QList<int>({4, 9}));         // one released
    QCOMPARE(managed({30, 9, 8}), QList<int>({9, 30, 8})); // one released, two pressed, in the array's order
    QCOMPARE(managed({5}), QList<int>({5}));               // all replaced
    QCOMPARE(managed({}), QList<int>());                   // all released
    QCOMPARE(managed({7, 6}), QList<int>({7, 6}));         // empty again: taken unchanged
}

void EventParserTest::heldListIsClearedByNamingWithoutModifier()
{
    QList<int> held{20, 4};
    eventParser::manageHIDStack(held);
    QCOMPARE(eventParser::getStringWithHIDWithModifier(4, 0), u"A"_s);
    held = {4, 20};
    eventParser::manageHIDStack(held);
    QCOMPARE(held, QList<int>({4, 20}));
}

void EventParserTest::namingWithModifierKeepsTheHeldList()
{
    QList<int> held{20, 4};
    eventParser::manageHIDStack(held);
    QCOMPARE(eventParser::getStringWithHIDWithModifier(4, 1), u"Left Control + A"_s);
    QCOMPARE(eventParser::getStringWithHIDWithModifier(4, 0x100), u" + A"_s);
    held = {4, 20};
    eventParser::manageHIDStack(held);
    QCOMPARE(held, QList<int>({20, 4}));
}

void EventParserTest::handlesEdgesOfTheHidStack_data()
{
    QTest::addColumn<QList<int>>("before");
    QTest::addColumn<QList<int>>("now");
    QTest::addColumn<QList<int>>("result");

    QTest::newRow("twice the same, first call") << QList<int>() << QList<int>{4, 4} << QList<int>{4, 4};
    QTest::newRow("a kept double stays double") << QList<int>{4, 4} << QList<int>{4} << QList<int>{4, 4};
    QTest::newRow("a new double comes once") << QList<int>{4} << QList<int>{4, 5, 5} << QList<int>{4, 5};
    // Two entries count as one new key, so the key behind them is left out.
    QTest::newRow("as many as the counts differ") << QList<int>{4, 4} << QList<int>{4, 5, 6} << QList<int>{4, 4, 5};
    QTest::newRow("as many entries, others") << QList<int>{4, 5} << QList<int>{6, 5} << QList<int>{5, 6};
}

void EventParserTest::handlesEdgesOfTheHidStack()
{
    QFETCH(QList<int>, before);
    QFETCH(QList<int>, now);
    QFETCH(QList<int>, result);
    eventParser::manageHIDStack(before);
    eventParser::manageHIDStack(now);
    QCOMPARE(now, result);
}

QTEST_APPLESS_MAIN(EventParserTest)
#include "eventparsertest.moc"
