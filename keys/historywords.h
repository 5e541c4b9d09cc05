// SPDX-License-Identifier: MIT
// Words for an entry of the daemon's history and for what it changed, from the string tables. Main thread only: the
// names of events come from the eventParser.
#pragma once

#include <QString>
#include <QVariantMap>

/// `entry` as the daemon's object /History lists it (base/historykeys.h): "A: Disable key", "Macro Combo: 12 events
/// recorded", "Undone: Profile Game deleted". Names are on one line, with "?" for characters that must not be shown.
[[nodiscard]] QString historyWords(const QVariantMap &entry);

/// The state of a thing before and after a change, each on one line.
struct HistoryPartWords
{
    QString before = {}; ///< empty if the daemon has not sent the states
    QString after = {};
};

/// `part` as "Show" of the same object lists it: "A: Single key (B)" and "A: Disable key", for example.
[[nodiscard]] HistoryPartWords historyPartWords(const QVariantMap &part);
