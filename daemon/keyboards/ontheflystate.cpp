// SPDX-License-Identifier: MIT
#include "daemon/keyboards/ontheflystate.h"

QLatin1StringView onTheFlyStateName(OnTheFlyState state)
{
    switch (state) {
    case OnTheFlyState::off: return QLatin1StringView("off");
    case OnTheFlyState::recording: return QLatin1StringView("recording");
    case OnTheFlyState::awaitingKey: return QLatin1StringView("awaiting key");
    }
    return {};
}
