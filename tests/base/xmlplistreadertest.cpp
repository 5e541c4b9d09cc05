// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "tests/base/plistsamples.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QStringEncoder>
#include <QtTest>

#include <cmath>
#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray document(const QByteArray &value)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Example//DTD PLIST 1.0//EN\" \"http://example.org/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n"
           + value + "\n</plist>\n";
}

} // namespace

class XmlPlistReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void readsValues_data();
    void readsValues();
    void readsNotANumber();
    void readsRealsOutOfRange_data();
    void readsRealsOutOfRange();
    void refuses_data();
    void refuses();
    void toleratesContentAroundTheValue_data();
    void toleratesContentAroundTheValue();
    void readsEncodings_data();
    void readsEncodings();
    void refusesEntityBombsQuickly_data();
    void refusesEntityBombsQuickly();
    void keepsLimitOfDepth();
    void keepsLimitOfNodes();
};

void XmlPlistReaderTest::readsValues_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const char *xml, const QVariant &value) {
        QTest::newRow(name) << QByteArray(xml) << value;
    };
    row("empty dictionary", "<dict/>", QVariantMap());
    row("dictionary", "<dict><key>b</key><true/><key>a</key><dict/></dict>",
        QVariantMap{{u"a"_s, QVariantMap()}, {u"b"_s, true}});
    row("last of equal keys", "<dict><key>a</key><true/><key>a</key><integer>2</integer></dict>",
        QVariantMap{{u"a"_s, 2}});
    row("empty key", "<dict><key/><true/></dict>", QVariantMap{{u""_s, true}});
    row("empty array", "<array></array>", QVariantList());
    row("array", "<array> <true/> <!-- or --> <false></false> </array>", QVariantList{true, false});
    row("empty string", "<string/>", u""_s);
    row("string keeps its space", "<string> a\n b </string>", u" a\n b "_s);
    row("entities", "<string>&lt;&amp;&gt;&quot;&apos;&#228;&#x1F642;</string>", u"<&>\"'ä\U0001f642"_s);
    row("CDATA", "<string><![CDATA[<b>&amp;]]></string>", u"<b>&amp;"_s);
    row("comment in a string", "<string>a<!-- b -->c</string>", u"ac"_s);
    row("0", "<integer>0</integer>", 0);
    row("space around a number", "<integer> 42\n</integer>", 42);
    row("plus", "<integer>+42</integer>", 42);
    row("minus", "<integer>-42</integer>", -42);
    row("minus 0", "<integer>-0</integer>", 0);
    row("hexadecimal", "<integer>0xFf</integer>", 255);
    row("negative hexadecimal", "<integer>-0X10</integer>", -16);
    row("leading zeros are decimal", "<integer>010</integer>", 10);
    row("above int", "<integer>2147483648</integer>", qlonglong(1) << 31);
    row("2^63 - 1", "<integer>9223372036854775807</integer>", std::numeric_limits<qlonglong>::max());
    row("-2^63", "<integer>-9223372036854775808</integer>", std::numeric_limits<qlonglong>::min());
    row("2^63", "<integer>9223372036854775808</integer>", qulonglong(1) << 63);
    row("2^64 - 1", "<integer>0xffffffffffffffff</integer>", std::numeric_limits<qulonglong>::max());
    row("real", "<real>1.5</real>", 1.5);
    row("whole real", "<real>1</real>", 1.0);
    row("real with an exponent", "<real> -2.5e-3 </real>", -0.0025);
    row("infinite", "<real>inf</real>", std::numeric_limits<double>::infinity());
    row("minus infinity", "<real>-Infinity</real>", -std::numeric_limits<double>::infinity());
    row("data", "<data>AP9/</data>", QByteArray::fromHex("00ff7f"));
    row("data in lines", "<data>\n\tAP\n\t9/\n</data>", QByteArray::fromHex("00ff7f"));
    row("data with padding", "<data>AA==</data>", QByteArray(1, '\0'));
    row("empty data", "<data></data>", QByteArray(""));
    row("date", "<date>2011-05-17T09:30:01Z</date>", QDateTime(QDate(2011, 5, 17), QTime(9, 30, 1), Qt::UTC));
    row("leap day", "<date>2024-02-29T00:00:00Z</date>", QDateTime(QDate(2024, 2, 29), QTime(0, 0), Qt::UTC));
}

void XmlPlistReaderTest::readsValues()
{
    QFETCH(QByteArray, xml);
    QFETCH(QVariant, value);
    const auto read = PropertyList::read(document(xml));
    QVERIFY(read);
    QVERIFY2(isSameTree(*read, value), qPrintable(QDebug::toString(*read)));
}

void XmlPlistReaderTest::readsNotANumber()
{
    QVERIFY(std::isnan(PropertyList::read(document("<real>nan</real>")).value().toDouble()));
}

