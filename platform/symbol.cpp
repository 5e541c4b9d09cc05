// SPDX-License-Identifier: MIT
#include "platform/symbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace {

constexpr qreal gridSize = 16; // the symbols are drawn in a square of this size
constexpr qreal lineWidth = 1.4;

QPainterPath keyboard()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(1.2, 3.7, 13.6, 8.6), 1.6, 1.6);
    for (const qreal x : {4.0, 6.7, 9.4, 12.0}) {
        path.moveTo(x, 6.5);
        path.lineTo(x, 6.6);
    }
    path.moveTo(5, 9.6);
    path.lineTo(11, 9.6);
    return path;
}

QPainterPath profiles()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(1.7, 5.2, 9, 8.6), 1.4, 1.4);
    path.moveTo(5.2, 2.2);
    path.lineTo(12.8, 2.2);
    path.quadTo(14.2, 2.2, 14.2, 3.6);
    path.lineTo(14.2, 10.6);
    return path;
}

QPainterPath macro()
{
    QPainterPath path(QPointF(4.4, 2.8));
    path.lineTo(13, 8);
    path.lineTo(4.4, 13.2);
    path.closeSubpath();
    return path;
}

QPainterPath light()
{
    QPainterPath path;
    path.addEllipse(QPointF(8, 8), 2.9, 2.9);
    constexpr int rays = 8;
    for (int ray = 0; ray < rays; ++ray) {
        const QLineF from = QLineF::fromPolar(5, 360.0 * ray / rays), to = QLineF::fromPolar(6.8, 360.0 * ray / rays);
        path.moveTo(QPointF(8, 8) + from.p2());
        path.lineTo(QPointF(8, 8) + to.p2());
    }
    return path;
}

QPainterPath tick()
{
    QPainterPath path;
    path.addEllipse(QPointF(8, 8), 6.3, 6.3);
    path.moveTo(5, 8.3);
    path.lineTo(7.2, 10.4);
    path.lineTo(11.2, 5.9);
    return path;
}

QPainterPath page()
{
    QPainterPath path(QPointF(4.6, 14));
    path.lineTo(4.6, 11.4);
    path.lineTo(3.2, 11.4);
    path.quadTo(1.8, 11.4, 1.8, 10);
    path.lineTo(1.8, 4);
    path.quadTo(1.8, 2.6, 3.2, 2.6);
    path.lineTo(12.8, 2.6);
    path.quadTo(14.2, 2.6, 14.2, 4);
    path.lineTo(14.2, 10);
    path.quadTo(14.2, 11.4, 12.8, 11.4);
    path.lineTo(7.4, 11.4);
    path.closeSubpath();
    return path;
}

QPainterPath feed()
{
    QPainterPath path;
    path.addEllipse(QPointF(3.8, 12.2), 1, 1);
    for (const qreal radius : {5.2, 9.4}) {
        const QRectF circle(3 - radius, 13 - radius, 2 * radius, 2 * radius);
        path.arcMoveTo(circle, 90);
        path.arcTo(circle, 90, -90);
    }
    return path;
}

QPainterPath club()
{
    QPainterPath path;
    path.addEllipse(QPointF(5.8, 5.4), 2.3, 2.3);
    path.moveTo(1.6, 13);
    path.cubicTo(1.8, 8.6, 9.8, 8.6, 10, 13);
    path.moveTo(10.2, 3.3);
    path.cubicTo(12.6, 3.6, 12.6, 7.2, 10.2, 7.5);
    path.moveTo(11.6, 9.8);
    path.cubicTo(13.4, 10.2, 14.3, 11.4, 14.4, 13);
    return path;
}

QPainterPath help()
{
    QPainterPath path;
    path.addEllipse(QPointF(8, 8), 6.3, 6.3);
    path.moveTo(6, 6.4);
    path.cubicTo(6.1, 3.9, 10.1, 4, 10, 6.4);
    path.cubicTo(9.9, 7.8, 8, 7.8, 8, 9.4);
    path.moveTo(8, 11.6);
    path.lineTo(8, 11.7);
    return path;
}

QPainterPath add()
{
    QPainterPath path(QPointF(8, 3));
    path.lineTo(8, 13);
    path.moveTo(3, 8);
    path.lineTo(13, 8);
    return path;
}

