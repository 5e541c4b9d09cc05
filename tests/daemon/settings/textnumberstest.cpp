// SPDX-License-Identifier: MIT
#include "daemon/settings/textnumbers.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap record(const QByteArray &text)
{
    return PropertyList::read(text).value_or(QVariant()).toMap();
}

/// The same types and values; QVariants of different types can be equal.
QByteArray bytes(const QVariantMap &record)
{
    return PropertyList::writeBinary(record).value_or(QByteArray());
}

} // namespace

class TextNumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheNumbersOfAProfile();
    void readsTheNumbersOfAMacro();
    void keepsOtherTexts_data();
    void keepsOtherTexts();
};

void TextNumbersTest::readsTheNumbersOfAProfile()
{
    const QVariantMap profile = TextNumbers::readInProfile(record(R"({
        ProfileName = 12; AutoSwitchOn = 1; ProfileOSDOn = 0; BacklightLED = 1; LEDKBEffects = 4;
        BrightnessKBNormal = 3; GameLightingOn = 1; ScrollLED = 0; Unknown = 5;
        AppInfo = { application = 7; };
        LEDKBColors = ( { Red = "0.5"; Green = 1; Blue = 0; Name = 3; }, text );
        Keys = { 4 = { command = 16; param1 = 80; param2 = "-2"; other = 1; };
                 5 = { command = 46; param1 = 7; param2 = 8; }; };
    })"));
    const QVariantMap expected{
        {u"ProfileName"_s, u"12"_s},
        {u"AutoSwitchOn"_s, 1},
        {u"ProfileOSDOn"_s, 0},
        {u"BacklightLED"_s, 1},
        {u"LEDKBEffects"_s, 4},
        {u"BrightnessKBNormal"_s, 3},
        {u"GameLightingOn"_s, 1},
        {u"ScrollLED"_s, 0},
        {u"Unknown"_s, u"5"_s},
        {u"AppInfo"_s, QVariantMap{{u"application"_s, u"7"_s}}},
        {u"LEDKBColors"_s,
         QVariantList{
             QVariantMap{{u"Red"_s, 0.5}, {u"Green"_s, 1}, {u"Blue"_s, 0}, {u"Name"_s, u"3"_s}},
             u"text"_s,
         }},
        {u"Keys"_s,
         QVariantMap{
             {u"4"_s, QVariantMap{{u"command"_s, 16}, {u"param1"_s, 80}, {u"param2"_s, -2}, {u"other"_s, u"1"_s}}},
             {u"5"_s, QVariantMap{{u"command"_s, 46}, {u"param1"_s, u"7"_s}, {u"param2"_s, u"8"_s}}},
         }},
    };
    QCOMPARE(bytes(profile), bytes(expected));
}

void TextNumbersTest::readsTheNumbersOfAMacro()
{
    const QVariantMap macro = TextNumbers::readInMacro(record(R"({
        MacroName = 12; delay = 20; Unknown = 5;
        sequence = { Events = ( { command = 1; delay = 15; page = 7; argument = 4; other = 1; } ); more = 1; };
    })"));
    const QVariantMap event{
        {u"command"_s, 1}, {u"delay"_s, 15}, {u"page"_s, 7}, {u"argument"_s, 4}, {u"other"_s, u"1"_s}};
    const QVariantMap expected{
        {u"MacroName"_s, u"12"_s},
        {u"delay"_s, 20},
        {u"Unknown"_s, u"5"_s},
        {u"sequence"_s, QVariantMap{{u"Events"_s, QVariantList{event}}, {u"more"_s, u"1"_s}}},
    };
    QCOMPARE(bytes(macro), bytes(expected));
}

void TextNumbersTest::keepsOtherTexts_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("a word") << QVariant(u"ten"_s);
    QTest::newRow("a number and a word") << QVariant(u"10 ms"_s);
    QTest::newRow("no text") << QVariant(u""_s);
    QTest::newRow("infinite") << QVariant(u"inf"_s);
    QTest::newRow("not a number") << QVariant(u"nan"_s);
    QTest::newRow("a boolean") << QVariant(true);
    QTest::newRow("a real") << QVariant(1.0);
    QTest::newRow("data") << QVariant(QByteArray("1"));
    QTest::newRow("an array") << QVariant(QVariantList{u"1"_s});
    QTest::newRow("a dictionary") << QVariant(QVariantMap{{u"x"_s, u"1"_s}});
}

void TextNumbersTest::keepsOtherTexts()
{
    QFETCH(QVariant, value);
    const QVariantMap macro{
        {u"delay"_s, value},
        {u"sequence"_s, QVariantMap{{u"Events"_s, QVariantList{QVariantMap{{u"page"_s, value}}, value}}}}};
    QCOMPARE(bytes(TextNumbers::readInMacro(macro)), bytes(macro));
    const QVariantMap profile{
        {u"AutoSwitchOn"_s, value}, {u"LEDKBColors"_s, value}, {u"Keys"_s, QVariantMap{{u"4"_s, value}}}};
    QCOMPARE(bytes(TextNumbers::readInProfile(profile)), bytes(profile));
    const QVariantMap keys{{u"Keys"_s, value}, {u"LEDKBColors"_s, QVariantList{QVariantMap{{u"Red"_s, value}}, value}}};
    QCOMPARE(bytes(TextNumbers::readInProfile(keys)), bytes(keys));
}

QTEST_GUILESS_MAIN(TextNumbersTest)
#include "textnumberstest.moc"
