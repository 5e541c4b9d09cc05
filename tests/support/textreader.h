// SPDX-License-Identifier: MIT
// A computer's side of a keyboard: turns Linux key codes into the text that a program would receive, by xkbcommon
// alone. It shares no code with the library that types.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct xkb_compose_state;
struct xkb_keymap;
struct xkb_state;

class TextReader
{
public:
    /// Keeps a reference to `map`, which must not be null. `layout` counts from 0. Dead keys follow the Compose file of
    /// en_US.UTF-8; without that file, text() is empty.
    explicit TextReader(xkb_keymap *map, std::uint32_t layout = 0);

    void press(std::uint16_t linuxCode);
    void release(std::uint16_t linuxCode);

    /// The text so far, in UTF-8. Return is a line feed. A key that types nothing adds nothing.
    [[nodiscard]] const std::string &text() const { return mText; }
    /// Whether no modifier, lock or unfinished sequence is left.
    [[nodiscard]] bool isAtRest() const;

private:
    std::shared_ptr<xkb_state> mState;
    std::shared_ptr<xkb_compose_state> mCompose;
    std::string mText;
    std::uint32_t mLayout;
};

/// Compiles the system's keymap for the model pc105; null if it does not exist.
[[nodiscard]] std::shared_ptr<xkb_keymap> systemKeymap(const char *layout, const char *variant = "",
                                                       const char *options = "");
