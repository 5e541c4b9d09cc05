// SPDX-License-Identifier: MIT
#include "base/devicesettings.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DeviceSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsItsEntries();
    void countsAnythingButANumberAsAbsent_data();
    void countsAnythingButANumberAsAbsent();
    void readsNumbersOfOtherTypes_data();
    void readsNumbersOfOtherTypes();
    void keepsItsDictionaryUnchanged();
};

void DeviceSettingsTest::readsItsEntries()
{
    const DeviceSettings settings(
        {{u"ActiveProfile"_s, 3}, {u"GameMode"_s, true}, {u"ProfileOSDOn"_s, 1}, {u"LastMacroID"_s, 41}});
    QCOMPARE(settings.activeProfileIndex(), 3);
    QVERIFY(settings.isGameModeOn());
    QVERIFY(settings.isProfileOsdOn());
    QCOMPARE(settings.lastMacroId(), 41);
}

void DeviceSettingsTest::countsAnythingButANumberAsAbsent_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("absent") << QVariant();
    QTest::newRow("words") << QVariant(u"on"_s);
    QTest::newRow("data") << QVariant(QByteArray("1"));
    QTest::newRow("array") << QVariant(QVariantList{1});
    QTest::newRow("dictionary") << QVariant(QVariantMap{{u"ActiveProfile"_s, 1}});
}

void DeviceSettingsTest::countsAnythingButANumberAsAbsent()
{
    QFETCH(QVariant, value);
    QVariantMap dictionary;
    if (value.isValid())
        for (const QString &key : {u"ActiveProfile"_s, u"GameMode"_s, u"ProfileOSDOn"_s, u"LastMacroID"_s})
            dictionary.insert(key, value);
    const DeviceSettings settings(dictionary);
    QCOMPARE(settings.activeProfileIndex(), 0);
    QVERIFY(!settings.isGameModeOn());
    QVERIFY(!settings.isProfileOsdOn());
    QCOMPARE(settings.lastMacroId(), 0);
}

void DeviceSettingsTest::readsNumbersOfOtherTypes_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("number");
    QTest::newRow("boolean") << QVariant(true) << 1;
    QTest::newRow("false") << QVariant(false) << 0;
    QTest::newRow("long") << QVariant(qlonglong(2)) << 2;
    QTest::newRow("real") << QVariant(2.9) << 2;
    QTest::newRow("real below 1") << QVariant(0.5) << 0;
    QTest::newRow("text of digits") << QVariant(u"2"_s) << 2;
    QTest::newRow("negative") << QVariant(-1) << -1;
}

void DeviceSettingsTest::readsNumbersOfOtherTypes()
{
    QFETCH(QVariant, value);
    QFETCH(int, number);
    const DeviceSettings settings(
        {{u"ActiveProfile"_s, value}, {u"GameMode"_s, value}, {u"ProfileOSDOn"_s, value}, {u"LastMacroID"_s, value}});
    QCOMPARE(settings.activeProfileIndex(), number);
    QCOMPARE(settings.isGameModeOn(), number != 0);
    QCOMPARE(settings.isProfileOsdOn(), number != 0);
    QCOMPARE(settings.lastMacroId(), number);
}

void DeviceSettingsTest::keepsItsDictionaryUnchanged()
{
    const QVariantMap dictionary{{u"ActiveProfile"_s, u"1"_s}, {u"Of another program"_s, 7}};
    QCOMPARE(DeviceSettings(dictionary).dictionary(), dictionary);
}

QTEST_APPLESS_MAIN(DeviceSettingsTest)
#include "devicesettingstest.moc"
