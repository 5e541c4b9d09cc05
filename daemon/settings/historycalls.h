// SPDX-License-Identifier: MIT
// The calls of clients that go back in the history. Implemented by the daemon's HistoryCommands; main thread only.
#pragma once

#include "daemon/settings/history.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Why a document was not restored.
struct RestoreError
{
    enum class Cause {
        faulty,     ///< `message` is the fault and its place
        noBackup,   ///< there is none of that day
        unreadable, ///< the backup; `message` is the system's reason
        notSaved,   ///< the settings file could not be written
    };
    Cause cause = Cause::faulty;
    QString message = {};
};

/// `author`: HistoryKeys. A refused call changes nothing.
class HistoryCalls
{
public:
    virtual ~HistoryCalls() = default;

    /// Takes back the entry `id`, which must be the next one. Returns the id of the new entry.
    virtual History::Found<quint32> undo(quint32 id, const QString &author) = 0;
    /// Does again what was taken back last, which must be the entry `id`. Returns the id of the new entry.
    virtual History::Found<quint32> redo(quint32 id, const QString &author) = 0;
    /// As History::joinSince(), for the present settings.
    virtual History::Found<quint32> join(quint32 first, const QString &author) = 0;
    /// As History::restoreTarget(). Returns the outcome. Refused as outdated if `newest` is neither 0 nor the newest
    /// entry: the caller would restore something else than preview() has returned.
    virtual History::Found<History::Target> restore(quint32 id, quint32 newest, const QString &author) = 0;
    /// The outcome that restore() would have.
    [[nodiscard]] virtual History::Found<History::Target> preview(quint32 id) const = 0;
    /// As History::partsOf().
    [[nodiscard]] virtual History::Found<ChangeParts> partsOf(quint32 id) const = 0;

    /// The settings on the disk, as a property list: the profile that the user has chosen is active, also while an
    /// application has activated another one.
    [[nodiscard]] virtual QByteArray document() const = 0;
    /// Replaces all settings by those in `data`, a property list, which is checked strictly. `name`, of a file, for
    /// example, is for the entry. Returns the id of the newest entry.
    virtual Result<quint32, RestoreError> restoreDocument(const QByteArray &data, const QString &name,
                                                          const QString &author) = 0;
    /// The days that have a backup, the newest first.
    [[nodiscard]] virtual QStringList backupDays() const = 0;
    /// The same as restoreDocument(), with the backup of a day ("2026-11-21").
    virtual Result<quint32, RestoreError> restoreBackup(const QString &day, const QString &author) = 0;
    /// Forgets all entries, and deletes the backups, the previous settings and files that were set aside. False if some
    /// of them are still on the disk.
    [[nodiscard]] virtual bool clear() = 0;
};
