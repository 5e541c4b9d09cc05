// SPDX-License-Identifier: MIT
// The keys that are repaired after a deletion. The window and kestractl use the same documents and rows, so both keep
// one rule. For tests with Qt Test; used on their thread.
#pragma once

#include "base/settingskeys.h"

#include <QTest>
#include <QVariantMap>

namespace MappingCleanupCases {

inline constexpr int playMacro = 10;
inline constexpr int switchProfile = 17;

inline QVariantMap entry(int command, const QVariant &param1)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, 1}};
}

/// `document`, which has two profiles, with `keys` in its first profile. The second profile has an empty "Keys" or
/// none.
inline QVariantMap withKeys(QVariantMap document, const QVariantMap &keys, bool hasSecondKeys = true)
{
    const QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    QVariantMap first = profiles.value(0).toMap();
    QVariantMap second = profiles.value(1).toMap();
    first.insert(SettingsKeys::keys, keys);
    second.insert(SettingsKeys::keys, QVariantMap());
    if (!hasSecondKeys)
        second.remove(SettingsKeys::keys);
    document.insert(SettingsKeys::profiles, QVariantList{first, second});
    return document;
}

/// The settings around one deletion.
struct Deletion
{
    QVariantMap before;
    QVariantMap after;
};

/// Makes a deletion of a macro or profile from `document`, which has two profiles and three macros. Three of the
/// deleted kind exist before it and two after it. The mappings of the remaining profiles do not change.
inline Deletion deletionIn(const QVariantMap &document, int type)
{
    Deletion deletion{.before = document, .after = document};
    if (type == playMacro) {
        deletion.after.insert(SettingsKeys::macros, document.value(SettingsKeys::macros).toList().mid(0, 2));
    } else {
        const QVariantList profiles = document.value(SettingsKeys::profiles).toList();
        deletion.before.insert(SettingsKeys::profiles, profiles + QVariantList{profiles.last()});
    }
    return deletion;
}

/// Adds the columns "type", "deleted" and "param1", for the one entry of that type, and "isRepaired".
inline void addRows()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<QVariant>("param1");
    QTest::addColumn<bool>("isRepaired");
    // Three macros exist before the deletion, and the rule counts these three.
    QTest::newRow("the deleted macro") << playMacro << 1 << QVariant(1) << true;
    QTest::newRow("a macro before it") << playMacro << 1 << QVariant(0) << false;
    QTest::newRow("the last macro, counted before the deletion") << playMacro << 1 << QVariant(2) << false;
    QTest::newRow("a macro past the end") << playMacro << 1 << QVariant(3) << true;
    QTest::newRow("a negative macro") << playMacro << 1 << QVariant(-1) << true;
    // Two profiles exist after the deletion, and the rule counts these two.
    QTest::newRow("the deleted profile") << switchProfile << 1 << QVariant(1) << true;
    QTest::newRow("a profile before it") << switchProfile << 1 << QVariant(0) << false;
    QTest::newRow("a profile behind it keeps its index") << switchProfile << 0 << QVariant(1) << false;
    QTest::newRow("the last profile, counted after the deletion") << switchProfile << 0 << QVariant(2) << true;
    QTest::newRow("a negative profile") << switchProfile << 0 << QVariant(-1) << true;
}

} // namespace MappingCleanupCases
