// SPDX-License-Identifier: MIT
// The values of "ReturnStatus" in the daemon's replies (except to command 0, whose status is a found flag).
#pragma once

#include <QLatin1StringView>

/// The numbers are on the wire: never change one. docs/daemon-protocol.md explains them.
enum class Status : int {
    ok = 0,
    unknownCommand = 1,
    malformedRequest = 2, ///< a key is missing, of the wrong type, or its value has no meaning
    indexOutOfRange = 3,  ///< no such profile, macro or display row
    limitReached = 4,     ///< too many profiles, macros or events, or nested too deeply
    lastProfile = 5,      ///< the only profile cannot be deleted
    notSaved = 6,         ///< the settings file could not be written
    deviceAbsent = 7,     ///< needs the keyboard, which is not attached
    nothingRecorded = 8,  ///< no recording for this macro is waiting to be saved
    busy = 9,             ///< too many requests are waiting
};

[[nodiscard]] constexpr QLatin1StringView statusName(Status status)
{
    switch (status) {
    case Status::ok: return QLatin1StringView("ok");
    case Status::unknownCommand: return QLatin1StringView("unknown command");
    case Status::malformedRequest: return QLatin1StringView("malformed request");
    case Status::indexOutOfRange: return QLatin1StringView("index out of range");
    case Status::limitReached: return QLatin1StringView("limit reached");
    case Status::lastProfile: return QLatin1StringView("last profile");
    case Status::notSaved: return QLatin1StringView("not saved");
    case Status::deviceAbsent: return QLatin1StringView("device absent");
    case Status::nothingRecorded: return QLatin1StringView("nothing recorded");
    case Status::busy: return QLatin1StringView("busy");
    }
    return QLatin1StringView("?");
}
