// SPDX-License-Identifier: MIT
#include "keys/mappingcleanup.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int macroType = 10;
constexpr int profileType = 17;

QVariantMap entry(int command, const QVariant &param1)
{
    return {{u"command"_s, command}, {u"param1"_s, param1}, {u"param2"_s, 1}};
}

QVariantMap profileWith(const QVariantMap &keys)
{
    return {{u"ProfileName"_s, u"P"_s}, {u"Keys"_s, keys}};
}

QVariantMap keysOf(const QVariantList &profiles, int index)
{
    return profiles.value(index).toMap().value(u"Keys"_s).toMap();
}

// A default record that contains the path "Profiles" -> 0 -> "Keys".
QVariantMap defaultsWith(const QVariantMap &keys)
{
    return {{u"Profiles"_s, QVariantList{QVariantMap{{u"Keys"_s, keys}}}}};
}

/// The profiles after the repair, whether the rule changes them or not.
QVariantList repair(const QVariantList &profiles, int macroCount, int deleted, int type,
                    const QVariantMap &defaults = {})
{
    const QVariantList macros(macroCount, QVariant(QVariantMap()));
    return KeyMappings::removeDeletedMacroProfileMappings(profiles, macros, defaults, deleted, type).value_or(profiles);
}

} // namespace

class MappingCleanupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesEveryEntryOfTheDeletedMacro();
    void takesTheReplacementAlongTheDefaultPath();
    void replacesByAnEmptyEntryWhereThePathIsMissing();
    void changesNothingWhenNoKeyUsedIt();
    void changesNothingForOtherTypes_data();
    void changesNothingForOtherTypes();
    void repairsProfileIndexesPastTheEnd();
    void repairsMacroIndexesPastTheCountBeforeDeletion();
    void keepsLaterIndexesUnchanged();
    void countsNegativeIndexesAsPastTheEnd();
    void noIndexIsPastTheEndWithoutMacros();
    void givesARecordWithoutKeysThoseOfThePreviousOne();
    void leavesAFirstRecordWithoutKeysUnchanged();
    void readsKeyTextsAsNumbers_data();
    void readsKeyTextsAsNumbers();
    void handlesOddTypes();
    void handlesNoProfiles();
    void isAbsentWhenNothingChanges();
};

void MappingCleanupTest::replacesEveryEntryOfTheDeletedMacro()
{
    const QVariantMap other = entry(16, 2);
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 2)}, {u"5"_s, entry(10, 1)}, {u"6"_s, other}}),
                                profileWith({{u"7"_s, entry(10, 2)}, {u"8"_s, entry(17, 2)}})};
    const QVariantList repaired = repair(profiles, 4, 2, macroType, defaultsWith({{u"4"_s, entry(45, 9)}}));
    QCOMPARE(keysOf(repaired, 0), (QVariantMap{{u"4"_s, entry(45, 9)}, {u"5"_s, entry(10, 1)}, {u"6"_s, other}}));
    QCOMPARE(keysOf(repaired, 1), (QVariantMap{{u"7"_s, QVariantMap()}, {u"8"_s, entry(17, 2)}}));
    QCOMPARE(repaired.value(0).toMap().value(u"ProfileName"_s), u"P"_s);
}

void MappingCleanupTest::takesTheReplacementAlongTheDefaultPath()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 0)}})};
    // The rule deliberately ignores "Keys" of the default record itself.
    QVariantMap defaults = defaultsWith({{u"4"_s, entry(45, 3)}});
    defaults.insert(u"Keys"_s, QVariantMap{{u"4"_s, entry(45, 99)}});
    QCOMPARE(keysOf(repair(profiles, 1, 0, macroType, defaults), 0), (QVariantMap{{u"4"_s, entry(45, 3)}}));
}

void MappingCleanupTest::replacesByAnEmptyEntryWhereThePathIsMissing()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 0)}})};
    const QVariantMap defaults{{u"Keys"_s, QVariantMap{{u"4"_s, entry(45, 99)}}}};
    QCOMPARE(keysOf(repair(profiles, 1, 0, macroType, defaults), 0), (QVariantMap{{u"4"_s, QVariantMap()}}));
}

void MappingCleanupTest::changesNothingWhenNoKeyUsedIt()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 1)}}), profileWith({})};
    QCOMPARE(repair(profiles, 3, 0, macroType), profiles);
    QCOMPARE(repair(profiles, 3, 1, profileType), profiles);
}

void MappingCleanupTest::changesNothingForOtherTypes_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 16, 20, 45, 46})
        QTest::addRow("%d", type) << type;
}

void MappingCleanupTest::changesNothingForOtherTypes()
{
    QFETCH(int, type);
    const QVariantList profiles{
        profileWith({{u"4"_s, entry(10, 0)}, {u"5"_s, entry(17, 0)}, {u"6"_s, entry(type, 0)}})};
    QCOMPARE(repair(profiles, 1, 0, type), profiles);
}

void MappingCleanupTest::repairsProfileIndexesPastTheEnd()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(17, 5)}, {u"5"_s, entry(17, 2)}, {u"6"_s, entry(17, 3)}}),
                                profileWith({}), profileWith({})};
    const QVariantMap keys = keysOf(repair(profiles, 0, 1, profileType), 0);
    QCOMPARE(keys.value(u"4"_s).toMap(), QVariantMap());
    QCOMPARE(keys.value(u"5"_s).toMap(), entry(17, 2));
    QCOMPARE(keys.value(u"6"_s).toMap(), QVariantMap());
}

