// SPDX-License-Identifier: MIT
// Pictures that are painted once for all who show the same one. Main thread only.
#pragma once

#include <QPixmap>
#include <QSizeF>

#include <functional>
#include <initializer_list>

class QPainter;

/// An empty picture of `size` in device-independent pixels.
[[nodiscard]] QPixmap transparentPixmap(const QSizeF &size, qreal devicePixelRatio);

/// A key for a picture named `name` that depends on `numbers`: the numbers as they are in memory, since writing them in
/// digits takes longer than painting a small picture.
[[nodiscard]] QString pixmapKey(QLatin1StringView name, std::initializer_list<quint32> numbers);

/// The picture that QPixmapCache keeps under `key`, which names everything that it depends on; when there is none,
/// `paint` paints it first, on a transparent ground of `size` (device-independent pixels).
[[nodiscard]] QPixmap cachedPixmap(const QString &key, const QSizeF &size, qreal devicePixelRatio,
                                   const std::function<void(QPainter &)> &paint);
