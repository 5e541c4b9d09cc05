// SPDX-License-Identifier: MIT
// The daemon's virtual keyboard, driven over the session bus.
#pragma once

#include "cli/daemonobjectclient.h"

#include <QList>

#include <optional>

/// Main thread only; each call blocks for at most 5 seconds.
namespace VirtualKeyboardClient {

/// Calls `method` of org.quillkestra.VirtualKeyboard. Refused when the daemon drives a real keyboard instead. `failure`
/// is that of DaemonObjectClient::call().
[[nodiscard]] DaemonObjectResult<QVariantList> call(QLatin1StringView method, const QVariantList &arguments,
                                                    const QString &failure);
/// Presses or releases the key with this code, by the method "Press" or "Release".
[[nodiscard]] CommandResult<void> pressKey(int code);
[[nodiscard]] CommandResult<void> releaseKey(int code);

/// Whether the virtual keyboard is attached; absent when the daemon has none.
[[nodiscard]] std::optional<bool> isAttached();

/// The colour that the keys show at this moment, as "#rrggbb"; absent when the daemon has no virtual keyboard.
[[nodiscard]] std::optional<QString> shownLight();

/// The keys that are down for the computer, in the order of the presses: usage page in the upper 16 bits, usage in the
/// lower.
[[nodiscard]] DaemonObjectResult<QList<uint>> sentKeys();

} // namespace VirtualKeyboardClient
