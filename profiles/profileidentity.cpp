// SPDX-License-Identifier: MIT
#include "profiles/profileidentity.h"

#include "lighting/backlight.h"

#include <algorithm>

QVariant profileIdentity(const QVariantMap &profile, const QVariantList &profiles, int row)
{
    const QVariantMap contents = Backlight::withoutLight(profile);
    const auto isEqual = [&contents](const QVariant &other) {
        return Backlight::withoutLight(other.toMap()) == contents;
    };
    const bool isOneOfSeveral = std::ranges::count_if(profiles, isEqual) > 1;
    return QVariantList{contents, isOneOfSeveral ? row : -1};
}
