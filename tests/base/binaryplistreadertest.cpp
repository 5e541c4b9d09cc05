// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "tests/base/plistsamples.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

/// A file of arrays only; each lists the arrays that it contains. References have two bytes; the first array is the
/// root.
QByteArray arraysFile(const QList<QList<int>> &arrays)
{
    const auto number = [](int value) { return bytes({value >> 8, value}); };
    QByteArray file("bplist00");
    QByteArray table;
    for (const QList<int> &array : arrays) {
        table += number(int(file.size()));
        file += char(0xa0 | array.size());
        for (const int reference : array)
            file += number(reference);
    }
    const auto tableStart = quint64(file.size());
    return withTrailer(file + table + QByteArray(32, '\0'), 2, 2, quint64(arrays.size()), 0, tableStart);
}

/// A chain of `depth` arrays, each containing the next.
QByteArray nestedArrays(int depth)
{
    QList<QList<int>> arrays;
    for (int i = 1; i < depth; ++i)
        arrays.append(QList<int>{i});
    arrays.append(QList<int>());
    return arraysFile(arrays);
}

} // namespace

class BinaryPlistReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void decodesScalars_data();
    void decodesScalars();
    void refusesObjects_data();
    void refusesObjects();
    void readsSizesOtherThanPowersOfTwo();
    void rootNeedNotBeTheFirstObject();
    void unusedObjectsAreIgnored();
    void lastOfEqualKeysApplies();
    void readsKeysInAnyOrder();
    void emptyAndAbsentAreDistinct();
    void sharedContainersAreEqualEverywhere();
    void arrayAndDictionaryWithEqualReferencesDiffer();
    void refusesTrailers_data();
    void refusesTrailers();
    void refusesCycles_data();
    void refusesCycles();
    void refusesNestedPairsAtOnce();
    void acceptsSharingWithinLimits();
    void refusesSharedContentBeyondLimit();
    void keepsLimitOfDepth();
    void keepsLimitOfDepthForSharedContainers();
    void refusesOverlappingArraysQuickly();
    void refusesStringsThatShareBytes();
    void refusesHugeCounts_data();
    void refusesHugeCounts();
    void randomTreesSurviveWritingAndReading();
};

void BinaryPlistReaderTest::decodesScalars_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const char *digits, const QVariant &value) {
        QTest::newRow(name) << hex(digits) << value;
    };
    row("false", "08", false);
    row("true", "09", true);
    row("one byte is unsigned", "10ff", 255);
    row("two bytes are unsigned", "11ffff", 65535);
    row("four bytes are unsigned", "12ffffffff", qlonglong(0xffffffff));
    row("four bytes that fit int", "127fffffff", std::numeric_limits<int>::max());
    row("eight bytes are signed", "13ffffffffffffffff", -1);
    row("eight bytes, small", "130000000000000007", 7);
    row("eight bytes, least", "138000000000000000", std::numeric_limits<qlonglong>::min());
    row("eight bytes, below int", "13ffffffff7fffffff", qlonglong(std::numeric_limits<int>::min()) - 1);
    row("sixteen bytes, small", "1400000000000000000000000000000007", 7);
    row("sixteen bytes, negative", "14ffffffffffffffffffffffffffffffff", -1);
    row("sixteen bytes, 2^63", "1400000000000000008000000000000000", qulonglong(1) << 63);
    row("sixteen bytes, 2^64 - 1", "140000000000000000ffffffffffffffff", std::numeric_limits<qulonglong>::max());
    row("real of four bytes", "22bfc00000", -1.5);
    row("real of eight bytes", "233ff8000000000000", 1.5);
    row("infinite real", "237ff0000000000000", std::numeric_limits<double>::infinity());
    row("date", "33bff8000000000000", QDateTime(QDate(2000, 12, 31), QTime(23, 59, 58, 500), Qt::UTC));
    row("first day of this era", "33c22d63c37f000000", QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC));
    row("data", "4300ff7f", hex("00ff7f"));
    row("data with a count of two bytes", "4f11000300ff7f", hex("00ff7f"));
    row("ASCII", "52417f", u"A\u007f"_s);
    row("count of eight bytes", "5f13000000000000000141", u"A"_s);
    row("UTF-16", "62d83dde42", u"\U0001f642"_s);
    row("unpaired surrogate", "61d83d", QString(QChar(0xd83d)));
    row("ASCII as UTF-16", "610041", u"A"_s);
}

void BinaryPlistReaderTest::decodesScalars()
{
    QFETCH(QByteArray, object);
    QFETCH(QVariant, value);
    const auto read = PropertyList::read(binaryFile({object}));
    QVERIFY(read);
    QCOMPARE(read->typeId(), value.typeId());
    QCOMPARE(*read, value);
    if (value.typeId() == QMetaType::QDateTime)
        QCOMPARE(read->toDateTime().timeSpec(), Qt::UTC);
}

