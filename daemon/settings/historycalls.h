// SPDX-License-Identifier: MIT
// The calls of clients that go back in the history. Implemented by the daemon's HistoryCommands; main thread only.
#pragma once

#include "daemon/settings/history.h"

#include <QString>

/// `author`: HistoryKeys. A refused call changes nothing.
class HistoryCalls
{
public:
    virtual ~HistoryCalls() = default;

    /// Takes back the entry `id`, which must be the next one. Returns the id of the new entry.
    virtual History::Found<quint32> undo(quint32 id, const QString &author) = 0;
    /// Does again what was taken back last, which must be the entry `id`. Returns the id of the new entry.
    virtual History::Found<quint32> redo(quint32 id, const QString &author) = 0;
    /// As History::restoreTarget(). Returns the outcome.
    virtual History::Found<History::Target> restore(quint32 id, const QString &author) = 0;
    /// The outcome that restore() would have.
    [[nodiscard]] virtual History::Found<History::Target> preview(quint32 id) const = 0;
};
