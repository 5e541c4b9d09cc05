// SPDX-License-Identifier: MIT
// What a person sees of the controls of a window: whether their texts are whole, how much the texts stand out from what
// is behind them, and what the controls look like. Everything is measured on what is really drawn, but for the sizes.
// No state; main thread only.
#pragma once

#include <QColor>
#include <QImage>
#include <QStringList>

class QWidget;

/// Dots of a picture for each pixel of a window: fine strokes reach their full colour.
inline constexpr qreal pictureRatio = 2;

/// The texts of the visible controls below `root` that do not fit the control they stand in, one line each. The layouts
/// must be done.
[[nodiscard]] QStringList cutTexts(const QWidget *root);

/// From 1 for two equal colours to 21 for black and white, as WCAG 2 defines it.
[[nodiscard]] double contrastRatio(const QColor &one, const QColor &other);

/// `widget` and what is in it, `pictureRatio` dots per pixel.
[[nodiscard]] QImage drawn(QWidget *widget);

/// The texts of the visible controls of the window `window` that stand out from their background by less than
/// `leastContrast`, one line each. Disabled controls are left out. A selected row needs no more contrast than the
/// desktop's colours of a selection have.
[[nodiscard]] QStringList faintTexts(QWidget *window, double leastContrast);

/// The visible check boxes (those in tables too) and radio buttons of `window` whose indicator stands out from what is
/// beside it by less than `leastContrast`, one line each. Disabled ones are left out. A ticked one may stand out by its
/// tick alone; a selected row needs no more contrast than the desktop's colours of a selection have.
[[nodiscard]] QStringList faintIndicators(QWidget *window, double leastContrast);

/// `window` with `sheet`, null for none, over its upper half, as a desktop shows the two.
[[nodiscard]] QImage drawnWithSheet(QWidget *window, QWidget *sheet);
