// SPDX-License-Identifier: MIT
// The output of a macro that is played only for the user to see. Values; any thread.
#pragma once

#include <QList>
#include <QtGlobal>

/// A key or button that the computer would receive.
struct TriedKey
{
    int event = -1;    ///< the index of the event in the macro; -1 for a release that the macro does not have
    qint64 timeUs = 0; ///< since the beginning
    int page = 0;      ///< as in an event record
    uint argument = 0;
    bool isDown = false;

    bool operator==(const TriedKey &) const = default;
};

/// Why a try is over, or was not possible.
enum class TryEnd {
    finished,   ///< all rounds were played
    stopped,    ///< by the user
    changed,    ///< the macro was deleted, or its events were changed
    limit,      ///< it has lasted too long, or had too many events
    empty,      ///< the macro plays nothing
    tooMany,    ///< too many programs try macros
    unavailable ///< the service does not answer, or does not know the macro
};
