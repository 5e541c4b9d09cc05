// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "tests/base/plistsamples.h"
#include "tests/support/testmain.h"

#include <QStringEncoder>
#include <QtTest>

using namespace Qt::StringLiterals;

class OldStylePlistReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void readsValues_data();
    void readsValues();
    void readsStrings_data();
    void readsStrings();
    void refuses_data();
    void refuses();
    void readsEncodings_data();
    void readsEncodings();
    void keepsLimitOfDepth();
    void keepsLimitOfNodes();
};

void OldStylePlistReaderTest::readsValues_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, const char *text, const QVariant &value) {
        QTest::newRow(name) << QByteArray(text) << value;
    };
    const QVariantMap ab{{u"a"_s, u"b"_s}};
    row("empty dictionary", "{}", QVariantMap());
    row("dictionary", "{ a = b; }", ab);
    row("no space", "{a=b;}", ab);
    row("no last semicolon", "{ a = b }", ab);
    row("two entries", "{ b = 2; a = 1; }", QVariantMap{{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}});
    row("last of equal keys", "{ a = 1; a = b; }", ab);
    row("quoted key", "{ \"a b\" = c; }", QVariantMap{{u"a b"_s, u"c"_s}});
    row("empty array", "( )", QVariantList());
    row("array", "(a, b)", QVariantList{u"a"_s, u"b"_s});
    row("comma at the end", "(a, b, )", QVariantList{u"a"_s, u"b"_s});
    row("nested", "{ a = ( { b = (); } ); }",
        QVariantMap{{u"a"_s, QVariantList{QVariantMap{{u"b"_s, QVariantList()}}}}});
    row("data", "<0fbd77 1c2735ae>", QByteArray::fromHex("0fbd771c2735ae"));
    row("data in upper case and odd groups", "< 0 FBD\n77 >", QByteArray::fromHex("0fbd77"));
    row("empty data", "<>", QByteArray(""));
    row("numbers are strings", "(42, 1.5)", QVariantList{u"42"_s, u"1.5"_s});
    row("entries without braces", "a = b;", ab);
    row("two entries without braces", "b = 2;\na = 1;\n", QVariantMap{{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}});
    row("last of equal keys without braces", "a = 1; a = b;", ab);
    row("values without braces", "\"a b\"=( c ); 'd'={ e = <00> };",
        QVariantMap{{u"a b"_s, QVariantList{u"c"_s}}, {u"d"_s, QVariantMap{{u"e"_s, QByteArray(1, '\0')}}}});
    row("comments without braces", "/* first */ a /**/ = // second\n b /* third */ ; // last", ab);
    row("line comments", "// first\n{ a = // second\r b; }\n// last", ab);
    row("block comments", "/* first */ { a /* second\n */ = b; /**/ } /* last **/", ab);
    row("space around", " \n\t{ a = b; }\r\n ", ab);
    row("slashes are no comment in a word", "(/usr/bin/true)", QVariantList{u"/usr/bin/true"_s});
}

void OldStylePlistReaderTest::readsValues()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariant, value);
    const auto read = PropertyList::read(text);
    QVERIFY(read);
    QVERIFY2(isSameTree(*read, value), qPrintable(QDebug::toString(*read)));
}

void OldStylePlistReaderTest::readsStrings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const QString &text, const QString &value) {
        QTest::newRow(name) << text << value;
    };
    row("unquoted", u"aZ09_$/:.-"_s, u"aZ09_$/:.-"_s);
    row("empty", u"\"\""_s, u""_s);
    row("single quotes", u"'a \"b\"'"_s, u"a \"b\""_s);
    row("quotes", uR"("a \"b\" 'c'")"_s, u"a \"b\" 'c'"_s);
    row("letters", uR"("\a\b\f\n\r\t\v")"_s, u"\a\b\f\n\r\t\v"_s);
    row("backslash", uR"("\\n")"_s, u"\\n"_s);
    row("other characters stand for themselves", uR"("\q\}\é")"_s, u"q}é"_s);
    row("line feed in quotes", u"\"a\nb\""_s, u"a\nb"_s);
    row("line feed behind a backslash", u"\"a\\\nb\""_s, u"a\nb"_s);
    row("code unit", uR"("\U00e4")"_s, u"ä"_s);
    row("code unit, upper case", uR"("\U00E4")"_s, u"ä"_s);
    row("short code unit", uR"("\Ue4;")"_s, u"ä;"_s);
    row("code unit and a digit", uR"("\U00e40")"_s, u"ä0"_s);
    row("surrogate pair", uR"("\Ud83d\Ude42")"_s, u"\U0001f642"_s);
    row("unpaired surrogate", uR"("\Ud83d")"_s, QString(QChar(0xd83d)));
    row("U without digits", uR"("\Ux")"_s, u"Ux"_s);
    row("octal", uR"("\101\102")"_s, u"AB"_s);
    row("short octal", uR"("\7x\0")"_s, u"\ax"_s + QChar(u'\0'));
    row("octal and a digit", uR"("\1018")"_s, u"A8"_s);
    row("octal of the upper half", uR"("\200\341\251\376")"_s, u"\u00a0\u00c6\u2019\ufffd"_s);
    row("octal above a byte", uR"("\501")"_s, u"A"_s);
    row("comment signs in quotes", u"\"/* a */ // b\""_s, u"/* a */ // b"_s);
    row("text outside ASCII", u"\"äпж\U0001f642\""_s, u"äпж\U0001f642"_s);
}

