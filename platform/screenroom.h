// SPDX-License-Identifier: MIT
// The room that a screen has for a window. Main thread only.
#pragma once

#include <QSize>

class QWidget;

/// Returns the largest size, without its frame, of a window that can be seen as a whole on the screen of `window`. In
/// logical pixels.
[[nodiscard]] QSize roomOnScreen(const QWidget *window);
