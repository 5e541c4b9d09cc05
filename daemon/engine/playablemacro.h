// SPDX-License-Identifier: MIT
// The macros of the settings document, decoded once so that playing one reads no dictionaries. Values that are shared
// and never changed; any thread.
#pragma once

#include "daemon/engine/hidusage.h"

#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <memory>
#include <vector>

/// One event of a macro that can be played.
struct MacroStep
{
    std::chrono::milliseconds at; ///< since the beginning of the round
    HidUsage usage;
    bool isDown = false;
};

/// A macro as it is played. Events without a line in the event list, and keys that do not exist, are not played; the
/// pauses before them are kept. A negative pause counts as none.
struct PlayableMacro
{
    int macroId = 0;                   ///< the record's own "macroID"
    QVariant sequence;                 ///< what the steps were made from
    std::vector<MacroStep> steps;      ///< in order
    std::chrono::milliseconds length;  ///< of one round: the sum of all pauses
    std::chrono::microseconds spacing; ///< from the beginning of a round to that of the next; see minimumSpacing
};

/// A repeated macro begins its rounds at least this far apart for each of its steps, and at least minimumRound: a macro
/// without pauses would otherwise take all the time there is. 10 000 events in a second are more than a hand, or a
/// program that reads the keyboard, can use.
inline constexpr std::chrono::microseconds minimumSpacing{100};
inline constexpr std::chrono::milliseconds minimumRound{1};

/// By position in "Macros". The same object stands for the same macro as long as its events stay what they are.
using PlayableMacros = std::vector<std::shared_ptr<const PlayableMacro>>;

/// `macros`: array of macro records; `before`: the result for the array before the change, whose macros are used again
/// where they have not changed, wherever they stand now.
[[nodiscard]] PlayableMacros playableMacros(const QVariantList &macros, const PlayableMacros &before = {});
