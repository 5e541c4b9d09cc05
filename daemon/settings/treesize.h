// SPDX-License-Identifier: MIT
// The size of a tree of values. No state; any thread.
#pragma once

#include <QVariant>

struct TreeSize
{
    [[nodiscard]] static TreeSize of(const QVariant &value);
    /// The size of a dictionary entry: its key and its value.
    [[nodiscard]] static TreeSize ofEntry(const QString &key, const QVariant &value);

    qsizetype nodes = 0;        ///< values and dictionary keys
    qsizetype contentBytes = 0; ///< strings (two per UTF-16 code unit) and data
    int depth = 0;              ///< of the deepest value; 1 for a tree of a single value
};
