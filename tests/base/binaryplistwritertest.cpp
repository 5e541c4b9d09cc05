// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QByteArray written(const QVariant &root)
{
    return PropertyList::writeBinary(root).value_or(QByteArray());
}

/// The bytes of the one object in a list of one object, without its offset table and trailer.
QByteArray objectBytes(const QVariant &scalar)
{
    const QByteArray data = written(scalar);
    return data.mid(8, data.size() - 8 - 1 - 32);
}

quint64 trailerNumber(const QByteArray &data, int at)
{
    return qFromBigEndian<quint64>(data.constData() + data.size() - 32 + at);
}

quint64 objectCount(const QVariant &root)
{
    return trailerNumber(written(root), 8);
}

QVariant nested(int depth)
{
    QVariant value = QVariantList();
    for (int i = 1; i < depth; ++i)
        value = QVariantList{value};
    return value;
}

} // namespace

class BinaryPlistWriterTest : public QObject
{
    Q_OBJECT

private slots:
    void encodesScalars_data();
    void encodesScalars();
    void writesTheWholeFile();
    void writesKeysInOrderBeforeValues();
    void sameTreeGivesSameBytes();
    void writesEqualScalarsOnce();
    void distinguishesEqualNumbersOfDifferentTypes();
    void distinguishesStringFromDataAndDateFromReal();
    void signedZeroSurvives();
    void usesSmallestSizes_data();
    void usesSmallestSizes();
    void acceptsStringListAndOtherNumberTypes();
    void writesDatesInUtc();
    void refusesUnsupportedValues_data();
    void refusesUnsupportedValues();
    void keepsLimitOfDepth();
    void keepsLimitOfNodesWhenTreeIsShared();
    void keepsLimitOfContent();
};

void BinaryPlistWriterTest::encodesScalars_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const QVariant &value, const QByteArray &hex) {
        QTest::newRow(name) << value << QByteArray::fromHex(hex);
    };
    row("false", false, "08");
    row("true", true, "09");
    row("0", 0, "1000");
    row("255", 255, "10ff");
    row("256", 256, "110100");
    row("65535", 65535, "11ffff");
    row("65536", 65536, "1200010000");
    row("2^32 - 1", qlonglong(0xffffffff), "12ffffffff");
    row("2^32", qlonglong(1) << 32, "130000000100000000");
    row("-1", -1, "13ffffffffffffffff");
    row("-2^63", std::numeric_limits<qlonglong>::min(), "138000000000000000");
    row("2^63 - 1", std::numeric_limits<qlonglong>::max(), "137fffffffffffffff");
    row("2^63", qulonglong(1) << 63, "1400000000000000008000000000000000");
    row("2^64 - 1", std::numeric_limits<qulonglong>::max(), "140000000000000000ffffffffffffffff");
    row("1.0", 1.0, "233ff0000000000000");
    row("start of 2001", QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC), "330000000000000000");
    row("a second and a half before 2001", QDateTime(QDate(2000, 12, 31), QTime(23, 59, 58, 500), Qt::UTC),
        "33bff8000000000000");
    row("empty data", QByteArray(""), "40");
    row("14 bytes", QByteArray(14, 'x'), "4e7878787878787878787878787878");
    row("15 bytes", QByteArray(15, 'x'), "4f100f787878787878787878787878787878");
    row("256 bytes", QByteArray(256, 'x'), "4f110100" + QByteArray(256, 'x').toHex());
    row("empty string", u""_s, "50");
    row("null string", QString(), "50");
    row("ASCII", u"A\u007f"_s, "52417f");
    row("a zero character", QString(QChar(u'\0')), "5100");
    row("15 characters", u"AAAAAAAAAAAAAAA"_s, "5f100f414141414141414141414141414141");
    row("Latin-1 is not ASCII", u"é"_s, "6100e9");
    row("surrogate pair", u"\U0001f642"_s, "62d83dde42");
    row("unpaired surrogate", QString(QChar(0xdc00)) + QChar(0xd83d), "62dc00d83d");
}

void BinaryPlistWriterTest::encodesScalars()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, bytes);
    QCOMPARE(objectBytes(value).toHex(), bytes.toHex());
}

