// SPDX-License-Identifier: MIT
// A keyboard layout of the desktop: the characters that its keys produce. A value; copies share the data. Main thread.
#pragma once

#include <QString>

#include <memory>

struct xkb_keymap;

/// Keys have the names of the XKB protocol, which mean places: "AD01" is the key right of Tab.
class Keymap
{
public:
    struct Characters
    {
        QString plain;   ///< without modifiers; empty for a key without a character
        QString shifted; ///< with Shift; empty for a key without a character

        bool operator==(const Characters &) const = default;
    };

    /// Without a layout.
    Keymap() = default;
    /// Takes over a reference to `map` (may be null). `layout` counts from 0; a key with fewer layouts wraps around.
    Keymap(xkb_keymap *map, quint32 layout);

    /// Returns the system's keymap of this layout ("de") and variant ("neo"; may be empty). It is null if the system
    /// does not have it.
    [[nodiscard]] static Keymap fromNames(const char *layout, const char *variant = "");
    /// The same for both in one text: "de", "fr(bepo)". Null also for a text of another form.
    [[nodiscard]] static Keymap fromDescription(const QString &description);

    [[nodiscard]] bool isNull() const { return !mMap; }
    /// The layout's name for users, in English ("German"); empty if the keymap has none.
    [[nodiscard]] QString name() const;
    /// Null for a null keymap. Copies of this object keep it.
    [[nodiscard]] xkb_keymap *map() const { return mMap.get(); }
    /// The layout in use; it counts from 0.
    [[nodiscard]] quint32 layout() const { return mLayout; }
    /// A dead key has the character of its accent.
    [[nodiscard]] Characters charactersOf(const char *keyName) const;

private:
    [[nodiscard]] QString character(quint32 keyCode, quint32 level) const;

    std::shared_ptr<xkb_keymap> mMap;
    quint32 mLayout = 0;
};
