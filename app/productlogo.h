// SPDX-License-Identifier: MIT
// The product's mark: a keycap with a quill on it. Also the window's icon.
#pragma once

#include <QPixmap>

/// The mark, `size` device-independent pixels square, crisp at `devicePixelRatio`.
[[nodiscard]] QPixmap productLogo(int size, qreal devicePixelRatio);