void BinaryPlistWriterTest::writesTheWholeFile()
{
    // Scalars come first, in the order of their first occurrence; the containers follow.
    const QByteArray expected = QByteArray::fromHex("62706c6973743030" // bplist00
                                                    "5161"
                                                    "09"
                                                    "5162" // "a", true, "b"
                                                    "d2"
                                                    "0103"
                                                    "0204" // {a: true, b: []}
                                                    "a0"   // []
                                                    "0d"
                                                    "08"
                                                    "0a"
                                                    "0b"
                                                    "12"
                                                    "000000000000"
                                                    "01"
                                                    "01"
                                                    "0000000000000005"
                                                    "0000000000000000"
                                                    "0000000000000013");
    QCOMPARE(written(QVariantMap{{u"a"_s, true}, {u"b"_s, QVariantList()}}).toHex(), expected.toHex());
}

void BinaryPlistWriterTest::writesKeysInOrderBeforeValues()
{
    const QByteArray data = written(QVariantMap{{u"10"_s, u"x"_s}, {u"9"_s, u"y"_s}, {u"Z"_s, u"z"_s}});
    // Each is one object, met as key, value, key, value: numbers 1, 3, 5 are keys; 2, 4, 6 are values.
    QVERIFY(data.contains(QByteArray::fromHex("d3"
                                              "010305"
                                              "020406")));
    QVERIFY(data.indexOf("10") < data.indexOf('9'));
    QVERIFY(data.indexOf('9') < data.indexOf('Z'));
}

void BinaryPlistWriterTest::sameTreeGivesSameBytes()
{
    QVariantMap forwards;
    QVariantMap backwards;
    for (int i = 0; i < 300; ++i)
        forwards.insert(QString::number(i), i);
    for (int i = 299; i >= 0; --i)
        backwards.insert(QString::number(i), i);
    QCOMPARE(written(forwards), written(backwards));
    QCOMPARE(written(PropertyList::read(written(forwards)).value()), written(forwards));
}

void BinaryPlistWriterTest::writesEqualScalarsOnce()
{
    const QDateTime date(QDate(2024, 2, 29), QTime(12, 0), Qt::UTC);
    const QVariantList once{u"text"_s, u"täxt"_s, 7, 100'000, 2.5, true, QByteArray("data"), date};
    // Equal values that share nothing in memory.
    const QVariantList again{QString::fromLatin1("text"),
                             QString::fromUtf8("täxt"),
                             7,
                             100'000,
                             2.5,
                             true,
                             QByteArray("data", 4),
                             QDateTime::fromMSecsSinceEpoch(date.toMSecsSinceEpoch())};
    QCOMPARE(objectCount(once), 9);
    QCOMPARE(objectCount(once + again), 9);
    // A key and an equal value are one string; containers are not shared.
    QCOMPARE(objectCount(QVariantMap{{u"a"_s, u"a"_s}}), 2);
    QCOMPARE(objectCount(QVariantList{QVariantList(), QVariantList()}), 3);
}

void BinaryPlistWriterTest::distinguishesEqualNumbersOfDifferentTypes()
{
    const QVariantList numbers{1, true, 1.0, 0, false, 0.0};
    QCOMPARE(objectCount(numbers), 7);
    const QVariantList back = PropertyList::read(written(numbers)).value().toList();
    QCOMPARE(back.size(), numbers.size());
    for (qsizetype i = 0; i < numbers.size(); ++i)
        QCOMPARE(back[i].typeId(), numbers[i].typeId());
}

void BinaryPlistWriterTest::distinguishesStringFromDataAndDateFromReal()
{
    QCOMPARE(objectCount(QVariantList{u"ab"_s, QByteArray("ab")}), 3);
    QCOMPARE(objectCount(QVariantList{0.0, QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC)}), 3);
}

void BinaryPlistWriterTest::signedZeroSurvives()
{
    const QVariantList back = PropertyList::read(written(QVariantList{0.0, -0.0})).value().toList();
    QVERIFY(!std::signbit(back[0].toDouble()));
    QVERIFY(std::signbit(back[1].toDouble()));
}

