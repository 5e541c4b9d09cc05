// SPDX-License-Identifier: MIT
// The history of the settings that the daemon keeps, over the session bus. Main thread only; each call blocks for at
// most 5 seconds.
#pragma once

#include "cli/daemonobjectclient.h"
#include "daemonlink/historyentries.h"

#include <QList>
#include <QVariantMap>

/// org.quillkestra.History; docs/daemon-protocol.md explains the keys of the dictionaries (base/historykeys.h).
namespace HistoryClient {

/// All entries, the oldest first.
[[nodiscard]] DaemonObjectResult<QList<QVariantMap>> list();
/// The entries that undo() and redo() take next.
[[nodiscard]] DaemonObjectResult<QList<QVariantMap>> next();
[[nodiscard]] DaemonObjectResult<void> undo(uint id);
[[nodiscard]] DaemonObjectResult<void> redo(uint id);

/// The effect of taking back a change.
struct Restoration
{
    bool isAlone = true;
    QList<uint> others = {}; ///< otherwise: the changes that are also taken back
    uint newest = 0;         ///< of preview(): the id of the newest entry at that time
};
/// An unknown entry is wrong usage, like a profile that does not exist. Refused if the newest entry is not `newest`.
[[nodiscard]] DaemonObjectResult<Restoration> restore(uint id, uint newest);
[[nodiscard]] DaemonObjectResult<Restoration> preview(uint id);
/// The things that the entry has changed.
[[nodiscard]] DaemonObjectResult<HistoryParts> show(uint id);
/// All settings that the disk keeps: the active profile is the one that the user has chosen.
[[nodiscard]] DaemonObjectResult<QVariantMap> document();
/// Replaces all settings by those in `data`, a property list. `name` is for the entry. A fault is wrong usage, with its
/// place in the message.
[[nodiscard]] DaemonObjectResult<void> restoreDocument(const QByteArray &data, const QString &name);
/// The days that have a backup, the newest first.
[[nodiscard]] DaemonObjectResult<QStringList> backups();
[[nodiscard]] DaemonObjectResult<void> restoreBackup(const QString &day);
[[nodiscard]] DaemonObjectResult<void> clear();

} // namespace HistoryClient
