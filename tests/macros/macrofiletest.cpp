// SPDX-License-Identifier: MIT
#include "macros/macrofile.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class MacroFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exportLeavesOutOnlyTheIdentity();
    void importMakesTheNameUnique_data();
    void importMakesTheNameUnique();
    void importKeepsUnknownEntries();
};

void MacroFileTest::exportLeavesOutOnlyTheIdentity()
{
    const QVariantMap record{{u"MacroName"_s, u"Combo"_s}, {u"macroID"_s, 7}, {u"delay"_s, 20}, {u"x"_s, u"y"_s}};
    QCOMPARE(MacroFile::exportedRecord(record),
             (QVariantMap{{u"MacroName"_s, u"Combo"_s}, {u"delay"_s, 20}, {u"x"_s, u"y"_s}}));
}

void MacroFileTest::importMakesTheNameUnique_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("imported");
    QTest::newRow("free") << QVariant(u"Combo"_s) << QStringList{u"Other"_s} << u"Combo"_s;
    QTest::newRow("taken") << QVariant(u"Combo"_s) << QStringList{u"Combo"_s} << u"Combo(2)"_s;
    QTest::newRow("taken twice") << QVariant(u"Combo"_s) << QStringList{u"Combo"_s, u"Combo(2)"_s} << u"Combo(3)"_s;
    QTest::newRow("absent") << QVariant() << QStringList() << u"Untitled Macro"_s;
    QTest::newRow("absent, taken") << QVariant() << QStringList{u"Untitled Macro"_s} << u"Untitled Macro(2)"_s;
    QTest::newRow("empty") << QVariant(QString()) << QStringList() << u"Untitled Macro"_s;
    QTest::newRow("a number") << QVariant(5) << QStringList() << u"Untitled Macro"_s;
}

void MacroFileTest::importMakesTheNameUnique()
{
    QFETCH(QVariant, name);
    QFETCH(QStringList, taken);
    QVariantList macros;
    for (const QString &other : taken)
        macros += QVariantMap{{u"MacroName"_s, other}};
    const QVariantMap record = name.isValid() ? QVariantMap{{u"MacroName"_s, name}} : QVariantMap();
    QTEST(MacroFile::importedRecord(record, macros).value(u"MacroName"_s).toString(), "imported");
}

void MacroFileTest::importKeepsUnknownEntries()
{
    const QVariantMap record{{u"MacroName"_s, u"Combo"_s}, {u"Colour"_s, u"red"_s}, {u"sequence"_s, QVariantMap()}};
    QCOMPARE(MacroFile::importedRecord(record, {}), record);
}

QTEST_APPLESS_MAIN(MacroFileTest)
#include "macrofiletest.moc"
