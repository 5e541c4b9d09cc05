// SPDX-License-Identifier: MIT
// Counts how much of the limits in propertylist.h a reader or the writer has used. Belongs to one call on one thread.
#pragma once

#include "base/propertylist.h"

class PropertyListBudget
{
public:
    /// Takes `count` values or keys; permanently false once there are more than allowed.
    [[nodiscard]] bool takeNodes(quint64 count) { return take(mNodesLeft, count); }
    /// Takes `bytes` of string or data content; permanently false once there are more than allowed.
    [[nodiscard]] bool takeContent(quint64 bytes) { return take(mContentLeft, bytes); }

private:
    static bool take(quint64 &left, quint64 amount)
    {
        if (amount > left) {
            left = 0;
            return false;
        }
        left -= amount;
        return true;
    }

    quint64 mNodesLeft = PropertyList::maximumNodes;
    quint64 mContentLeft = PropertyList::maximumContentBytes;
};
