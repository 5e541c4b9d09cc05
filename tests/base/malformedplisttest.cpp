// SPDX-License-Identifier: MIT
// Damaged files of every form. None may crash or hang the reader, and the writer must be able to write everything that
// the reader still accepts.
#include "base/propertylist.h"
#include "tests/base/plistsamples.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap sample()
{
    return {{u"array"_s, QVariantList{1, 300, -5, 1.5, true}},
            {u"data"_s, QByteArray::fromHex("00ff")},
            {u"date"_s, QDateTime(QDate(2011, 5, 17), QTime(9, 30), Qt::UTC)},
            {u"empty"_s, QVariantMap()},
            {u"näme"_s, u"\U0001f642"_s}};
}

QByteArray sampleAsXml()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
           "version=\"1.0\"><dict><key>array</key><array><integer>1</integer>"
           "<integer>-5</integer><real>1.5</real><true/></array><key>data</key><data>AP8=</data><key>date</key>"
           "<date>2011-05-17T09:30:00Z</date><key>n\u00e4me</key><string>a &amp; "
           "b<![CDATA[<]]></string></dict></plist>";
}

QByteArray sampleAsText()
{
    return "/* a */ { array = ( 1, \"b \\\" \\U00e4 \\101\", 'c' ); data = <00 ff>; // d\n \"n\u00e4me\" = { "
           "}; }";
}

QByteArray sampleWithoutBraces()
{
    return "/* a */ array = ( 1, \"b \\\" \\U00e4 \\101\", 'c' ); data = <00 ff>; // d\n \"n\u00e4me\" = { };";
}

/// Whether a tree that was read can be written, and reads as the same tree again.
bool survives(const QVariant &tree)
{
    const auto written = PropertyList::writeBinary(tree);
    if (!written)
        return false;
    const auto again = PropertyList::read(*written);
    return again && isSameTree(*again, tree);
}

} // namespace

class MalformedPlistTest : public QObject
{
    Q_OBJECT

private slots:
    void refusesFilesCutOffAnywhere_data();
    void refusesFilesCutOffAnywhere();
    void survivesEveryChangedByte_data();
    void survivesEveryChangedByte();
    void survivesEveryMissingByte_data();
    void survivesEveryMissingByte();
    void survivesRandomDamage_data();
    void survivesRandomDamage();

private:
    /// The forms in which every part is damaged.
    static void addFormats();
    static void addAllFormats();
};

void MalformedPlistTest::addFormats()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("binary") << PropertyList::writeBinary(sample()).value();
    QTest::newRow("XML") << sampleAsXml();
    QTest::newRow("old-style text") << sampleAsText();
}

void MalformedPlistTest::addAllFormats()
{
    addFormats();
    QTest::newRow("old-style text without braces") << sampleWithoutBraces(); // its first entries are a whole file
}

void MalformedPlistTest::refusesFilesCutOffAnywhere_data()
{
    addFormats();
}

void MalformedPlistTest::refusesFilesCutOffAnywhere()
{
    QFETCH(QByteArray, file);
    QVERIFY(PropertyList::read(file));
    for (qsizetype size = 0; size < file.size(); ++size) {
        // In separate memory, where a sanitizer detects a read past the end.
        const QByteArray cut(file.constData(), size);
        QVERIFY2(!PropertyList::read(cut), qPrintable(QString::number(size)));
    }
}

void MalformedPlistTest::survivesEveryChangedByte_data()
{
    addAllFormats();
}

void MalformedPlistTest::survivesEveryChangedByte()
{
    QFETCH(QByteArray, file);
    int refused = 0;
    for (qsizetype at = 0; at < file.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            QByteArray changed = file;
            changed[at] = char(value);
            const auto tree = PropertyList::read(changed);
            refused += tree ? 0 : 1;
            if (tree)
                QVERIFY2(survives(*tree), qPrintable(u"byte %1 is %2"_s.arg(at).arg(value)));
        }
    }
    QVERIFY(refused > file.size());
}

void MalformedPlistTest::survivesEveryMissingByte_data()
{
    addAllFormats();
}

void MalformedPlistTest::survivesEveryMissingByte()
{
    QFETCH(QByteArray, file);
    for (qsizetype at = 0; at < file.size(); ++at) {
        const auto tree = PropertyList::read(QByteArray(file).remove(at, 1));
        if (tree)
            QVERIFY2(survives(*tree), qPrintable(QString::number(at)));
    }
}

void MalformedPlistTest::survivesRandomDamage_data()
{
    addAllFormats();
}

void MalformedPlistTest::survivesRandomDamage()
{
    QFETCH(QByteArray, file);
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray changed = file;
        for (unsigned changes = 1 + random() % 6; changes > 0; --changes)
            changed[qsizetype(random() % size_t(changed.size()))] = char(random());
        const auto tree = PropertyList::read(changed);
        if (tree)
            QVERIFY2(survives(*tree), changed.toHex().constData());
    }
}

QTEST_GUILESS_MAIN(MalformedPlistTest)
#include "malformedplisttest.moc"
