// SPDX-License-Identifier: MIT
#include "base/xmloutline.h"
#include "base/propertylist.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype testSize = 200'000;

QString document(const QString &value)
{
    return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"_s + value + u"</plist>"_s;
}

/// `piece`, repeated as often as it fits into `size` characters.
QString filled(const QString &piece, qsizetype size = testSize)
{
    return piece.repeated(size / piece.size());
}

/// Pieces with a number in the place of "#", from 0 up, until they fill `size` characters.
QString numbered(const QString &piece, qsizetype size = testSize)
{
    QString text;
    for (int i = 0; text.size() < size; ++i)
        text += QString(piece).replace(u'#', QString::number(i));
    return text;
}

/// An array of as many values as fit into `size` characters. Every reader must accept it.
QString harmless(qsizetype size)
{
    return document(u"<array>"_s + filled(u"<true/>"_s, size) + u"</array>"_s);
}

/// An element with `count` attributes.
QString elementWithAttributes(int count)
{
    QString element = u"<true"_s;
    for (int i = 0; i < count; ++i)
        element += u" %1=''"_s.arg(QChar(u'a' + i));
    return element + u"/>"_s;
}

} // namespace

class XmlOutlineTest : public QObject
{
    Q_OBJECT

private slots:
    void refusesBeforeTheParser_data();
    void refusesBeforeTheParser();
    void costsNoMoreThanTwiceAHarmlessFile_data();
    void costsNoMoreThanTwiceAHarmlessFile();
    void readsTextsWithinTheLimits_data();
    void readsTextsWithinTheLimits();
    void keepsLimits_data();
    void keepsLimits();
    void inspectsTheWholeText();
};

