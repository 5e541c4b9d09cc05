// SPDX-License-Identifier: MIT
#include "tests/support/picturefolder.h"

#include "tests/support/darkpalette.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>

using namespace Qt::StringLiterals;

void wearPalette(bool isDark)
{
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(isDark ? darkPalette() : QApplication::style()->standardPalette());
}

QImage pictureOf(QWidget *window, QWidget *sheetOrMenu, const QPoint &position)
{
    constexpr qreal ratio = 2;
    constexpr QSize margin(20, 20);
    const QSize size = window->size().expandedTo(
        sheetOrMenu ? QSize(position.x(), position.y()) + sheetOrMenu->size() + margin : QSize());
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(window->palette().color(QPalette::Window));
    window->render(&image);
    if (sheetOrMenu) {
        QPainter painter(&image);
        painter.fillRect(QRect(position, sheetOrMenu->size()), sheetOrMenu->palette().color(QPalette::Window));
        sheetOrMenu->render(&painter, position);
        painter.drawRect(QRect(position, sheetOrMenu->size()).adjusted(-1, -1, 0, 0));
    }
    return image;
}

bool savePicture(const QImage &picture, const QString &prefix)
{
    const char *row = QTest::currentDataTag();
    const QString name = row ? prefix + u'-' + QLatin1StringView(row) : prefix;
    QDir folder(QCoreApplication::applicationDirPath());
    return folder.mkpath(u"screenshots"_s) && picture.save(folder.filePath(u"screenshots/"_s + name + u".png"_s));
}

QStringList cutButtons(const QWidget *window)
{
    QStringList names;
    for (const QPushButton *button : window->findChildren<QPushButton *>()) {
        if (button->isVisibleTo(window) && button->width() < button->sizeHint().width())
            names += button->objectName();
    }
    return names;
}