void XmlPlistReaderTest::readsRealsOutOfRange_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("value");
    const double infinity = std::numeric_limits<double>::infinity();
    const auto row = [](const QByteArray &text, double value) {
        QTest::newRow(text.left(30).constData()) << text << value;
    };
    row("1e400", infinity);
    row("-1e400", -infinity);
    row("+1.5E+309", infinity);
    row(" 1.8e308\n", infinity);
    row("1e99999999999999999999", infinity);
    row("-" + QByteArray(400, '9'), -infinity);
    row("1.7976931348623157e308", std::numeric_limits<double>::max());
    row("1e-400", 0.0);
    row("-1e-400", -0.0);
    row("+.1e-400", 0.0);
    row("-1.e-99999999999999999999", -0.0);
    row("0." + QByteArray(400, '0') + "1", 0.0);
    row("5e-324", std::numeric_limits<double>::denorm_min());
    row("-0", -0.0);
}

void XmlPlistReaderTest::readsRealsOutOfRange()
{
    QFETCH(QByteArray, text);
    QFETCH(double, value);
    const auto read = PropertyList::read(document("<real>" + text + "</real>"));
    QVERIFY(read);
    QCOMPARE(read->typeId(), int(QMetaType::Double));
    QVERIFY2(read->toDouble() == value, qPrintable(QDebug::toString(*read)));
    QCOMPARE(std::signbit(read->toDouble()), std::signbit(value));
    QCOMPARE(value, ::strtod(text.constData(), nullptr)); // the reference; tests run in the locale C
}

void XmlPlistReaderTest::refuses_data()
{
    QTest::addColumn<QByteArray>("xml");
    const auto row = [](const char *name, const QByteArray &value) { QTest::newRow(name) << document(value); };
    row("no value", "");
    row("two values", "<true/><true/>");
    row("text instead of a value", "true");
    row("text beside the value", "<true/>x");
    row("unknown element", "<null/>");
    row("element of another namespace", "<a:true xmlns:a=\"b\"/>");
    row("key outside a dictionary", "<key>a</key>");
    row("element in other case", "<Dict/>");
    row("value without key", "<dict><true/></dict>");
    row("key without value", "<dict><key>a</key></dict>");
    row("key instead of value", "<dict><key>a</key><key>b</key></dict>");
    row("text in a dictionary", "<dict>x<key>a</key><true/></dict>");
    row("text in an array", "<array>x</array>");
    row("element in a string", "<string><b/></string>");
    row("text in a boolean", "<true>x</true>");
    row("element in a boolean", "<true><false/></true>");
    for (const char *number : {"", " ", "x", "1x", "1 2", "--1", "+-1", "- 1", "0x", "0xg", "0x-1", "1.0",
                               "18446744073709551616", "-9223372036854775809", "0x10000000000000000"})
        row(qPrintable(u"integer \"%1\""_s.arg(QLatin1StringView(number))),
            QByteArray("<integer>") + number + "</integer>");
    for (const char *number : {"", "x", "1,5", "1.5x", "0x1p3", "1e400x", "x1e400", "1e", "1e+", "e400", ".", "-.e400",
                               "--1e400", "1e400e1", "1.5.1e400", "1 e400", "1e-400-", "0x1e400"})
        row(qPrintable(u"real \"%1\""_s.arg(QLatin1StringView(number))), QByteArray("<real>") + number + "</real>");
    for (const char *date : {"", "2011-05-17", "2011-05-17T09:30:00", "2011-05-17T09:30:00+02:00",
                             "2011-02-29T00:00:00Z", "2011-05-17T25:00:00Z", "2011-05-17 09:30 00Z", "yesterday"})
        row(qPrintable(u"date \"%1\""_s.arg(QLatin1StringView(date))), QByteArray("<date>") + date + "</date>");
    row("data that is no base64", "<data>A*==</data>");
    row("data cut off", "<data>AAA</data>");
    row("unknown entity", "<string>&nbsp;</string>");
    row("character that XML cannot have", "<string>&#0;</string>");
    row("bad UTF-8", "<string>\xff</string>");
    row("element that is not closed", "<array><true/>");
    row("element that was not opened", "<true/></array>");
    QTest::newRow("other root") << QByteArray("<list version=\"1.0\"><true/></list>");
    QTest::newRow("value as root") << QByteArray("<?xml version=\"1.0\"?><dict/>");
    QTest::newRow("declaration alone") << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    QTest::newRow("second root") << document("<true/>") + "<plist/>";
    QTest::newRow("text behind the root") << document("<true/>") + "x";
    QTest::newRow("cut off behind the value") << QByteArray("<plist version=\"1.0\"><true/>");
    QTest::newRow("unknown encoding") << QByteArray(
        "<?xml version=\"1.0\" encoding=\"x-none\"?><plist><true/></plist>");
}

void XmlPlistReaderTest::refuses()
{
    QFETCH(QByteArray, xml);
    QVERIFY(!PropertyList::read(xml));
}

