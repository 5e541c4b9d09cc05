// SPDX-License-Identifier: MIT
// The words of the status line, from the string tables: the one place that chooses them. Pure functions; main thread.
#pragma once

#include "app/devicesstatus.h"
#include "base/statusreport.h"

#include <QString>

#include <optional>

/// The state that the status line shows between reports.
struct StatusState
{
    enum class Service {
        awaited, ///< the program has not opened the keyboard yet
        running,
        silent, ///< did not answer the last request
        absent, ///< no daemon runs
    };
    struct ActiveProfile
    {
        QString name;
        bool isGameModeOn = false;
        /// The application for which it is active; empty when it was chosen by hand, absent when unknown.
        std::optional<QString> application = {};
    };

    Service service = Service::awaited;
    bool isAttached = false;
    std::optional<KeyboardsInUse> keyboards = {}; ///< absent when unknown
    std::optional<ActiveProfile> profile = {};    ///< absent when the daemon's settings are unknown
    bool needsShellExtension = false;             ///< without it, no profile follows a window of GNOME on Wayland
};

namespace StatusWords {

[[nodiscard]] QString ofState(const StatusState &state);
[[nodiscard]] QString ofReport(const StatusReport &report);
/// The reason why no change was taken back, by the D-Bus name of the error (base/historykeys.h).
[[nodiscard]] QString ofHistoryError(const QString &error);
/// While a command waits for the daemon.
[[nodiscard]] QString ofWait();

} // namespace StatusWords
