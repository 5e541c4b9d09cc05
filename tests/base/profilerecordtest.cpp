// SPDX-License-Identifier: MIT
#include "base/profilerecord.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ProfileRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsItsEntries();
    void emptyRecordHasNothing();
    void nameThatIsNotText_data();
    void nameThatIsNotText();
    void emptyNameIsGiven();
    void dictionariesOfAnotherTypeAreAbsent_data();
    void dictionariesOfAnotherTypeAreAbsent();
    void emptyKeysAreItsOwn();
    void readsAutomaticSwitch_data();
    void readsAutomaticSwitch();
};

void ProfileRecordTest::readsItsEntries()
{
    const QVariantMap keys{{u"4"_s, QVariantMap{{u"command"_s, 20}}}};
    const QVariantMap appInfo{{u"application"_s, u"Game"_s}};
    const QVariantMap profile{
        {u"ProfileName"_s, u"A"_s}, {u"Keys"_s, keys}, {u"AppInfo"_s, appInfo}, {u"AutoSwitchOn"_s, 1}};
    QCOMPARE(ProfileRecord::name(profile), u"A"_s);
    QCOMPARE(ProfileRecord::givenName(profile), u"A"_s);
    QCOMPARE(ProfileRecord::keys(profile), keys);
    QCOMPARE(ProfileRecord::ownKeys(profile), keys);
    QCOMPARE(ProfileRecord::appInfo(profile), appInfo);
    QCOMPARE(ProfileRecord::autoSwitchValue(profile), 1);
}

void ProfileRecordTest::emptyRecordHasNothing()
{
    QCOMPARE(ProfileRecord::name({}), QString());
    QCOMPARE(ProfileRecord::givenName({}), std::nullopt);
    QCOMPARE(ProfileRecord::keys({}), QVariantMap());
    QCOMPARE(ProfileRecord::ownKeys({}), std::nullopt);
    QCOMPARE(ProfileRecord::appInfo({}), QVariantMap());
    QCOMPARE(ProfileRecord::autoSwitchValue({}), 0);
}

void ProfileRecordTest::nameThatIsNotText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");
    QTest::newRow("number") << QVariant(5) << u"5"_s;
    QTest::newRow("array") << QVariant(QVariantList{u"A"_s}) << QString();
    QTest::newRow("dictionary") << QVariant(QVariantMap{{u"name"_s, u"A"_s}}) << QString();
}

void ProfileRecordTest::nameThatIsNotText()
{
    QFETCH(QVariant, value);
    const QVariantMap profile{{u"ProfileName"_s, value}};
    QTEST(ProfileRecord::name(profile), "shown");
    QCOMPARE(ProfileRecord::givenName(profile), std::nullopt);
}

void ProfileRecordTest::emptyNameIsGiven()
{
    QCOMPARE(ProfileRecord::givenName({{u"ProfileName"_s, QString()}}), QString());
}

void ProfileRecordTest::dictionariesOfAnotherTypeAreAbsent_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("number") << QVariant(1);
    QTest::newRow("text") << QVariant(u"4"_s);
    QTest::newRow("array") << QVariant(QVariantList{QVariantMap{{u"command"_s, 20}}});
}

void ProfileRecordTest::dictionariesOfAnotherTypeAreAbsent()
{
    QFETCH(QVariant, value);
    const QVariantMap profile{{u"Keys"_s, value}, {u"AppInfo"_s, value}};
    QCOMPARE(ProfileRecord::keys(profile), QVariantMap());
    QCOMPARE(ProfileRecord::ownKeys(profile), std::nullopt);
    QCOMPARE(ProfileRecord::appInfo(profile), QVariantMap());
}

void ProfileRecordTest::emptyKeysAreItsOwn()
{
    QCOMPARE(ProfileRecord::ownKeys({{u"Keys"_s, QVariantMap()}}), QVariantMap());
}

void ProfileRecordTest::readsAutomaticSwitch_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("true") << QVariant(true) << 1;
    QTest::newRow("false") << QVariant(false) << 0;
    QTest::newRow("number") << QVariant(2) << 2;
    QTest::newRow("text of digits") << QVariant(u"1"_s) << 1;
    QTest::newRow("words") << QVariant(u"on"_s) << 0;
    QTest::newRow("array") << QVariant(QVariantList{1}) << 0;
}

void ProfileRecordTest::readsAutomaticSwitch()
{
    QFETCH(QVariant, value);
    QTEST(ProfileRecord::autoSwitchValue({{u"AutoSwitchOn"_s, value}}), "expected");
}

QTEST_APPLESS_MAIN(ProfileRecordTest)
#include "profilerecordtest.moc"
