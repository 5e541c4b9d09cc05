// SPDX-License-Identifier: MIT
// The macros of the settings document, decoded once because playback must not read dictionaries. Shared, immutable
// values; any thread.
#pragma once

#include "base/hidusage.h"

#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <memory>
#include <vector>

/// One playable event of a macro.
struct MacroStep
{
    std::chrono::milliseconds at; ///< since the beginning of the round
    HidUsage usage;
    bool isDown = false;
    int event = 0; ///< the index of the event in the record
};

/// A macro in its playable form, without events that the event list does not show and keys that do not exist. The
/// pauses before these are kept. A negative pause means none.
struct PlayableMacro
{
    int macroId = 0;                   ///< the record's own "macroID"
    QVariant sequence;                 ///< the source of the steps
    std::vector<MacroStep> steps;      ///< in order
    std::chrono::milliseconds length;  ///< of one round: the sum of all pauses
    std::chrono::microseconds spacing; ///< from the beginning of one round to that of the next; see minimumSpacing
};

/// The shortest interval between two rounds: minimumSpacing for each step, and at least minimumRound. Without it, a
/// repeated macro without pauses would take all processor time. Neither a hand nor a program that reads the keyboard
/// can use more than 10 000 events per second.
inline constexpr std::chrono::microseconds minimumSpacing{100};
inline constexpr std::chrono::milliseconds minimumRound{1};

/// By index in "Macros". A macro keeps its object while its events do not change.
using PlayableMacros = std::vector<std::shared_ptr<const PlayableMacro>>;

/// Decodes `macros`, an array of macro records. `before` is the result for the previous array; unchanged macros are
/// reused from it, whatever their index.
[[nodiscard]] PlayableMacros playableMacros(const QVariantList &macros, const PlayableMacros &before = {});
