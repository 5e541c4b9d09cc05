// SPDX-License-Identifier: MIT
// The rule by which the search of the keys tab finds keys. No state; any thread.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The texts by which the search finds one key.
struct KeySearchEntry
{
    int code = 0;           ///< key code
    QStringList names;      ///< its names and the characters on it
    QStringList assignment; ///< texts that describe its assignment; empty for a key with the default one
};

/// Returns the codes of the keys that fit `query`, without regard to letter case and to spaces at its ends. A key fits
/// when a word of one of its names begins with the query, or when its assignment contains the query; a query of one
/// character must begin a word there. Keys that have
/// exactly this name come first; otherwise the order is that of `entries`. An empty query fits no key.
[[nodiscard]] QList<int> keysFitting(const QString &query, const QList<KeySearchEntry> &entries);
