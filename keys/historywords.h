// SPDX-License-Identifier: MIT
// Words for an entry of the daemon's history, from the string tables. Any thread.
#pragma once

#include <QString>
#include <QVariantMap>

/// `entry` as the daemon's object /History lists it (base/historykeys.h): "A: Disable key", "Macro Combo: 12 events
/// recorded", "Undone: Profile Game deleted". Names are on one line, with "?" for characters that must not be shown.
[[nodiscard]] QString historyWords(const QVariantMap &entry);
