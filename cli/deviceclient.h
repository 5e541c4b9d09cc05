// SPDX-License-Identifier: MIT
// The computer's keyboards as the daemon reports them, over the session bus. Main thread only; each call blocks for at
// most 5 seconds.
#pragma once

#include "cli/daemonobjectclient.h"

#include <QList>
#include <QVariantMap>

/// org.quillkestra.Devices; docs/daemon-protocol.md explains the keys of the dictionaries (base/devicekeys.h).
namespace DeviceClient {

/// The keyboards that are plugged in.
[[nodiscard]] DaemonObjectResult<QList<QVariantMap>> list();
[[nodiscard]] DaemonObjectResult<QVariantMap> status();
/// An unknown keyboard is wrong usage, like a profile that does not exist.
[[nodiscard]] DaemonObjectResult<void> use(const QStringList &ids);
/// The same beside the keyboards that are chosen already.
[[nodiscard]] DaemonObjectResult<void> useAlso(const QStringList &ids);
[[nodiscard]] DaemonObjectResult<void> release();
/// Releases these chosen keyboards.
[[nodiscard]] DaemonObjectResult<void> releaseThese(const QStringList &ids);

} // namespace DeviceClient