// The XML parser would work on most of these texts for long, and reject the others in the end.
void XmlOutlineTest::refusesBeforeTheParser_data()
{
    QTest::addColumn<QString>("text");
    const auto attributes = [](const QString &pieces) { return document(u"<true "_s + pieces + u"/>"_s); };
    const auto subset = [](const QString &declarations) {
        return u"<!DOCTYPE plist ["_s + declarations + u"]><plist><true/></plist>"_s;
    };
    QTest::newRow("attributes") << attributes(numbered(u"a#='' "_s));
    QTest::newRow("attributes of 752 kB") << attributes(numbered(u"a#=''\n"_s, 752'000));
    QTest::newRow("attributes in a string") << document(u"<string "_s + numbered(u"a#='' "_s) + u">a</string>"_s);
    QTest::newRow("attributes of the root") << u"<plist "_s + numbered(u"a#='' "_s) + u"><true/></plist>"_s;
    QTest::newRow("attributes that hold markup") << attributes(numbered(u"a#=\"/>\" b#='\">' "_s));
    QTest::newRow("attributes behind a comment") << document(u"<!-- > ' --><true "_s + numbered(u"a#='' "_s) + u"/>"_s);
    QTest::newRow("attributes behind other sections") << document(
        u"<array><string><![CDATA[<a '></a>]]></string><?a ' ?><true "_s + numbered(u"a#='' "_s) + u"/></array>"_s);
    QTest::newRow("attributes of the declaration")
        << u"<?xml version='1.0' "_s + numbered(u"a#='?>' "_s) + u"?><plist><true/></plist>"_s;
    QTest::newRow("values without names") << document(filled(uR"(<""""""""""""""""/>)"_s));
    QTest::newRow("values without names, with equals signs") << document(filled(uR"(<a=""=""=""=""=""=""=""=""/>)"_s));
    QTest::newRow("namespaces") << attributes(numbered(u"xmlns:a#='b' "_s));
    QTest::newRow("entities") << subset(numbered(u"<!ENTITY a# 'b'>"_s));
    QTest::newRow("attribute declarations") << subset(numbered(u"<!ATTLIST a a# CDATA ''>"_s));
    QTest::newRow("notations") << subset(numbered(u"<!NOTATION a# SYSTEM ''>"_s));
    QTest::newRow("declarations behind a name that holds markup") << u"<!DOCTYPE plist SYSTEM \">\" ["_s
                                                                         + numbered(u"<!ATTLIST a a# CDATA ''>"_s)
                                                                         + u"]><plist><true/></plist>"_s;
    QTest::newRow("name of an element") << document(u'<' + filled(u"a"_s) + u"/>"_s);
    QTest::newRow("name of an attribute") << attributes(filled(u"a"_s) + u"=''"_s);
    QTest::newRow("name of an instruction") << document(u"<?"_s + filled(u"a"_s) + u"?><true/>"_s);
    QTest::newRow("name in an end tag") << document(u"<true></"_s + filled(u"a"_s) + u'>');
    QTest::newRow("depth") << document(filled(u"<array>"_s) + filled(u"</array>"_s));
    QTest::newRow("depth without an end") << document(filled(u"<a>"_s));
    QTest::newRow("ends") << document(filled(u"</a>"_s));
    QTest::newRow("values") << document(u"<array>"_s + u"<a/>"_s.repeated(PropertyList::maximumNodes) + u"</array>"_s);
    QTest::newRow("no end of a tag") << document(u"<true "_s + filled(u" "_s)).chopped(8);
    QTest::newRow("no end of a comment") << document(u"<!-- "_s + filled(u"<a>"_s));
    QTest::newRow("no end of a value") << attributes(u"a=\""_s + filled(u"'>"_s));
}

void XmlOutlineTest::refusesBeforeTheParser()
{
    QFETCH(QString, text);
    const XmlOutline outline = outlineOfXml(text);
    QVERIFY(!outline.isWithinLimits);
    QVERIFY2(outline.steps <= 2 * outlineOfXml(harmless(text.size())).steps,
             qPrintable(QString::number(outline.steps)));
    QVERIFY(!PropertyList::read(text.toUtf8()));
}

// Each text repeats one kind of markup as often as the limits allow.
void XmlOutlineTest::costsNoMoreThanTwiceAHarmlessFile_data()
{
    QTest::addColumn<QString>("text");
    const auto array = [](const QString &values) { return document(u"<array>"_s + values + u"</array>"_s); };
    for (int count = 0; count <= maximumXmlAttributes; ++count)
        QTest::addRow("%d attributes", count) << array(filled(elementWithAttributes(count)));
    QTest::newRow("namespaces") << array(filled(u"<true xmlns:a='b' xmlns:c='d' xmlns:e='f' xmlns:g='h'/>"_s));
    QTest::newRow("nested namespaces") << document(numbered(u"<array xmlns:a#='b'>"_s, 10'000) + filled(u"<true/>"_s)
                                                   + filled(u"</array>"_s, 10'000));
    QTest::newRow("references") << document(u"<string>"_s + filled(u"&lt;"_s) + u"</string>"_s);
    QTest::newRow("references in an attribute") << document(u"<true a='"_s + filled(u"&lt;"_s) + u"'/>"_s);
    QTest::newRow("comments") << document(filled(u"<!---->"_s) + u"<true/>"_s);
    QTest::newRow("instructions") << document(filled(u"<?a?>"_s) + u"<true/>"_s);
    QTest::newRow("sections") << document(u"<string>"_s + filled(u"<![CDATA[]]>"_s) + u"</string>"_s);
    QTest::newRow("ends of sections") << document(u"<string><![CDATA["_s + filled(u"]]"_s) + u"]]></string>"_s);
    QTest::newRow("document type") << u"<!DOCTYPE plist SYSTEM '"_s + filled(u">"_s) + u"'><plist><true/></plist>"_s;
    QTest::newRow("markup in an attribute") << document(u"<true a='"_s + filled(u">\""_s) + u"'/>"_s);
    QTest::newRow("keys") << document(u"<dict>"_s + numbered(u"<key>#</key><dict/>"_s) + u"</dict>"_s);
}

void XmlOutlineTest::costsNoMoreThanTwiceAHarmlessFile()
{
    QFETCH(QString, text);
    const XmlOutline outline = outlineOfXml(text);
    QVERIFY2(outline.steps <= 2 * outlineOfXml(harmless(text.size())).steps,
             qPrintable(QString::number(outline.steps)));
}

void XmlOutlineTest::readsTextsWithinTheLimits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("most attributes") << document(elementWithAttributes(maximumXmlAttributes)) << QVariant(true);
    QTest::newRow("markup in an attribute") << document(u"<true a='\">' b=\"/>\"/>"_s) << QVariant(true);
    QTest::newRow("longest name") << document(u"<true "_s + u"a"_s.repeated(maximumXmlName) + u"=''/>"_s)
                                  << QVariant(true);
    QTest::newRow("document type with two addresses")
        << u"<!DOCTYPE plist PUBLIC \"-//a//b\" 'c>'><plist><true/></plist>"_s << QVariant(true);
    QTest::newRow("markup in a comment") << document(u"<!-- <a '[ --><true/><!-- \" -->"_s) << QVariant(true);
    QTest::newRow("markup in a section") << document(u"<string><![CDATA[</a '>]]></string>"_s) << QVariant(u"</a '>"_s);
    QTest::newRow("quotes in text") << document(u"<string>it's > \"a\"</string>"_s) << QVariant(u"it's > \"a\""_s);
    QTest::newRow("space around equals signs")
        << u"<plist version =\n\"1.0\" a= 'b'><true/></plist>"_s << QVariant(true);
    // With namespaces, each element would look through the declarations of all elements around it.
    QTest::newRow("prefix without a declaration") << document(u"<true a:b='c'/>"_s) << QVariant(true);
    QTest::newRow("default namespace") << u"<plist xmlns='a'><true/></plist>"_s << QVariant(true);
    QVariantList values;
    values.fill(true, 900'000);
    QTest::newRow("large and harmless") << harmless(6'300'000) << QVariant(values);
}

void XmlOutlineTest::readsTextsWithinTheLimits()
{
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    QCOMPARE(PropertyList::read(text.toUtf8()), value);
}

void XmlOutlineTest::keepsLimits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isWithin");
    const auto nested = [](int depth, const QString &value) {
        return document(u"<array>"_s.repeated(depth) + value + u"</array>"_s.repeated(depth));
    };
    const auto name = [](qsizetype length) { return u"a"_s.repeated(length); };
    QTest::newRow("most attributes") << document(elementWithAttributes(maximumXmlAttributes)) << true;
    QTest::newRow("one attribute more") << document(elementWithAttributes(maximumXmlAttributes + 1)) << false;
    QTest::newRow("longest name") << document(u'<' + name(maximumXmlName) + u"/>"_s) << true;
    QTest::newRow("longer name") << document(u'<' + name(maximumXmlName + 1) + u"/>"_s) << false;
    QTest::newRow("longest instruction") << document(u"<?"_s + name(maximumXmlName) + u" b?>"_s) << true;
    QTest::newRow("longer instruction") << document(u"<?"_s + name(maximumXmlName + 1) + u" b?>"_s) << false;
    QTest::newRow("deepest value") << nested(PropertyList::maximumDepth, u"<true/>"_s) << true;
    QTest::newRow("deeper container") << nested(PropertyList::maximumDepth + 1, u"<true/>"_s) << false;
    QTest::newRow("most values") << document(u"<array>"_s + u"<a/>"_s.repeated(PropertyList::maximumNodes - 1)
                                             + u"</array>"_s)
                                 << true;
    QTest::newRow("one value more") << document(u"<array>"_s + u"<a/>"_s.repeated(PropertyList::maximumNodes)
                                                + u"</array>"_s)
                                    << false;
}

void XmlOutlineTest::keepsLimits()
{
    QFETCH(QString, text);
    QTEST(outlineOfXml(text).isWithinLimits, "isWithin");
}

// The parser could read anything in a part that the outline skipped.
void XmlOutlineTest::inspectsTheWholeText()
{
    const QString text = harmless(testSize);
    QVERIFY(outlineOfXml(text).isWithinLimits);
    QVERIFY(outlineOfXml(text).steps >= text.size());
    QVERIFY(PropertyList::read(text.toUtf8()));
}

QTEST_GUILESS_MAIN(XmlOutlineTest)
#include "xmloutlinetest.moc"
