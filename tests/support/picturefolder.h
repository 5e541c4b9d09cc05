// SPDX-License-Identifier: MIT
// Pictures of windows for a person to look at: in the folder `screenshots` beside the tests. Main thread only.
#pragma once

#include <QImage>

class QWidget;

/// Dresses the program in the light or the dark palette of the style Fusion.
void wearPalette(bool isDark);

/// `window`, and over it `sheetOrMenu` (null for none) with its corner at `position` of the window; large enough for
/// both.
[[nodiscard]] QImage pictureOf(QWidget *window, QWidget *sheetOrMenu, const QPoint &position);

/// Saves `picture` as `prefix`, "-" and the name of the current row; false when it cannot be written.
[[nodiscard]] bool savePicture(const QImage &picture, const QString &prefix);
