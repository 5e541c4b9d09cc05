// SPDX-License-Identifier: MIT
#include "daemon/capture/escapehold.h"

void EscapeHold::keyChanged(HidUsage key, bool isDown, Time time)
{
    if (isDown && mDown.contains(key))
        return; // unchanged
    mEnd.reset();
    if (!isDown) {
        mDown.removeOne(key);
        return;
    }
    mDown += key;
    if (key == escape && mDown.size() == 1)
        mEnd = time + duration;
}
