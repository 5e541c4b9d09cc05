// SPDX-License-Identifier: MIT
// The keyboard on which the user presses the keys that the window asks for, and its texts. Any thread.
#pragma once

#include <QString>

struct CaptureSource
{
    enum class Kind {
        unknown,       ///< the daemon has not answered
        window,        ///< the virtual keyboard, whose keys the user types into the window
        realKeyboards, ///< those with these names
        ended,         ///< none any more, while the window still asks: the user has held Escape
    };

    Kind kind = Kind::unknown;
    QString names; ///< on one line; of Kind::realKeyboards only

    bool operator==(const CaptureSource &) const = default;
};

/// The keys of a request's texts. That of `realKeyboards` has a place for the names.
struct CaptureTextKeys
{
    const char *unknown;
    const char *window;
    const char *realKeyboards;
};

/// The request for a key on this keyboard. Once the capture has ended, the statement that it has.
[[nodiscard]] QString captureText(const CaptureSource &source, const CaptureTextKeys &keys);

/// How the user gets this keyboard back for the window; empty once that has happened.
[[nodiscard]] QString captureHint(const CaptureSource &source);
