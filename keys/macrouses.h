// SPDX-License-Identifier: MIT
// The keys that play a macro. The window and kestractl both use this rule. It has no state; any thread may call it.
#pragma once

#include <QList>
#include <QString>
#include <QVariantList>

namespace KeyMappings {

/// A key that plays a macro.
struct MacroUse
{
    int profileIndex = 0;
    QString profileName; ///< as in the record, unchecked; empty if the profile has none
    int keyCode = 0;     ///< a key of KeyLayout; keyName() names it

    bool operator==(const MacroUse &) const = default;
};

/// Returns every key of the layout that plays the macro at `macroIndex` of "Macros", in each of `profiles` (an array of
/// profile records). The profiles have their own order, the keys of a profile that of KeyLayout::selectableKeys().
/// Empty if no key plays it. Elements that are no records have no keys.
[[nodiscard]] QList<MacroUse> macroUses(const QVariantList &profiles, int macroIndex);

} // namespace KeyMappings
