// SPDX-License-Identifier: MIT
#include "keys/cachedpixmap.h"

#include <QPainter>
#include <QPixmapCache>

#include <cmath>

QPixmap cachedPixmap(const QString &key, const QSizeF &size, qreal devicePixelRatio,
                     const std::function<void(QPainter &)> &paint)
{
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap(static_cast<int>(std::ceil(size.width() * devicePixelRatio)),
                     static_cast<int>(std::ceil(size.height() * devicePixelRatio)));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(painter);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
