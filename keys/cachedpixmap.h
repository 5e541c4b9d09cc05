// SPDX-License-Identifier: MIT
// Pictures that are painted once and shared by all widgets that show them. Main thread only.
#pragma once

#include <QPixmap>
#include <QSizeF>

#include <functional>
#include <initializer_list>

class QPainter;

/// Returns an empty picture of `size` in device-independent pixels.
[[nodiscard]] QPixmap transparentPixmap(const QSizeF &size, qreal devicePixelRatio);

/// Returns a key for the picture `name` that depends on `numbers`. The key contains the bytes of the numbers: writing
/// them as digits takes longer than painting a small picture.
[[nodiscard]] QString pixmapKey(QLatin1StringView name, std::initializer_list<quint32> numbers);

/// Returns the picture that QPixmapCache has under `key`, which names everything that the picture depends on. If there
/// is none, `paint` first paints it on a transparent ground of `size` (device-independent pixels).
[[nodiscard]] QPixmap cachedPixmap(const QString &key, const QSizeF &size, qreal devicePixelRatio,
                                   const std::function<void(QPainter &)> &paint);