void BinaryPlistWriterTest::usesSmallestSizes_data()
{
    QTest::addColumn<int>("scalars");
    QTest::addColumn<int>("bytesEach");
    QTest::addColumn<int>("referenceSize");
    QTest::addColumn<int>("offsetSize");
    // The array itself is one object. Its offset, the largest, is 8 + scalars * (bytesEach + 2).
    QTest::newRow("256 objects") << 255 << 4 << 1 << 2;
    QTest::newRow("257 objects") << 256 << 4 << 2 << 2;
    QTest::newRow("offset 248") << 40 << 4 << 1 << 1;
    QTest::newRow("offset 260") << 42 << 4 << 1 << 2;
    QTest::newRow("65536 objects") << 65535 << 6 << 2 << 4;
    QTest::newRow("65537 objects") << 65536 << 6 << 4 << 4;
}

void BinaryPlistWriterTest::usesSmallestSizes()
{
    QFETCH(int, scalars);
    QFETCH(int, bytesEach);
    QVariantList array;
    for (int i = 0; i < scalars; ++i)
        array.append(u"%1"_s.arg(i, bytesEach + 1, 10, QChar(u'0')));
    const QByteArray data = written(array);
    QTEST(int(data[data.size() - 32 + 6]), "offsetSize");
    QTEST(int(data[data.size() - 32 + 7]), "referenceSize");
    QCOMPARE(PropertyList::read(data), QVariant(array));
}

void BinaryPlistWriterTest::acceptsStringListAndOtherNumberTypes()
{
    QCOMPARE(written(QStringList{u"a"_s, u"b"_s}), written(QVariantList{u"a"_s, u"b"_s}));
    const QVariantList others{uint(7), short(-7), ushort(7), QVariant::fromValue(7L), QVariant::fromValue(7UL), 0.5F};
    QCOMPARE(written(others), written(QVariantList{7, -7, 7, 7, 7, 0.5}));
}

void BinaryPlistWriterTest::writesDatesInUtc()
{
    const QDateTime utc(QDate(2011, 5, 17), QTime(9, 30), Qt::UTC);
    QCOMPARE(written(utc.toOffsetFromUtc(7200)), written(utc));
}

void BinaryPlistWriterTest::refusesUnsupportedValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("null pointer") << QVariant::fromValue(nullptr);
    QTest::newRow("hash") << QVariant(QVariantHash{{u"a"_s, 1}});
    QTest::newRow("point") << QVariant(QPoint(1, 2));
    QTest::newRow("invalid date") << QVariant(QDateTime());
    QTest::newRow("date beyond all years") << QVariant(QDateTime::fromMSecsSinceEpoch(9'000'000'000'000'000, Qt::UTC));
    QTest::newRow("inside an array") << QVariant(QVariantList{1, QVariant()});
    QTest::newRow("inside a dictionary") << QVariant(QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, QVariant()}}}});
}

void BinaryPlistWriterTest::refusesUnsupportedValues()
{
    QFETCH(QVariant, value);
    QVERIFY(!PropertyList::writeBinary(value));
}

void BinaryPlistWriterTest::keepsLimitOfDepth()
{
    QVERIFY(PropertyList::writeBinary(nested(PropertyList::maximumDepth)));
    QVERIFY(!PropertyList::writeBinary(nested(PropertyList::maximumDepth + 1)));
}

void BinaryPlistWriterTest::keepsLimitOfNodesWhenTreeIsShared()
{
    QVariant doubled = 1;
    for (int i = 0; i < 40; ++i) // a few kilobytes in memory, 2^40 values for a reader that visits each
        doubled = QVariantList{doubled, doubled};
    QVERIFY(!PropertyList::writeBinary(doubled));
}

void BinaryPlistWriterTest::keepsLimitOfContent()
{
    const QVariant large = QByteArray(1024 * 1024, 'x');
    QVERIFY(PropertyList::writeBinary(QVariantList(64, large)));
    QVERIFY(!PropertyList::writeBinary(QVariantList(65, large)));
    QVERIFY(!PropertyList::writeBinary(QByteArray(PropertyList::maximumInputBytes, 'x')));
}

QTEST_GUILESS_MAIN(BinaryPlistWriterTest)
#include "binaryplistwritertest.moc"