void BinaryPlistReaderTest::refusesObjects_data()
{
    QTest::addColumn<QByteArray>("object");
    const auto row = [](const char *name, const char *digits) { QTest::newRow(name) << hex(digits); };
    row("null", "00");
    row("filler", "0f");
    row("URL", "0c5161");
    row("integer of 32 bytes", "15000000000000000000000000000000000000000000000000000000000000000001");
    row("integer above 2^64", "1400000000000000010000000000000000");
    row("integer below -2^63", "14ffffffffffffffff7fffffffffffffff");
    row("integer cut off", "130000");
    row("real of two bytes", "210000");
    row("real cut off", "23000000");
    row("date of four bytes", "3200000000");
    row("date not a number", "337ff8000000000000");
    row("infinite date", "337ff0000000000000");
    row("date beyond all years", "337e37e43c8800759c");
    row("data cut off", "43ffff");
    row("string cut off", "5241");
    row("UTF-16 cut off", "62004100");
    row("ASCII that is none", "51e9");
    row("count is no integer", "5f220000000041");
    row("count of sixteen bytes", "5f14000000000000000000000000000000014100");
    row("count cut off", "5f1300");
    row("count missing", "5f");
    row("type 7", "70");
    row("UID", "8001");
    row("ordered set", "b0");
    row("set", "c0");
    row("type e", "e0");
    row("array with a reference to nothing", "a105");
    row("array cut off", "a2");
    row("dictionary cut off", "d100");
    row("key is no string", "d10101");
}

void BinaryPlistReaderTest::refusesObjects()
{
    QFETCH(QByteArray, object);
    // The object is the last one; no next object can supply its missing bytes.
    const QByteArray array = hex("a20102");
    QVERIFY(PropertyList::read(binaryFile({array, hex("1007"), hex("09")})));
    QVERIFY(!PropertyList::read(binaryFile({array, hex("1007"), object})));
}

void BinaryPlistReaderTest::readsSizesOtherThanPowersOfTwo()
{
    const QByteArray objects = hex("a2000001"
                                   "000002"
                                   "51"
                                   "61"
                                   "09");
    const QByteArray table = hex("0000000008"
                                 "000000000f"
                                 "0000000011");
    const QByteArray file = "bplist00" + objects + table + QByteArray(32, '\0');
    QCOMPARE(PropertyList::read(withTrailer(file, 5, 3, 3, 0, 8 + quint64(objects.size()))),
             QVariant(QVariantList{u"a"_s, true}));
}

void BinaryPlistReaderTest::rootNeedNotBeTheFirstObject()
{
    QCOMPARE(PropertyList::read(binaryFile({hex("1001"), hex("a100")}, 1)), QVariant(QVariantList{1}));
}

void BinaryPlistReaderTest::unusedObjectsAreIgnored()
{
    QCOMPARE(PropertyList::read(binaryFile({hex("a0"), hex("00"), hex("a101")})), QVariant(QVariantList()));
}

void BinaryPlistReaderTest::lastOfEqualKeysApplies()
{
    const auto read = PropertyList::read(binaryFile({hex("d2"
                                                         "0102"
                                                         "0304"),
                                                     hex("5161"), hex("5161"), hex("1001"), hex("1002")}));
    QCOMPARE(read, QVariant(QVariantMap{{u"a"_s, 2}}));
}

void BinaryPlistReaderTest::readsKeysInAnyOrder()
{
    const auto read = PropertyList::read(binaryFile({hex("d3"
                                                         "010203"
                                                         "040404"),
                                                     hex("5163"), hex("5161"), hex("5162"), hex("09")}));
    QCOMPARE(read, QVariant(QVariantMap{{u"a"_s, true}, {u"b"_s, true}, {u"c"_s, true}}));
}

void BinaryPlistReaderTest::emptyAndAbsentAreDistinct()
{
    QVERIFY(!PropertyList::read(QByteArray()));
    QVERIFY(!PropertyList::read(QByteArray("")));
    QVERIFY(!PropertyList::read(QByteArray("bplist00")));
    QVERIFY(isSameTree(PropertyList::read(binaryFile({hex("d0")})).value(), QVariantMap()));
    QVERIFY(isSameTree(PropertyList::read(binaryFile({hex("a0")})).value(), QVariantList()));
    QVERIFY(isSameTree(PropertyList::read(binaryFile({hex("50")})).value(), u""_s));
    const QVariant data = PropertyList::read(binaryFile({hex("40")})).value();
    QVERIFY(isSameTree(data, QByteArray("")));
    QVERIFY(!data.toByteArray().isNull());
}

