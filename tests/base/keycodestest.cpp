// SPDX-License-Identifier: MIT
#include "base/keycodes.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <libevdev/libevdev.h>

using namespace Qt::StringLiterals;

namespace {

HidUsage key(int usage)
{
    return {HidUsage::keyboardPage, static_cast<quint16>(usage)};
}

int codeNamed(const QString &name)
{
    return libevdev_event_code_from_name(EV_KEY, name.toLatin1().constData());
}

} // namespace

class KeyCodesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCodeIsItsOwnUsage();
    void tableIsAscendingAndAgreesWithLibevdev();
    void lettersDigitsAndFunctionKeysHaveTheirUsualNames();
    void everyKeyOfTheLayoutHasACode();
    void everyCodeWithAUsageMapsToItself();
    void everyKeyOfThePageHasACode();
    void buttonsFollowEachOther();
    void otherUsagesHaveNoCode();
    void scanCodeTakesPrecedence_data();
    void scanCodeTakesPrecedence();
};

void KeyCodesTest::everyCodeIsItsOwnUsage()
{
    for (quint16 code = 0; code < KeyCodes::codeCount; ++code)
        QCOMPARE(KeyCodes::linuxCode(KeyCodes::systemKeyOfCode(code)), code);
    QCOMPARE(KeyCodes::systemKeyOfCode(KEY_LEFTCTRL), (HidUsage{HidUsage::keyboardPage, 224})); // shared with Control
    QCOMPARE(KeyCodes::linuxCode({HidUsage::systemPage, KeyCodes::codeCount}), std::nullopt);
}

void KeyCodesTest::tableIsAscendingAndAgreesWithLibevdev()
{
    QFile file(QStringLiteral(KESTRA_KEY_CODE_TABLE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    static const QRegularExpression row(u"^KESTRA_KEY_CODE\\((\\d+), (KEY_\\w+)\\)"_s,
                                        QRegularExpression::MultilineOption);
    int last = HidUsage::firstKey - 1;
    int count = 0;
    auto matches = row.globalMatch(QString::fromUtf8(file.readAll()));
    for (; matches.hasNext(); ++count) {
        const QRegularExpressionMatch match = matches.next();
        const int usage = match.captured(1).toInt();
        QVERIFY2(usage > last && usage <= HidUsage::lastKey, qPrintable(match.captured(0)));
        last = usage;
        // libevdev has the names from its own header.
        QCOMPARE(int(KeyCodes::linuxCode(key(usage)).value_or(0)), codeNamed(match.captured(2)));
    }
    QCOMPARE(count, 150);
}

void KeyCodesTest::lettersDigitsAndFunctionKeysHaveTheirUsualNames()
{
    QStringList names;
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        names += QString(QLatin1Char(letter));
    for (int digit = 0; digit <= 9; ++digit)
        names += QString::number(digit);
    for (int number = 1; number <= 14; ++number)
        names += u"F%1"_s.arg(number);
    for (const QString &name : std::as_const(names)) {
        const std::optional<int> usage = keyCodeForName(name);
        QVERIFY2(usage, qPrintable(name));
        QCOMPARE(int(KeyCodes::linuxCode(key(*usage)).value_or(0)), codeNamed(u"KEY_"_s + name));
    }
}

void KeyCodesTest::everyKeyOfTheLayoutHasACode()
{
    for (int usage = HidUsage::firstKey; usage <= HidUsage::lastKey; ++usage) {
        if (KeyLayout::rowForCode(usage))
            QVERIFY2(KeyCodes::linuxCode(key(usage)).value_or(KEY_UNKNOWN) != KEY_UNKNOWN, qPrintable(keyName(usage)));
    }
}

void KeyCodesTest::everyCodeWithAUsageMapsToItself()
{
    int count = 0;
    for (int code = 0; code <= 0xFFFF; ++code) {
        const std::optional<HidUsage> usage = KeyCodes::usageOfCode(static_cast<quint16>(code));
        if (!usage)
            continue;
        ++count;
        QVERIFY(code != KEY_UNKNOWN);
        QCOMPARE(int(KeyCodes::linuxCode(*usage).value_or(0)), code);
    }
    QCOMPARE(count, 147); // three of the 150 rows have the code of an earlier row
    QCOMPARE(KeyCodes::usageOfCode(KEY_BACKSLASH), key(49));
    QCOMPARE(KeyCodes::usageOfCode(KEY_DELETE), key(76));
}

void KeyCodesTest::everyKeyOfThePageHasACode()
{
    for (int usage = HidUsage::firstKey; usage <= HidUsage::lastKey; ++usage)
        QVERIFY(KeyCodes::linuxCode(key(usage)));
    QCOMPARE(KeyCodes::linuxCode(key(130)), quint16(KEY_UNKNOWN));
}

void KeyCodesTest::buttonsFollowEachOther()
{
    QCOMPARE(KeyCodes::linuxCode({HidUsage::buttonPage, 1}), quint16(BTN_LEFT));
    QCOMPARE(KeyCodes::linuxCode({HidUsage::buttonPage, 2}), quint16(BTN_RIGHT));
    QCOMPARE(KeyCodes::linuxCode({HidUsage::buttonPage, 3}), quint16(BTN_MIDDLE));
    QCOMPARE(KeyCodes::linuxCode({HidUsage::buttonPage, 8}), quint16(BTN_TASK));
}

void KeyCodesTest::otherUsagesHaveNoCode()
{
    for (const HidUsage usage : {key(0), key(3), key(232), key(0xFFFF), HidUsage{HidUsage::buttonPage, 0},
                                 HidUsage{HidUsage::buttonPage, 17}, HidUsage{HidUsage::consumerPage, 0xE9}})
        QVERIFY2(!KeyCodes::linuxCode(usage), qPrintable(QString::number(usage.extended(), 16)));
    QVERIFY(!KeyCodes::usageOfCode(0));
    QVERIFY(!KeyCodes::usageOfCode(KEY_PLAYPAUSE));
    QVERIFY(!KeyCodes::usageOfCode(KEY_CNT));
    QVERIFY(!KeyCodes::usageOfCode(0xFFFF));
}

void KeyCodesTest::scanCodeTakesPrecedence_data()
{
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("usage"); // -1: none
    QTest::newRow("as usual") << 0x70004u << KEY_A << 4;
    QTest::newRow("changed by a table") << 0x70039u << KEY_LEFTCTRL << 57;
    QTest::newRow("unknown to Linux") << 0x70082u << KEY_UNKNOWN << 130;
    QTest::newRow("made a media key") << 0x7003Au << KEY_BRIGHTNESSDOWN << -1;
    QTest::newRow("Consumer page") << 0xC00E2u << KEY_MUTE << -1;
    QTest::newRow("button") << 0x90001u << BTN_LEFT << -1;
    QTest::newRow("error code of the page") << 0x70001u << KEY_A << -1;
    QTest::newRow("beyond the keys") << 0x700E8u << KEY_PLAYPAUSE << -1;
    QTest::newRow("code out of range") << 0x70004u << 0x1234 << -1;
}

void KeyCodesTest::scanCodeTakesPrecedence()
{
    QFETCH(quint32, scanCode);
    QFETCH(int, code);
    QFETCH(int, usage);
    const std::optional<HidUsage> result = KeyCodes::usageOfScanCode(scanCode, static_cast<quint16>(code));
    QCOMPARE(result ? int(result->usage) : -1, usage);
}

QTEST_APPLESS_MAIN(KeyCodesTest)
#include "keycodestest.moc"
