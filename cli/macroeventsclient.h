// SPDX-License-Identifier: MIT
// Stores the events of a macro as a whole, through the daemon's object /Macros. Main thread.
#pragma once

#include "cli/chosenrecord.h"

#include <QVariantList>

/// Fails if `macro` cannot have `count` events, beside those of the other macros.
[[nodiscard]] CommandResult<void> checkEventCount(const ChosenRecord &macro, qsizetype count);

/// Stores `events` in place of those of `macro`, as one change. Fails as checkEventCount(), or if the macro has other
/// events by now than `macro` or is gone.
[[nodiscard]] CommandResult<void> replaceEvents(const ChosenRecord &macro, const QVariantList &events);