void BinaryPlistReaderTest::sharedContainersAreEqualEverywhere()
{
    const auto read = PropertyList::read(binaryFile({hex("a3010102"), hex("a103"), hex("a103"), hex("09")}));
    const QVariant inner = QVariantList{true};
    QCOMPARE(read, QVariant(QVariantList{inner, inner, inner}));
}

void BinaryPlistReaderTest::arrayAndDictionaryWithEqualReferencesDiffer()
{
    const auto read = PropertyList::read(binaryFile({hex("a20102"), hex("a20303"), hex("d10303"), hex("5161")}));
    QCOMPARE(read, QVariant(QVariantList{QVariantList{u"a"_s, u"a"_s}, QVariantMap{{u"a"_s, u"a"_s}}}));
}

void BinaryPlistReaderTest::refusesTrailers_data()
{
    QTest::addColumn<int>("offsetSize");
    QTest::addColumn<int>("referenceSize");
    QTest::addColumn<quint64>("objectCount");
    QTest::addColumn<quint64>("top");
    QTest::addColumn<quint64>("tableStart");
    // The valid ones are 2, 1, 2, 0, 12.
    const auto row = [](const char *name, int offsetSize, int referenceSize, quint64 count, quint64 top,
                        quint64 start) { QTest::newRow(name) << offsetSize << referenceSize << count << top << start; };
    const quint64 most = ~quint64(0);
    row("offset size 0", 0, 1, 2, 0, 12);
    row("offset size 9", 9, 1, 2, 0, 12);
    row("offset size 255", 255, 1, 2, 0, 12);
    row("reference size 0", 2, 0, 2, 0, 12);
    row("reference size 9", 2, 9, 2, 0, 12);
    row("no objects", 2, 1, 0, 0, 12);
    row("more objects than offsets", 2, 1, 3, 0, 12);
    row("all objects there can be", 2, 1, most, 0, 12);
    row("count that wraps around", 8, 1, most / 8 + 2, 0, 12);
    row("root beyond the objects", 2, 1, 2, 2, 12);
    row("root far beyond the objects", 2, 1, 2, most, 12);
    row("table in the header", 2, 1, 2, 0, 7);
    row("table behind the file", 2, 1, 2, 0, 1000);
    row("table far behind the file", 2, 1, 2, 0, most);
    row("table in the trailer", 2, 1, 2, 0, 13);
}

void BinaryPlistReaderTest::refusesTrailers()
{
    const QByteArray file = binaryFile({hex("a101"), hex("1001")});
    QCOMPARE(PropertyList::read(withTrailer(file, 2, 1, 2, 0, 12)), QVariant(QVariantList{1}));
    QFETCH(int, offsetSize);
    QFETCH(int, referenceSize);
    QFETCH(quint64, objectCount);
    QFETCH(quint64, top);
    QFETCH(quint64, tableStart);
    QVERIFY(!PropertyList::read(withTrailer(file, offsetSize, referenceSize, objectCount, top, tableStart)));
}

void BinaryPlistReaderTest::refusesCycles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("array in itself") << binaryFile({hex("a100")});
    QTest::newRow("array in itself by another one") << binaryFile({hex("a101"), hex("a100")});
    QTest::newRow("dictionary in itself") << binaryFile({hex("d10100"), hex("5161")});
    QTest::newRow("dictionary as its own key") << binaryFile({hex("d10001"), hex("5161")});
    QTest::newRow("cycle below the root") << binaryFile({hex("a103"), hex("a102"), hex("a101"),
                                                         hex("a201"
                                                             "02")});
}

void BinaryPlistReaderTest::refusesCycles()
{
    QFETCH(QByteArray, file);
    QVERIFY(!PropertyList::read(file));
}

void BinaryPlistReaderTest::refusesNestedPairsAtOnce()
{
    const QByteArray file = nestedPairs();
    QCOMPARE(file.size(), 164);
    qint64 best = std::numeric_limits<qint64>::max();
    for (int attempt = 0; attempt < 5; ++attempt) { // the machine may be busy
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!PropertyList::read(file));
        best = std::min(best, timer.nsecsElapsed());
    }
    QVERIFY2(best < 1'000'000, qPrintable(QString::number(best)));
}

void BinaryPlistReaderTest::acceptsSharingWithinLimits()
{
    // Ten levels of pairs are 2^10 integers and 2^10 - 1 arrays.
    QList<QByteArray> objects;
    for (int i = 1; i <= 10; ++i)
        objects.append(bytes({0xa2, i, i}));
    objects.append(hex("1007"));
    QVariant value = PropertyList::read(binaryFile(objects)).value();
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(value.toList().size(), 2);
        value = value.toList().last();
    }
    QCOMPARE(value, QVariant(7));
}

