// SPDX-License-Identifier: MIT
#include "keys/macrouses.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using KeyMappings::MacroUse;
using KeyMappings::macroUses;

namespace {

constexpr int keyA = 4;
constexpr int keyF5 = 62;
constexpr int keyM1 = 106;
constexpr int outsideTheLayout = 300;
constexpr int macroType = 10;
constexpr int profileType = 17;

QVariantMap entry(int command, const QVariant &param1)
{
    return {{u"command"_s, command}, {u"param1"_s, param1}, {u"param2"_s, 1}};
}

QVariantMap profileWith(const QString &name, const QList<std::pair<int, QVariantMap>> &entries)
{
    QVariantMap keys;
    for (const auto &[code, entry] : entries)
        keys.insert(QString::number(code), entry);
    return {{u"ProfileName"_s, name}, {u"Keys"_s, keys}};
}

} // namespace

class MacroUsesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesEveryKeyInTheOrderOfProfilesAndKeys();
    void countsNoOtherAssignmentWithThisNumber();
    void readsAnIndexLikeTheKeyThatPlays();
    void countsNoKeyOutsideTheLayout();
    void handlesOddTypes();
};

void MacroUsesTest::namesEveryKeyInTheOrderOfProfilesAndKeys()
{
    // As texts, "106" comes before "62"; among the keys, F5 comes before M1.
    const QVariantList profiles{
        profileWith(u"Default Profile"_s, {{keyA, entry(macroType, 0)}}),
        profileWith(u"Game"_s, {{keyM1, entry(macroType, 1)}, {keyF5, entry(macroType, 1)}, {5, entry(macroType, 2)}}),
        profileWith(u"Empty"_s, {}), profileWith(u"Work"_s, {{keyA, entry(macroType, 1)}})};
    QCOMPARE(macroUses(profiles, 1),
             (QList<MacroUse>{{1, u"Game"_s, keyF5}, {1, u"Game"_s, keyM1}, {3, u"Work"_s, keyA}}));
    QCOMPARE(macroUses(profiles, 0), (QList<MacroUse>{{0, u"Default Profile"_s, keyA}}));
    QCOMPARE(macroUses(profiles, 3), QList<MacroUse>());
}

void MacroUsesTest::countsNoOtherAssignmentWithThisNumber()
{
    QList<std::pair<int, QVariantMap>> entries;
    for (const int command : {0, 16, profileType, 20, 45, 46, 99})
        entries.append({keyA + int(entries.size()), entry(command, 1)});
    QCOMPARE(macroUses({profileWith(u"Game"_s, entries)}, 1), QList<MacroUse>());
}

void MacroUsesTest::readsAnIndexLikeTheKeyThatPlays()
{
    const QVariantMap withoutIndex{{u"command"_s, macroType}};
    const QVariantList profiles{profileWith(u"Game"_s, {{keyA, withoutIndex}, {keyM1, entry(macroType, u"2"_s)}})};
    QCOMPARE(macroUses(profiles, 0), (QList<MacroUse>{{0, u"Game"_s, keyA}}));
    QCOMPARE(macroUses(profiles, 2), (QList<MacroUse>{{0, u"Game"_s, keyM1}}));
}

void MacroUsesTest::countsNoKeyOutsideTheLayout()
{
    const QVariantList profiles{profileWith(u"Game"_s, {{outsideTheLayout, entry(macroType, 1)}})};
    QCOMPARE(macroUses(profiles, 1), QList<MacroUse>());
}

void MacroUsesTest::handlesOddTypes()
{
    QVariantMap nameless = profileWith({}, {{keyA, entry(macroType, 1)}});
    nameless.remove(u"ProfileName"_s);
    const QVariantList profiles{u"text"_s, 7, QVariantMap{{u"Keys"_s, u"none"_s}},
                                QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, u"none"_s}}}}, nameless};
    QCOMPARE(macroUses(profiles, 1), (QList<MacroUse>{{4, QString(), keyA}}));
    QCOMPARE(macroUses({}, 0), QList<MacroUse>());
    QCOMPARE(macroUses(profiles, -1), QList<MacroUse>());
}

QTEST_GUILESS_MAIN(MacroUsesTest)
#include "macrousestest.moc"
