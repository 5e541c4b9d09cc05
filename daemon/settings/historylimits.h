// SPDX-License-Identifier: MIT
// The limits within which the history keeps and joins its entries. A value.
#pragma once

#include <QtGlobal>

struct HistoryLimits
{
    qsizetype bytes = 2 * 1024 * 1024;               ///< of the file
    qint64 ageMs = qint64{90} * 24 * 60 * 60 * 1000; ///< at most 1,000,000 years: it is subtracted from times
    qint64 joiningMs = 3000; ///< between changes of one slider or name; negative: no changes are joined
};