void BinaryPlistReaderTest::refusesSharedContentBeyondLimit()
{
    // One string of 300 000 characters, referred to 14 * 8 and 14 * 9 times: 67 MB exceed the limit.
    const auto file = [](int arrays) {
        const QByteArray text = hex("5f12000493e0") + QByteArray(300'000, 'x');
        const QByteArray inner = char(0xa0 | 14) + QByteArray(14, '\2');
        return binaryFile({char(0xa0 | arrays) + QByteArray(arrays, '\1'), inner, text});
    };
    QVERIFY(PropertyList::read(file(7)));
    QVERIFY(!PropertyList::read(file(8)));
}

void BinaryPlistReaderTest::keepsLimitOfDepth()
{
    QVERIFY(PropertyList::read(nestedArrays(PropertyList::maximumDepth)));
    QVERIFY(!PropertyList::read(nestedArrays(PropertyList::maximumDepth + 1)));
    QVERIFY(!PropertyList::read(nestedArrays(20'000)));
}

void BinaryPlistReaderTest::keepsLimitOfDepthForSharedContainers()
{
    // The root contains a chain of 300 and, behind other arrays, the same chain again. By then it is decoded, but it is
    // deeper.
    const auto file = [](int between) {
        constexpr int chain = 300;
        QList<QList<int>> arrays{{1, chain + 1}};
        for (int i = 1; i < chain; ++i)
            arrays.append(QList<int>{i + 1});
        arrays.append(QList<int>());
        for (int i = 1; i < between; ++i)
            arrays.append(QList<int>{chain + i + 1});
        arrays.append(QList<int>{1});
        return arraysFile(arrays);
    };
    QVERIFY(PropertyList::read(file(PropertyList::maximumDepth - 301)));
    QVERIFY(!PropertyList::read(file(PropertyList::maximumDepth - 300)));
}

void BinaryPlistReaderTest::refusesOverlappingArraysQuickly()
{
    // Each byte of a megabyte starts an array that claims most of the remaining bytes as its references.
    const qsizetype size = 1024 * 1024;
    QByteArray objects;
    while (objects.size() < size)
        objects += hex("af1200080000");
    QByteArray table;
    for (quint32 i = 0; i < 200'000; ++i) {
        const quint32 offset = qToBigEndian(quint32(8 + 6 * (i % 80'000)));
        table.append(reinterpret_cast<const char *>(&offset), 4);
    }
    const QByteArray file =
        withTrailer("bplist00" + objects + table + QByteArray(32, '\0'), 4, 1, 200'000, 0, 8 + quint64(objects.size()));
    const auto start = processorTime();
    QVERIFY(!PropertyList::read(file));
    const std::chrono::nanoseconds taken = processorTime() - start;
    QVERIFY2(taken < 2s, qPrintable(QString::number(taken.count())));
}

// Reading a thousand strings in the same bytes would cost a thousand times as much as reading one.
void BinaryPlistReaderTest::refusesStringsThatShareBytes()
{
    const QByteArray array = hex("a20102");
    const auto file = [&array](const QByteArray &texts, int second) {
        const QByteArray objects = "bplist00" + array + texts;
        return withTrailer(objects + bytes({8, 11, second}) + QByteArray(32, '\0'), 1, 1, 3, 0,
                           quint64(objects.size()));
    };
    const QByteArray text = hex("5e") + QByteArray(14, '^'); // the character is also the marker of such a string
    QCOMPARE(PropertyList::read(file(text + text, 26)), QVariant(QVariantList{QString(14, u'^'), QString(14, u'^')}));
    QVERIFY(!PropertyList::read(file(text + "^", 12)));
}

void BinaryPlistReaderTest::refusesHugeCounts_data()
{
    QTest::addColumn<QByteArray>("object");
    for (const char *kind : {"4f", "5f", "6f", "af", "df"}) {
        for (const char *count : {"12ffffffff", "137fffffffffffffff", "13ffffffffffffffff", "138000000000000001"})
            QTest::addRow("%s %s", kind, count) << hex(kind) + hex(count);
    }
}

void BinaryPlistReaderTest::refusesHugeCounts()
{
    QFETCH(QByteArray, object);
    QVERIFY(!PropertyList::read(binaryFile({object, hex("5161")})));
}

void BinaryPlistReaderTest::randomTreesSurviveWritingAndReading()
{
    std::mt19937 random(271);
    for (int round = 0; round < 400; ++round) {
        const QVariant tree = randomTree(random, 6, false);
        const auto written = PropertyList::writeBinary(tree);
        QVERIFY(written);
        const auto read = PropertyList::read(*written);
        QVERIFY(read);
        QVERIFY(isSameTree(*read, tree));
        QCOMPARE(PropertyList::writeBinary(*read), written);
    }
}

QTEST_GUILESS_MAIN(BinaryPlistReaderTest)
#include "binaryplistreadertest.moc"