QPainterPath remove()
{
    QPainterPath path(QPointF(2.6, 4.4));
    path.lineTo(13.4, 4.4);
    path.moveTo(6, 4.2);
    path.lineTo(6.4, 2.4);
    path.lineTo(9.6, 2.4);
    path.lineTo(10, 4.2);
    path.moveTo(4, 4.6);
    path.lineTo(4.6, 13.6);
    path.lineTo(11.4, 13.6);
    path.lineTo(12, 4.6);
    return path;
}

QPainterPath undo()
{
    QPainterPath path(QPointF(5.4, 2.6));
    path.lineTo(2.2, 5.8);
    path.lineTo(5.4, 9);
    path.moveTo(2.2, 5.8);
    path.lineTo(9.6, 5.8);
    path.cubicTo(14.8, 5.8, 14.8, 13.2, 9.6, 13.2);
    path.lineTo(5.6, 13.2);
    return path;
}

QPainterPath history()
{
    QPainterPath path;
    path.addEllipse(QPointF(8, 8), 6.3, 6.3);
    path.moveTo(8, 4.4);
    path.lineTo(8, 8);
    path.lineTo(10.6, 9.6);
    return path;
}

QPainterPath zoomOut()
{
    QPainterPath path(QPointF(3, 8));
    path.lineTo(13, 8);
    return path;
}

QPainterPath fit()
{
    QPainterPath path(QPointF(1.8, 8));
    path.lineTo(14.2, 8);
    path.moveTo(4.8, 5);
    path.lineTo(1.8, 8);
    path.lineTo(4.8, 11);
    path.moveTo(11.2, 5);
    path.lineTo(14.2, 8);
    path.lineTo(11.2, 11);
    return path;
}

QPainterPath noKeyboard()
{
    QPainterPath path = keyboard();
    path.moveTo(2.4, 14.4);
    path.lineTo(13.6, 1.6);
    return path;
}

QPainterPath noService()
{
    QPainterPath path;
    const QRectF circle(2.4, 2.4, 11.2, 11.2);
    path.arcMoveTo(circle, 30);
    path.arcTo(circle, 30, 290);
    path.moveTo(13.3, 1.9);
    path.lineTo(13.1, 5.4);
    path.lineTo(9.7, 5.1);
    return path;
}

QPainterPath pathOf(Symbol symbol)
{
    switch (symbol) {
    case Symbol::keyboard: return keyboard();
    case Symbol::profiles: return profiles();
    case Symbol::macro: return macro();
    case Symbol::light: return light();
    case Symbol::tick: return tick();
    case Symbol::page: return page();
    case Symbol::feed: return feed();
    case Symbol::club: return club();
    case Symbol::help: return help();
    case Symbol::undo: return undo();
    case Symbol::history: return history();
    case Symbol::add: return add();
    case Symbol::remove: return remove();
    case Symbol::zoomOut: return zoomOut();
    case Symbol::fit: return fit();
    case Symbol::noKeyboard: return noKeyboard();
    case Symbol::noService: break;
    }
    return noService();
}

QColor colorOf(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected)
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
}

class SymbolEngine : public QIconEngine
{
public:
    SymbolEngine(Symbol symbol, const QString &themeName) : mSymbol(symbol), mThemeName(themeName) {}

    QIconEngine *clone() const override { return new SymbolEngine(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QIcon theme = mThemeName.isEmpty() ? QIcon() : QIcon::fromTheme(mThemeName);
        if (!theme.isNull()) {
            theme.paint(painter, rect, Qt::AlignCenter, mode, state);
            return;
        }
        const qreal side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(side, side) / 2);
        painter->scale(side / gridSize, side / gridSize);
        painter->setPen(QPen(colorOf(mode), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(pathOf(mSymbol));
        painter->restore();
    }

    // The base class would fill the ground.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

private:
    Symbol mSymbol;
    QString mThemeName; // empty: always the drawing
};

} // namespace

QIcon Symbols::icon(Symbol symbol)
{
    return icon(symbol, {});
}

QIcon Symbols::icon(Symbol symbol, const QString &themeName)
{
    return QIcon(new SymbolEngine(symbol, themeName));
}
