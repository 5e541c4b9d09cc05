// SPDX-License-Identifier: MIT
// The product's mark, a keycap with a quill on it. The mark is also the window's icon.
#pragma once

#include <QPixmap>

/// Returns the mark as a square of `size` device-independent pixels, crisp at `devicePixelRatio`.
[[nodiscard]] QPixmap productLogo(int size, qreal devicePixelRatio);
