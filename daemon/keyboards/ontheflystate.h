// SPDX-License-Identifier: MIT
// How far a macro that is recorded with nothing but the keyboard has got, which a keyboard may show. A value; any
// thread.
#pragma once

#include <QLatin1StringView>

enum class OnTheFlyState { off, recording, awaitingKey };

[[nodiscard]] QLatin1StringView onTheFlyStateName(OnTheFlyState state); ///< "off", "recording", "awaiting key"
