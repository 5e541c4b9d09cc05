// SPDX-License-Identifier: MIT
// The history of the settings that the daemon keeps, over the session bus. Main thread only; each call blocks for at
// most 5 seconds.
#pragma once

#include "cli/daemonobjectclient.h"

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
};
/// An unknown entry is wrong usage, like a profile that does not exist.
[[nodiscard]] DaemonObjectResult<Restoration> restore(uint id);
[[nodiscard]] DaemonObjectResult<Restoration> preview(uint id);
[[nodiscard]] DaemonObjectResult<void> clear();

} // namespace HistoryClient