void MappingCleanupTest::repairsMacroIndexesPastTheCountBeforeDeletion()
{
    // There are four macros before the deletion of number 1. Index 3, the last, is deliberately not past that count.
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 3)}, {u"5"_s, entry(10, 4)}})};
    const QVariantMap keys = keysOf(repair(profiles, 4, 1, macroType), 0);
    QCOMPARE(keys.value(u"4"_s).toMap(), entry(10, 3));
    QCOMPARE(keys.value(u"5"_s).toMap(), QVariantMap());
}

void MappingCleanupTest::keepsLaterIndexesUnchanged()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 3)}})};
    QCOMPARE(repair(profiles, 5, 2, macroType), profiles);
}

void MappingCleanupTest::countsNegativeIndexesAsPastTheEnd()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, -1)}})};
    QCOMPARE(keysOf(repair(profiles, 3, 0, macroType), 0), (QVariantMap{{u"4"_s, QVariantMap()}}));
}

void MappingCleanupTest::noIndexIsPastTheEndWithoutMacros()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 7)}, {u"5"_s, entry(10, -1)}})};
    QCOMPARE(repair(profiles, 0, 0, macroType), profiles);
    QCOMPARE(keysOf(repair(profiles, 0, 7, macroType), 0).value(u"4"_s).toMap(), QVariantMap());
}

void MappingCleanupTest::givesARecordWithoutKeysThoseOfThePreviousOne()
{
    const QVariantMap bare{{u"ProfileName"_s, u"Bare"_s}};
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 0)}, {u"5"_s, entry(20, 0)}}), bare, bare};
    const QVariantList repaired = repair(profiles, 1, 0, macroType);
    const QVariantMap expected{{u"4"_s, QVariantMap()}, {u"5"_s, entry(20, 0)}};
    for (int index = 0; index < 3; ++index)
        QCOMPARE(keysOf(repaired, index), expected);
    QCOMPARE(repaired.value(1).toMap().value(u"ProfileName"_s), u"Bare"_s);
}

void MappingCleanupTest::leavesAFirstRecordWithoutKeysUnchanged()
{
    const QVariantMap bare{{u"ProfileName"_s, u"Bare"_s}};
    const QVariantList profiles{bare, profileWith({{u"4"_s, entry(20, 0)}})};
    QCOMPARE(repair(profiles, 1, 0, macroType), profiles);
}

void MappingCleanupTest::readsKeyTextsAsNumbers_data()
{
    QTest::addColumn<QVariantMap>("keys");
    QTest::addColumn<QVariantMap>("repaired");
    const QVariantMap played = entry(10, 0), disabled = entry(20, 0), byDefault = entry(45, 9);
    QTest::newRow("padded alone: names an entry that is not there")
        << QVariantMap{{u"004"_s, played}} << QVariantMap{{u"004"_s, played}};
    QTest::newRow("the entry under the plain text stays")
        << QVariantMap{{u"004"_s, played}, {u"4"_s, disabled}} << QVariantMap{{u"004"_s, played}, {u"4"_s, disabled}};
    QTest::newRow("the entry under the plain text is replaced")
        << QVariantMap{{u"004"_s, disabled}, {u"4"_s, played}}
        << QVariantMap{{u"004"_s, disabled}, {u"4"_s, byDefault}};
}

void MappingCleanupTest::readsKeyTextsAsNumbers()
{
    QFETCH(QVariantMap, keys);
    const QVariantList repaired = repair({profileWith(keys)}, 1, 0, macroType, defaultsWith({{u"4"_s, entry(45, 9)}}));
    QTEST(keysOf(repaired, 0), "repaired");
}

void MappingCleanupTest::handlesOddTypes()
{
    const QVariantList profiles{u"no record"_s, profileWith({{u"4"_s, u"no entry"_s}, {u"x"_s, entry(10, 0)}}),
                                QVariantMap{{u"Keys"_s, 5}}, profileWith({{u"6"_s, entry(10, u"2"_s)}})};
    const QVariantList repaired = repair(profiles, 5, 2, macroType, {{u"Profiles"_s, 3}});
    QCOMPARE(repaired.value(0), profiles.value(0));
    QCOMPARE(keysOf(repaired, 3), (QVariantMap{{u"6"_s, QVariantMap()}}));
}

void MappingCleanupTest::handlesNoProfiles()
{
    QVERIFY(repair({}, 3, 0, macroType).isEmpty());
}

void MappingCleanupTest::isAbsentWhenNothingChanges()
{
    const QVariantList profiles{profileWith({{u"4"_s, entry(10, 0)}, {u"5"_s, QVariantMap()}})};
    const auto rule = [&](const QVariantList &records, int deleted) {
        return KeyMappings::removeDeletedMacroProfileMappings(records, {QVariantMap(), QVariantMap()}, {}, deleted,
                                                              macroType);
    };
    QVERIFY(rule(profiles, 0));
    QVERIFY(!rule(profiles, 1));
    QVERIFY(!rule({}, 0));
    // Replacing an entry by an equal one does not count as a change.
    const QVariantMap replacement = entry(10, 0);
    QVERIFY(!KeyMappings::removeDeletedMacroProfileMappings(profiles, {QVariantMap()},
                                                            defaultsWith({{u"4"_s, replacement}}), 0, macroType));
}

QTEST_GUILESS_MAIN(MappingCleanupTest)
#include "mappingcleanuptest.moc"
