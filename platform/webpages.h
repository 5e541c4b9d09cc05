// SPDX-License-Identifier: MIT
// Opens web pages in the user's browser. No state; main thread only.
#pragma once

#include <QUrl>

namespace WebPages {

enum class Outcome {
    opened,
    noBrowser,   ///< the desktop has no program that opens the page
    placeholder, ///< the address has no page, see Addresses; nothing was opened
};

/// Hands `address` to the desktop, which opens it later.
[[nodiscard]] Outcome open(const QUrl &address);

} // namespace WebPages