void XmlPlistReaderTest::toleratesContentAroundTheValue_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("nothing") << QByteArray("<plist><true/></plist>");
    QTest::newRow("document type alone") << QByteArray("<!DOCTYPE plist SYSTEM \"x.dtd\"><plist><true/></plist>");
    QTest::newRow("space") << QByteArray(" \n\t<plist version=\"1.0\"> <true/> </plist> \n");
    QTest::newRow("comments") << QByteArray("<!-- a --><plist><!-- b --><true/><!-- c --></plist><!-- d -->");
    QTest::newRow("instructions") << QByteArray("<?xml version=\"1.0\"?><?a b?><plist><?c?><true/></plist><?d e?>");
    QTest::newRow("other version") << QByteArray("<plist version=\"0.9\"><true/></plist>");
    QTest::newRow("single quotes") << QByteArray("<?xml version='1.0' encoding='utf-8'?><plist><true/></plist>");
}

void XmlPlistReaderTest::toleratesContentAroundTheValue()
{
    QFETCH(QByteArray, xml);
    QCOMPARE(PropertyList::read(xml), QVariant(true));
}

void XmlPlistReaderTest::readsEncodings_data()
{
    QTest::addColumn<QByteArray>("xml");
    const auto declared = [](const char *encoding) {
        return u"<?xml version=\"1.0\" encoding=\"%1\"?><plist><string>ä</string></plist>"_s.arg(
            QLatin1StringView(encoding));
    };
    QTest::newRow("UTF-8") << declared("UTF-8").toUtf8();
    QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + declared("UTF-8").toUtf8();
    QTest::newRow("Latin-1") << declared("ISO-8859-1").toLatin1();
    using Flag = QStringConverter::Flag;
    for (const auto &[name, encoding] :
         {std::pair("UTF-16LE", QStringConverter::Utf16LE), std::pair("UTF-16BE", QStringConverter::Utf16BE)}) {
        QStringEncoder encoder(encoding, Flag::WriteBom);
        QTest::addRow("%s with a mark", name) << QByteArray(encoder.encode(declared("UTF-16")));
    }
}

void XmlPlistReaderTest::readsEncodings()
{
    QFETCH(QByteArray, xml);
    QCOMPARE(PropertyList::read(xml), QVariant(u"ä"_s));
}

void XmlPlistReaderTest::refusesEntityBombsQuickly_data()
{
    QTest::addColumn<QByteArray>("xml");
    const auto bomb = [](const char *sign, int levels, int references) {
        QByteArray declarations;
        for (int i = 0; i < levels; ++i) {
            declarations += QByteArray("<!ENTITY ") + (*sign == '%' ? "% " : "") + "e" + QByteArray::number(i) + " \"";
            for (int j = 0; j < references; ++j)
                declarations += i == 0 ? QByteArray("boom") : sign + ("e" + QByteArray::number(i - 1)) + ";";
            declarations += "\">";
        }
        return declarations;
    };
    const auto file = [](const QByteArray &declarations, const QByteArray &text) -> QByteArray {
        return "<?xml version=\"1.0\"?><!DOCTYPE plist [" + declarations + "]><plist><string>" + text
               + "</string></plist>";
    };
    QTest::newRow("one entity, unused") << file("<!ENTITY a \"b\">", "text");
    QTest::newRow("one entity") << file("<!ENTITY a \"b\">", "&a;");
    QTest::newRow("nested entities") << file(bomb("&", 20, 10), "&e19;");
    QTest::newRow("one large entity often")
        << file("<!ENTITY a \"" + QByteArray(100'000, 'x') + "\">", QByteArray("&a;").repeated(10'000));
    QTest::newRow("nested parameter entities") << file(bomb("%", 20, 10) + "%e19;", "text");
    QTest::newRow("entity in itself") << file("<!ENTITY a \"&a;\">", "&a;");
    QTest::newRow("file from outside") << file("<!ENTITY a SYSTEM \"file:///etc/passwd\">", "&a;");
    QTest::newRow("empty subset") << file("", "text");
}

void XmlPlistReaderTest::refusesEntityBombsQuickly()
{
    QFETCH(QByteArray, xml);
    const auto start = processorTime();
    QVERIFY(!PropertyList::read(xml));
    const std::chrono::nanoseconds taken = processorTime() - start;
    QVERIFY2(taken < 2s, qPrintable(QString::number(taken.count())));
}

void XmlPlistReaderTest::keepsLimitOfDepth()
{
    const auto nested = [](int depth) {
        return document(QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth));
    };
    QVERIFY(PropertyList::read(nested(PropertyList::maximumDepth)));
    QVERIFY(!PropertyList::read(nested(PropertyList::maximumDepth + 1)));
    QVERIFY(!PropertyList::read(nested(500'000)));
    QVERIFY(!PropertyList::read(document(QByteArray("<dict><key>a</key>").repeated(500'000))));
}

void XmlPlistReaderTest::keepsLimitOfNodes()
{
    const auto values = [](int count) {
        return document("<array>" + QByteArray("<true/>").repeated(count) + "</array>");
    };
    QVERIFY(PropertyList::read(values(1000)));
    QVERIFY(!PropertyList::read(values(PropertyList::maximumNodes)));
}

QTEST_GUILESS_MAIN(XmlPlistReaderTest)
#include "xmlplistreadertest.moc"
