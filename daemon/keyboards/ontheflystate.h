// SPDX-License-Identifier: MIT
// The progress of a macro recorded on the keyboard itself, which a keyboard may show. A value; any thread.
#pragma once

#include <QLatin1StringView>

enum class OnTheFlyState { off, recording, awaitingKey };

[[nodiscard]] QLatin1StringView onTheFlyStateName(OnTheFlyState state); ///< "off", "recording", "awaiting key"
