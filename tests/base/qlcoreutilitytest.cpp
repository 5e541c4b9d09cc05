// SPDX-License-Identifier: MIT
#include "base/qlcoreutility.h"
#include "base/propertylist.h"
#include "tests/support/testmain.h"
#include "tests/support/uniquenamecases.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class QlCoreUtilityTest : public QObject
{
    Q_OBJECT

private slots:
    void absentGivesAbsent();
    void emptyDictionaryIsNotAbsent();
    void writesVersionOneOfTheBinaryForm();
    void roundTripKeepsValues();
    void readsEveryFormat_data();
    void readsEveryFormat();
    void readsNoDictionaryFromOtherData_data();
    void readsNoDictionaryFromOtherData();
    void writesNothingForValuesWithoutPropertyListForm();
    void generatesNameFromMacroNames_data() { UniqueNameCases::addRows(); }
    void generatesNameFromMacroNames();
};

void QlCoreUtilityTest::absentGivesAbsent()
{
    QVERIFY(!QlCoreUtility::convertDictionaryToData(std::nullopt));
    QVERIFY(!QlCoreUtility::convertDataToDictionary(std::nullopt));
}

void QlCoreUtilityTest::emptyDictionaryIsNotAbsent()
{
    const auto data = QlCoreUtility::convertDictionaryToData(QVariantMap());
    QVERIFY(data);
    const auto dictionary = QlCoreUtility::convertDataToDictionary(data);
    QVERIFY(dictionary);
    QVERIFY(dictionary->isEmpty());
}

void QlCoreUtilityTest::writesVersionOneOfTheBinaryForm()
{
    const auto data = QlCoreUtility::convertDictionaryToData(QVariantMap{{u"ProductID"_s, 271}});
    QVERIFY(data);
    QVERIFY(data->startsWith("bplist00"));
}

void QlCoreUtilityTest::roundTripKeepsValues()
{
    const QVariantMap dictionary{{u"command"_s, 46}, {u"param1"_s, u"/usr/bin/true"_s}, {u"param2"_s, u""_s}};
    QCOMPARE(QlCoreUtility::convertDataToDictionary(QlCoreUtility::convertDictionaryToData(dictionary)), dictionary);
}

void QlCoreUtilityTest::readsEveryFormat_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("binary") << PropertyList::writeBinary(QVariantMap{{u"MacroName"_s, u"A"_s}}).value();
    QTest::newRow("XML") << QByteArray(
        "<plist version=\"1.0\"><dict><key>MacroName</key><string>A</string></dict></plist>");
    QTest::newRow("old-style text") << QByteArray("{ MacroName = A; }");
}

void QlCoreUtilityTest::readsEveryFormat()
{
    QFETCH(QByteArray, data);
    QCOMPARE(QlCoreUtility::convertDataToDictionary(data), (QVariantMap{{u"MacroName"_s, u"A"_s}}));
}

void QlCoreUtilityTest::readsNoDictionaryFromOtherData_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("space") << QByteArray(" \n\t");
    QTest::newRow("a word") << QByteArray("hello");
    QTest::newRow("no text") << QByteArray("\xff\xfe\xfd\xfc", 4);
    QTest::newRow("binary array") << PropertyList::writeBinary(QVariantList{1}).value();
    QTest::newRow("XML array") << QByteArray("<plist version=\"1.0\"><array/></plist>");
    QTest::newRow("old-style array") << QByteArray("(a, b)");
}

void QlCoreUtilityTest::readsNoDictionaryFromOtherData()
{
    QFETCH(QByteArray, data);
    QVERIFY(!QlCoreUtility::convertDataToDictionary(data));
}

void QlCoreUtilityTest::writesNothingForValuesWithoutPropertyListForm()
{
    QVERIFY(!QlCoreUtility::convertDictionaryToData(QVariantMap{{u"a"_s, QVariant()}}));
    QVERIFY(!QlCoreUtility::convertDictionaryToData(QVariantMap{{u"a"_s, QVariantList{QPoint(1, 2)}}}));
}

void QlCoreUtilityTest::generatesNameFromMacroNames()
{
    QFETCH(QVariantList, names);
    QFETCH(QString, wanted);
    const QVariantList macros = UniqueNameCases::records(names, "MacroName"_L1);
    QTEST(QlCoreUtility::generateNameUsingDefaultName(macros, wanted), "result");
    QCOMPARE(QlCoreUtility::generateNameUsingDefaultName({}, wanted), wanted);
}

QTEST_GUILESS_MAIN(QlCoreUtilityTest)
#include "qlcoreutilitytest.moc"
