// SPDX-License-Identifier: MIT
#include "tests/support/paintedtexts.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace {

class TextEngine : public QPaintEngine
{
public:
    TextEngine() : QPaintEngine(AllFeatures) {}

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState &) override {}
    void drawRects(const QRect *, int) override {}
    void drawRects(const QRectF *, int) override {}
    void drawLines(const QLine *, int) override {}
    void drawLines(const QLineF *, int) override {}
    void drawEllipse(const QRect &) override {}
    void drawEllipse(const QRectF &) override {}
    void drawPath(const QPainterPath &) override {}
    void drawPoints(const QPoint *, int) override {}
    void drawPoints(const QPointF *, int) override {}
    void drawPolygon(const QPoint *, int, PolygonDrawMode) override {}
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void drawTiledPixmap(const QRectF &, const QPixmap &, const QPointF &) override {}
    void drawImage(const QRectF &, const QImage &, const QRectF &, Qt::ImageConversionFlags) override {}

    void drawTextItem(const QPointF &start, const QTextItem &item) override
    {
        const QRectF local(start.x(), start.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        const QRectF place = painter()->deviceTransform().mapRect(local);
        // An underlined letter is an item of its own, and so is each script.
        const bool continues = !texts.isEmpty() && qAbs(texts.last().place.right() - place.left()) < 1
                               && qAbs(texts.last().place.center().y() - place.center().y()) < 2;
        if (continues) {
            texts.last().text += item.text();
            texts.last().place |= place;
        } else {
            texts.append({item.text(), place});
        }
    }

    QList<PaintedText> texts;
};

class TextDevice : public QPaintDevice
{
public:
    explicit TextDevice(const QSize &size) : mSize(size) {}

    QPaintEngine *paintEngine() const override { return &mEngine; }
    [[nodiscard]] const QList<PaintedText> &texts() const { return mEngine.texts; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmWidth: return mSize.width();
        case PdmHeight: return mSize.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return dotsPerInch;
        case PdmDepth: return 32;
        case PdmNumColors: return 1 << 24;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return int(devicePixelRatioFScale());
        default: return 0;
        }
    }

private:
    QSize mSize;
    mutable TextEngine mEngine;
};

} // namespace

QList<PaintedText> paintedTexts(QWidget *window)
{
    TextDevice device(window->size());
    window->render(&device);
    QList<PaintedText> texts = device.texts();
    texts.removeIf([](const PaintedText &painted) { return painted.text.trimmed().isEmpty(); });
    return texts;
}
