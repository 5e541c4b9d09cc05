// SPDX-License-Identifier: MIT
#include "base/text.h"
#include "base/textslocale.h"
#include "tests/support/testmain.h"

#include <QTranslator>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

/// A separate string table, because the test must not depend on the program's texts.
class Table : public QTranslator
{
public:
    QString translate(const char *, const char *key, const char *, int) const override
    {
        return mTexts.value(QString::fromLatin1(key));
    }
    bool isEmpty() const override { return false; }

private:
    const QHash<QString, QString> mTexts{{u"lkeyTextsLanguage"_s, u"de"_s},
                                         {u"lkeyPlain"_s, u"Löschen"_s},
                                         {u"lkeyFormat"_s, u"%@ of %@"_s},
                                         {u"lkeyPercent"_s, u"100 % (%1)"_s}};
};

} // namespace

class TextTest : public QObject
{
    Q_OBJECT

private slots:
    void unknownKeyHasNoTranslation();
    void keyIsLookedUpInTheTable();
    void tableCanBeRemovedAgain();
    void formatsTheTextOfAKey();
    void datesAreInTheLanguageOfTheTexts();
    void replacesPlaceholders_data();
    void replacesPlaceholders();
};

void TextTest::unknownKeyHasNoTranslation()
{
    Table table;
    QCOMPARE(localizedText("lkeyPlain"), u"No Translation"_s);
    QVERIFY(QCoreApplication::installTranslator(&table));
    QCOMPARE(localizedText("lkeyUnknown"), u"No Translation"_s);
    QCOMPARE(localizedFormat("lkeyUnknown", {u"a"_s}), u"No Translation"_s);
}

void TextTest::keyIsLookedUpInTheTable()
{
    Table table;
    QVERIFY(QCoreApplication::installTranslator(&table));
    QCOMPARE(localizedText("lkeyPlain"), u"Löschen"_s);
    QCOMPARE(localizedText("lkeyPercent"), u"100 % (%1)"_s);
}

void TextTest::tableCanBeRemovedAgain()
{
    Table table;
    QVERIFY(QCoreApplication::installTranslator(&table));
    QVERIFY(QCoreApplication::removeTranslator(&table));
    QCOMPARE(localizedText("lkeyPlain"), u"No Translation"_s);
}

void TextTest::formatsTheTextOfAKey()
{
    Table table;
    QVERIFY(QCoreApplication::installTranslator(&table));
    QCOMPARE(localizedFormat("lkeyFormat", {u"2"_s, u"5"_s}), u"2 of 5"_s);
}

void TextTest::datesAreInTheLanguageOfTheTexts()
{
    const auto usual = qScopeGuard([locale = QLocale()] { QLocale::setDefault(locale); });
    Table table;
    QVERIFY(QCoreApplication::installTranslator(&table));
    const QDate date(2026, 3, 22);
    QLocale::setDefault(QLocale(u"sv_SE"_s)); // without a table of its own
    QCOMPARE(textsLocale().toString(date, u"MMMM"_s), u"März"_s);
    QLocale::setDefault(QLocale(u"de_AT"_s)); // the form of the user's country
    QCOMPARE(textsLocale(), QLocale(u"de_AT"_s));
}

void TextTest::replacesPlaceholders_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &format, const QStringList &arguments,
                        const QString &expected) { QTest::newRow(name) << format << arguments << expected; };
    row("no placeholder", u"text"_s, {}, u"text"_s);
    row("empty format", u""_s, {u"a"_s}, u""_s);
    row("one", u"a %@ c"_s, {u"b"_s}, u"a b c"_s);
    row("left to right", u"%@%@"_s, {u"a"_s, u"b"_s}, u"ab"_s);
    row("placeholder in an argument stays", u"%@ %@"_s, {u"%@"_s, u"b"_s}, u"%@ b"_s);
    row("missing argument leaves its placeholder", u"%@ %@"_s, {u"a"_s}, u"a %@"_s);
    row("argument too many is dropped", u"%@"_s, {u"a"_s, u"b"_s}, u"a"_s);
    row("empty argument", u"<%@>"_s, {u""_s}, u"<>"_s);
    row("other signs stay", u"%d %1 %% %@"_s, {u"a"_s}, u"%d %1 %% a"_s);
}

void TextTest::replacesPlaceholders()
{
    QFETCH(QString, format);
    QFETCH(QStringList, arguments);
    QTEST(formatted(format, arguments), "expected");
}

QTEST_GUILESS_MAIN(TextTest)
#include "texttest.moc"