void OldStylePlistReaderTest::readsStrings()
{
    QFETCH(QString, text);
    QFETCH(QString, value);
    const auto inArray = PropertyList::read("(" + text.toUtf8() + ")");
    QCOMPARE(inArray, QVariant(QVariantList{value}));
    const auto asKey = PropertyList::read("{" + text.toUtf8() + "=x;}");
    QCOMPARE(asKey, QVariant(QVariantMap{{value, u"x"_s}}));
}

void OldStylePlistReaderTest::refuses_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"word",
                             "\"text\"",
                             "{",
                             "}",
                             "{ a",
                             "{ a =",
                             "{ a = b",
                             "{ a = b;",
                             "{ a = ; }",
                             "{ = b; }",
                             "{ a b; }",
                             "{ a = b c = d; }",
                             "{ a = b;; }",
                             "{ ; }",
                             "{ (a) = b; }",
                             "{ <00> = b; }",
                             "{ a = b, }",
                             "(",
                             ")",
                             "(a",
                             "(a,",
                             "(,)",
                             "(a,,b)",
                             "(a b)",
                             "(a; b)",
                             "<0",
                             "<0>",
                             "<000>",
                             "<0g>",
                             "<00",
                             "<00 /* a */>",
                             "(\"a)",
                             "('a\")",
                             "(\"a\\",
                             "(\"\\",
                             "(a) b",
                             "{} {}",
                             "() // a\n b",
                             "() /*",
                             "/*",
                             "//",
                             "(ä)",
                             "(a+b)",
                             "(@)",
                             "a =",
                             "a = b",
                             "a = b; c",
                             "a = b; c = d",
                             "a; b = c;",
                             "a = b;;",
                             "; a = b;",
                             "a = b, c = d;",
                             "a = b; }",
                             "a = b; c = d; }",
                             "a = b; {}",
                             "{} a = b;",
                             "(a) = b;",
                             "<00> = b;",
                             "a = b; /*",
                             "a = ; ",
                             "\xff\xff"})
        QTest::newRow(text) << QByteArray(text);
    QTest::newRow("bad UTF-8 in quotes") << QByteArray("(\"\xff\")");
    QTest::newRow("zero byte") << QByteArray("(a\0)", 4);
}

void OldStylePlistReaderTest::refuses()
{
    QFETCH(QByteArray, text);
    QVERIFY(!PropertyList::read(text));
}

void OldStylePlistReaderTest::readsEncodings_data()
{
    QTest::addColumn<QByteArray>("text");
    const QString text = u"{ \"ä\" = b; }"_s;
    QTest::newRow("UTF-8") << text.toUtf8();
    using enum QStringConverter::Encoding;
    for (const auto &[name, encoding] :
         {std::pair("UTF-8", Utf8), std::pair("UTF-16LE", Utf16LE), std::pair("UTF-16BE", Utf16BE)}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        QTest::addRow("%s with a mark", name) << QByteArray(encoder.encode(text));
    }
}

void OldStylePlistReaderTest::readsEncodings()
{
    QFETCH(QByteArray, text);
    QCOMPARE(PropertyList::read(text), QVariant(QVariantMap{{u"ä"_s, u"b"_s}}));
}

void OldStylePlistReaderTest::keepsLimitOfDepth()
{
    const auto nested = [](int depth) { return QByteArray(depth, '(') + QByteArray(depth, ')'); };
    QVERIFY(PropertyList::read(nested(PropertyList::maximumDepth)));
    QVERIFY(!PropertyList::read(nested(PropertyList::maximumDepth + 1)));
    QVERIFY(!PropertyList::read(nested(1'000'000)));
    QVERIFY(!PropertyList::read(QByteArray("{a=").repeated(1'000'000)));
    // The dictionary without braces also counts as a container.
    const auto inEntry = [&nested](int depth) { return "a=" + nested(depth - 1) + ";"; };
    QVERIFY(PropertyList::read(inEntry(PropertyList::maximumDepth)));
    QVERIFY(!PropertyList::read(inEntry(PropertyList::maximumDepth + 1)));
}

void OldStylePlistReaderTest::keepsLimitOfNodes()
{
    const auto values = [](int count) { return "(" + QByteArray("a,").repeated(count) + ")"; };
    QVERIFY(PropertyList::read(values(1000)));
    QVERIFY(!PropertyList::read(values(PropertyList::maximumNodes)));
    // The dictionary, and a key and a value for each entry.
    const auto entries = [](int count) { return QByteArray("a=b;").repeated(count); };
    QVERIFY(PropertyList::read(entries((PropertyList::maximumNodes - 1) / 2)));
    QVERIFY(!PropertyList::read(entries((PropertyList::maximumNodes - 1) / 2 + 1)));
}

QTEST_GUILESS_MAIN(OldStylePlistReaderTest)
#include "oldstyleplistreadertest.moc"
