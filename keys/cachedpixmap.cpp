// SPDX-License-Identifier: MIT
#include "keys/cachedpixmap.h"

#include <QPainter>
#include <QPixmapCache>

#include <cmath>

QPixmap transparentPixmap(const QSizeF &size, qreal devicePixelRatio)
{
    QPixmap pixmap(static_cast<int>(std::ceil(size.width() * devicePixelRatio)),
                   static_cast<int>(std::ceil(size.height() * devicePixelRatio)));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

QString pixmapKey(QLatin1StringView name, std::initializer_list<quint32> numbers)
{
    constexpr auto unitsInNumber = qsizetype(sizeof(quint32) / sizeof(QChar));
    QString key(name);
    return key.append(reinterpret_cast<const QChar *>(numbers.begin()), qsizetype(numbers.size()) * unitsInNumber);
}

QPixmap cachedPixmap(const QString &key, const QSizeF &size, qreal devicePixelRatio,
                     const std::function<void(QPainter &)> &paint)
{
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = transparentPixmap(size, devicePixelRatio);
    QPainter painter(&pixmap);
    paint(painter);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
