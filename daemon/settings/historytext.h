// SPDX-License-Identifier: MIT
// Texts and values of the settings, cut off to a length that an entry of the history can have. Pure functions; any
// thread.
#pragma once

#include <QString>
#include <QVariantMap>

namespace HistoryText {

inline constexpr qsizetype longestName = 100; // characters
inline constexpr qsizetype longestPath = 200;
inline constexpr qsizetype longestList = 400;

/// `text`, with "…" in place of what exceeds `longest`.
[[nodiscard]] QString cut(const QString &text, qsizetype longest = longestName);
/// The assignment of a key as an entry shows it: its three known values.
[[nodiscard]] QVariantMap shownAssignment(const QVariantMap &entry);
/// The name of the application that the profile is for; empty without one.
[[nodiscard]] QString applicationOf(const QVariantMap &profile);

} // namespace HistoryText
