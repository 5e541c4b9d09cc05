// SPDX-License-Identifier: MIT
#include "keys/keymapping.h"
#include "tests/support/testmain.h"

#include "base/settingskeys.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace KeyMappings;

class KeyMappingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recognisesMappedKeys_data();
    void recognisesMappedKeys();
    void recognisesUnknownAssignments_data();
    void recognisesUnknownAssignments();
    void findsTheNameOfARecord();
    void placesCommandsInThePopUp_data();
    void placesCommandsInThePopUp();
    void repeatModesLeadBothWays_data();
    void repeatModesLeadBothWays();
    void unknownRepeatValuesPlayOnce();
    void positionsOutsideTheRepeatModesStoreOne();
    void readsAbsentAndOddEntriesAsNotMapped();
    void readsTheProgramPath();
    void writesExactlyThreeKeysIntoANewEntry();
    void keepsFurtherKeysAndOtherEntries();
    void leavesTheGivenDictionaryUnchanged();
};

void KeyMappingTest::recognisesMappedKeys_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("isMapped");
    for (const int command : {-1, 0, 45})
        QTest::addRow("%d", command) << command << false;
    for (const int command : {1, 10, 16, 17, 20, 30, 44, 46, 1000})
        QTest::addRow("%d", command) << command << true;
}

void KeyMappingTest::recognisesMappedKeys()
{
    QFETCH(int, command);
    QFETCH(bool, isMapped);
    QCOMPARE(KeyMappings::isKeyMapped(command), isMapped);
    QCOMPARE(readEntry(QVariantMap{{u"command"_s, command}}).isMapped(), isMapped);
}

void KeyMappingTest::recognisesUnknownAssignments_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("isUnknown");
    for (const int command : {-1, 0, 10, 16, 17, 20, 45, 46})
        QTest::addRow("%d", command) << command << false;
    for (const int command : {1, 30, 44, 1000})
        QTest::addRow("%d", command) << command << true;
}

void KeyMappingTest::recognisesUnknownAssignments()
{
    QFETCH(int, command);
    QTEST(readEntry(QVariantMap{{u"command"_s, command}}).isUnknown(), "isUnknown");
}

void KeyMappingTest::findsTheNameOfARecord()
{
    const QVariantList records{QVariantMap{{u"MacroName"_s, u"Heal"_s}}, QVariantMap(), u"text"_s};
    const auto name = [&records](int index) { return recordName(records, index, SettingsKeys::macroName); };
    QCOMPARE(name(0), std::optional(u"Heal"_s));
    QCOMPARE(name(1), std::optional(QString()));
    for (const int index : {2, 3, -1})
        QCOMPARE(name(index), std::nullopt);
}

void KeyMappingTest::placesCommandsInThePopUp_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("position");
    QTest::newRow("macro") << 10 << 2;
    QTest::newRow("single key") << 16 << 1;
    QTest::newRow("profile") << 17 << 3;
    QTest::newRow("disabled") << 20 << 5;
    QTest::newRow("default") << 45 << 0;
    QTest::newRow("program") << 46 << 4;
    QTest::newRow("unknown") << 30 << 0;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("negative") << -10 << 0;
}

void KeyMappingTest::placesCommandsInThePopUp()
{
    QFETCH(int, command);
    QFETCH(int, position);
    QCOMPARE(checkPopUpAssignmentIndexForValue(command), position);
}

void KeyMappingTest::repeatModesLeadBothWays_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("value");
    QTest::newRow("once") << 0 << 1;
    QTest::newRow("until released") << 1 << 255;
    QTest::newRow("until pressed again") << 2 << 254;
    for (int count = 2; count <= 10; ++count)
        QTest::addRow("%d times", count) << count + 1 << count;
}

void KeyMappingTest::repeatModesLeadBothWays()
{
    QFETCH(int, position);
    QFETCH(int, value);
    QCOMPARE(macroRepeat(value), position);
    QCOMPARE(macroRepeatValue(position), value);
    QCOMPARE(repeatModes().size(), 12u);
}

void KeyMappingTest::unknownRepeatValuesPlayOnce()
{
    for (const int value : {-1, 0, 11, 253, 256})
        QCOMPARE(macroRepeat(value), 0);
}

void KeyMappingTest::positionsOutsideTheRepeatModesStoreOne()
{
    for (const int position : {-1, 12, 100})
        QCOMPARE(macroRepeatValue(position), 1);
}

void KeyMappingTest::readsAbsentAndOddEntriesAsNotMapped()
{
    for (const QVariant &keys :
         {QVariant(), QVariant(u"Keys"_s), QVariant(QVariantMap()), QVariant(QVariantMap{{u"4"_s, 10}}),
          QVariant(QVariantMap{{u"4"_s, QVariantList{10}}})}) {
        const Entry entry = entryForKey({{SettingsKeys::keys, keys}}, 4);
        QCOMPARE(entry.command, 0);
        QCOMPARE(entry.param1, 0);
        QVERIFY(!entry.isMapped());
    }
    QVERIFY(!entryForKey({}, 4).isMapped());
}

void KeyMappingTest::readsTheProgramPath()
{
    const Entry launch =
        readEntry(QVariantMap{{u"command"_s, 46}, {u"param1"_s, u"/a/B.app"_s}, {u"param2"_s, QString()}});
    QVERIFY(launch.is(Assignment::launchProgram));
    QCOMPARE(launch.programPath, u"/a/B.app"_s);
    QCOMPARE(launch.param2, 0);
    QVERIFY(readEntry(QVariantMap{{u"command"_s, 46}, {u"param1"_s, 3}}).programPath.isEmpty());
}

void KeyMappingTest::writesExactlyThreeKeysIntoANewEntry()
{
    const QVariantMap keys = withEntry({}, u"4"_s, Assignment::disabled, 0, 0);
    QCOMPARE(keys, (QVariantMap{{u"4"_s, QVariantMap{{u"command"_s, 20}, {u"param1"_s, 0}, {u"param2"_s, 0}}}}));
}

void KeyMappingTest::keepsFurtherKeysAndOtherEntries()
{
    const QVariantMap other{{u"command"_s, 16}};
    const QVariantMap keys =
        withEntry({{u"4"_s, QVariantMap{{u"command"_s, 16}, {u"note"_s, u"mine"_s}}}, {u"5"_s, other}}, u"4"_s,
                  Assignment::launchProgram, u"/a/B.app"_s, QString());
    QCOMPARE(
        keys.value(u"4"_s).toMap(),
        (QVariantMap{{u"command"_s, 46}, {u"param1"_s, u"/a/B.app"_s}, {u"param2"_s, u""_s}, {u"note"_s, u"mine"_s}}));
    QCOMPARE(keys.value(u"5"_s).toMap(), other);
}

void KeyMappingTest::leavesTheGivenDictionaryUnchanged()
{
    const QVariantMap keys{{u"4"_s, QVariantMap{{u"command"_s, 45}}}};
    const QVariantMap changed = withEntry(keys, u"4"_s, Assignment::disabled, 0, 0);
    QVERIFY(changed != keys);
    QCOMPARE(keys.value(u"4"_s).toMap(), (QVariantMap{{u"command"_s, 45}}));
}

QTEST_GUILESS_MAIN(KeyMappingTest)
#include "keymappingtest.moc"
