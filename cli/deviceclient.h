// SPDX-License-Identifier: MIT
// The machine's keyboards as the daemon tells of them, over the session bus. Main thread only; each call blocks for at
// most 5 seconds.
#pragma once

#include "cli/daemonobject.h"

#include <QList>
#include <QVariantMap>

/// org.quillkestra.Devices; docs/daemon-protocol.md tells the keys of the dictionaries (base/devicekeys.h).
namespace DeviceClient {

/// The keyboards plugged in; empty, with `result` saying why, when the daemon does not tell them.
[[nodiscard]] QList<QVariantMap> list(DaemonObjectResult &result);
/// Empty, with `result` saying why, when the daemon does not tell it.
[[nodiscard]] QVariantMap status(DaemonObjectResult &result);
/// An unknown keyboard counts as wrong usage, as a profile that does not exist does.
[[nodiscard]] DaemonObjectResult use(const QStringList &ids);
[[nodiscard]] DaemonObjectResult release();

} // namespace DeviceClient
