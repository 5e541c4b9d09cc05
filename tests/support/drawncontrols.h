// SPDX-License-Identifier: MIT
// Measures the visible side of a window's controls: whether their texts are whole, the contrast of texts and
// indicators, and the picture. Everything but the sizes is measured on the drawn picture. No state; main thread only.
#pragma once

#include <QColor>
#include <QImage>
#include <QStringList>

class QWidget;

/// Picture dots for each pixel of a window. With two, fine strokes reach their full colour.
inline constexpr qreal pictureRatio = 2;

/// The texts of the visible controls below `root` that do not fit into their control, one line each. The layouts must
/// be complete.
[[nodiscard]] QStringList cutTexts(const QWidget *root);

/// The contrast as WCAG 2 defines it: from 1 for two equal colours to 21 for black and white.
[[nodiscard]] double contrastRatio(const QColor &one, const QColor &other);

/// Draws `widget` and its children with `pictureRatio` dots per pixel.
[[nodiscard]] QImage drawn(QWidget *widget);

/// The texts of the visible controls of `window` whose contrast with their background is below `leastContrast`, one
/// line each. Omits disabled controls. A selected row needs no more contrast than the desktop's selection colours have.
[[nodiscard]] QStringList faintTexts(QWidget *window, double leastContrast);

/// The visible check boxes (also those in tables) and radio buttons of `window` whose indicator has a contrast with its
/// surroundings below `leastContrast`, one line each. Omits disabled ones. The tick alone may provide the contrast. A
/// selected row needs no more contrast than the desktop's selection colours have.
[[nodiscard]] QStringList faintIndicators(QWidget *window, double leastContrast);

/// Draws `window` with `sheet` (may be null) over its upper half, as a desktop shows the two.
[[nodiscard]] QImage drawnWithSheet(QWidget *window, QWidget *sheet);
