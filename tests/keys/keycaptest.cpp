// SPDX-License-Identifier: MIT
// The contrast of drawn keycaps in every state, and the distance of their marks from their legends. Everything is
// measured on the drawn pixels.
#include "keys/keycap.h"
#include "tests/support/testmain.h"

#include "keys/keylegend.h"
#include "keys/picturelight.h"
#include "tests/support/darkpalette.h"
#include "tests/support/drawncontrols.h"

#include <QHash>
#include <QPainter>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int unit = 88;   // the strokes of the letters then reach their full colour
constexpr int margin = 40; // of the case around the key
constexpr int extent = unit + 2 * margin;
constexpr double leastTextContrast = 4.5; // WCAG 2, 1.4.3
constexpr double leastShapeContrast = 3;  // WCAG 2, 1.4.11

struct Theme
{
    const char *name;
    QPalette palette;
};

QList<Theme> themes()
{
    const QPalette light = std::unique_ptr<QStyle>(QStyleFactory::create(u"Fusion"_s))->standardPalette();
    QList<Theme> result{{"light", light}, {"dark", darkPalette()}};
    for (const QColor &accent : {QColor(0xf5c211), QColor(0x1a1a1a), QColor(0xe01b24)})
        for (const QPalette &base : {light, darkPalette()}) {
            QPalette palette = base;
            palette.setColor(QPalette::Highlight, accent);
            const bool isDark = palette.color(QPalette::Window).lightness() < 128;
            result << Theme{isDark ? "dark with another accent" : "light with another accent", palette};
        }
    return result;
}

struct Cap
{
    KeyLook look;
    QString legend;
    QString upperLegend;
};

const QList<Cap> &caps()
{
    static const QList<Cap> all{{KeyLook::letter, u"M"_s, {}},   {KeyLook::letter, u"8"_s, u"*"_s},
                                {KeyLook::word, u"enter"_s, {}}, {KeyLook::function, u"F12"_s, {}},
                                {KeyLook::extra, u"M1"_s, {}},   {KeyLook::arrowUp, {}, {}},
                                {KeyLook::eject, {}, {}}};
    return all;
}

// Every combination of the properties that change the colours of a cap. A selected key is never drawn as mapped, and a
// key that cannot be selected has none of the other states.
QList<KeycapState> states(const Cap &cap)
{
    QList<KeycapState> all;
    for (const KeyMark mark : {KeyMark::none, KeyMark::macro, KeyMark::disabled})
        for (int bits = 0; bits < 128; ++bits) {
            KeycapState state{.look = cap.look, .legend = cap.legend, .upperLegend = cap.upperLegend, .mark = mark};
            state.isEnabled = bits & 1;
            state.isHighlighted = bits & 2;
            state.isSelected = bits & 4;
            state.isHovered = bits & 8;
            state.isDown = bits & 16;
            state.isSelectable = !(bits & 32);
            state.isFound = bits & 64;
            const bool isPossible = state.isSelectable ? !(state.isHighlighted && state.isSelected) : (bits & ~33) == 0;
            if (isPossible)
                all << state;
        }
    return all;
}

QString described(const Theme &theme, const KeycapState &state)
{
    return u"%1, \"%2\"%3%4%5%6%7%8, mark %9"_s.arg(
        QLatin1StringView(theme.name), state.legend, state.isEnabled ? u""_s : u", disabled"_s,
        state.isHighlighted ? u", mapped"_s : u""_s, state.isSelected ? u", selected"_s : u""_s,
        state.isHovered ? u", hovered"_s : u""_s, state.isDown ? u", down"_s : u""_s,
        state.isSelectable ? u""_s : u", fixed"_s,
        QString::number(static_cast<int>(state.mark)) + (state.isFound ? u", found"_s : u""_s));
}

// The keycap on the case, lit by `light`.
QImage drawnKey(const KeycapState &state, const QPalette &palette, const Backlight::Settings &light = {})
{
    QImage image(extent, extent, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(image.rect(), palette.color(QPalette::Window));
    const QRect key(margin, margin, unit, unit);
    paintKeyboardCase(painter, QRectF(-unit, -unit, 4 * unit, 4 * unit), unit, palette, state.isEnabled);
    if (state.isEnabled) {
        PictureLight pictureLight;
        pictureLight.show(light);
        pictureLight.paint(painter, {key}, unit);
    }
    paintKeycap(painter, key, unit, state, palette);
    return image;
}

// The greatest contrast of a colour that `image` has at some places with the colour of `ground` there. Ignores colours
// of only a few pixels, which are not strokes.
double contrastOfDrawing(const QImage &image, const QImage &ground)
{
    constexpr int leastPixels = 4;
    QHash<std::pair<QRgb, QRgb>, int> pairs;
    for (int y = 0; y < image.height(); ++y) {
        const auto *drawnLine = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto *groundLine = reinterpret_cast<const QRgb *>(ground.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (drawnLine[x] != groundLine[x])
                ++pairs[{drawnLine[x], groundLine[x]}];
    }
    double greatest = 1;
    for (auto pair = pairs.cbegin(); pair != pairs.cend(); ++pair)
        if (pair.value() >= leastPixels)
            greatest = std::max(greatest, contrastRatio(QColor(pair.key().first), QColor(pair.key().second)));
    return greatest;
}

// The colours on the way from the case to the face of the key, and those of them that the ring changes.
struct Crossing
{
    QList<QColor> ring;
    QColor outside;
    QColor inside;
};

Crossing crossing(const QImage &selected, const QImage &plain, const QPoint &start, const QPoint &step, int length)
{
    Crossing result;
    int last = 0;
    int first = -1;
    for (int index = 0; index < length; ++index) {
        const QPoint at = start + step * index;
        if (selected.pixel(at) == plain.pixel(at))
            continue;
        result.ring << selected.pixelColor(at);
        last = index;
        if (first < 0)
            first = index;
    }
    result.outside = selected.pixelColor(start + step * (first - 1));
    result.inside = selected.pixelColor(start + step * (last + 1));
    return result;
}

double greatestContrast(const QList<QColor> &colors, const QColor &with)
{
    double greatest = 1;
    for (const QColor &color : colors)
        greatest = std::max(greatest, contrastRatio(color, with));
    return greatest;
}

} // namespace

class KeycapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void legendsContrastWithTheirCaps();
    void ringContrastsWithCapAndSurroundings();
    void keyThatWasFoundContrastsWithOthers();
    void focusFrameContrastsWithTheCap();
    void outlineOfFixedKeysContrastsWithTheCase();
    void markNeverCoversTheLegend_data();
    void markNeverCoversTheLegend();
    void onlyALegendAtTheMarkBecomesNarrower();
};

void KeycapTest::legendsContrastWithTheirCaps()
{
    QStringList faint;
    int compared = 0;
    for (const Theme &theme : themes())
        for (const Cap &cap : caps())
            for (const KeycapState &state : states(cap)) {
                KeycapState blank = state;
                blank.look = state.look == KeyLook::extra ? KeyLook::extra : KeyLook::blank;
                blank.legend.clear();
                blank.upperLegend.clear();
                const double contrast =
                    contrastOfDrawing(drawnKey(state, theme.palette), drawnKey(blank, theme.palette));
                ++compared;
                if (contrast < leastTextContrast)
                    faint << u"%1: %2"_s.arg(described(theme, state)).arg(contrast);
            }
    QVERIFY(compared > 1000);
    QVERIFY2(faint.isEmpty(),
             qPrintable(u"%1 of %2\n"_s.arg(faint.size()).arg(compared) + faint.mid(0, 40).join(u'\n')));
}

void KeycapTest::ringContrastsWithCapAndSurroundings()
{
    QList<Backlight::Settings> lights(1);
    lights[0].isOn = false;
    for (const QColor &color : {QColor(Qt::white), QColor(Qt::red), QColor(Qt::blue), QColor(Qt::green),
                                QColor(Qt::yellow), QColor(0x80, 0x80, 0x80)}) {
        Backlight::Settings light;
        light.isOn = true;
        light.brightness = Backlight::maximumBrightness;
        light.color = {static_cast<quint8>(color.red()), static_cast<quint8>(color.green()),
                       static_cast<quint8>(color.blue())};
        lights << light;
    }
    QStringList faint;
    int compared = 0;
    for (const Theme &theme : themes())
        for (const Cap &cap : caps())
            for (KeycapState state : states(cap)) {
                if (!state.isSelected)
                    continue;
                for (const Backlight::Settings &light : std::as_const(lights)) {
                    state.isSelected = true;
                    const QImage selected = drawnKey(state, theme.palette, light);
                    state.isSelected = false;
                    const QImage plain = drawnKey(state, theme.palette, light);
                    // From the left, through the middle of the cap.
                    const Crossing way =
                        crossing(selected, plain, QPoint(0, margin + unit / 2), QPoint(1, 0), margin + unit / 8);
                    ++compared;
                    if (way.ring.isEmpty() || greatestContrast(way.ring, way.outside) < leastShapeContrast
                        || greatestContrast(way.ring, way.inside) < leastShapeContrast)
                        faint << described(theme, state)
                                     + u": %1 outside, %2 inside"_s.arg(greatestContrast(way.ring, way.outside))
                                           .arg(greatestContrast(way.ring, way.inside));
                }
            }
    QVERIFY(compared > 1000);
    QVERIFY2(faint.isEmpty(),
             qPrintable(u"%1 of %2\n"_s.arg(faint.size()).arg(compared) + faint.mid(0, 40).join(u'\n')));
}

void KeycapTest::keyThatWasFoundContrastsWithOthers()
{
    for (const Theme &theme : themes())
        for (const Cap &cap : caps())
            for (KeycapState state : states(cap)) {
                if (!state.isSelectable || !state.isEnabled || state.isFound)
                    continue;
                const QImage plain = drawnKey(state, theme.palette);
                state.isFound = true;
                const double contrast = contrastOfDrawing(drawnKey(state, theme.palette), plain);
                QVERIFY2(contrast >= leastShapeContrast,
                         qPrintable(u"%1: %2"_s.arg(described(theme, state)).arg(contrast)));
            }
}

void KeycapTest::focusFrameContrastsWithTheCap()
{
    for (const Theme &theme : themes())
        for (const Cap &cap : caps())
            for (KeycapState state : states(cap)) {
                if (!state.isSelectable || !state.isEnabled)
                    continue;
                const QImage plain = drawnKey(state, theme.palette);
                state.hasFocus = true;
                const double contrast = contrastOfDrawing(drawnKey(state, theme.palette), plain);
                QVERIFY2(contrast >= leastShapeContrast,
                         qPrintable(u"%1: %2"_s.arg(described(theme, state)).arg(contrast)));
            }
}

void KeycapTest::outlineOfFixedKeysContrastsWithTheCase()
{
    for (const Theme &theme : themes()) {
        const KeycapState fixed{.look = KeyLook::blank, .isSelectable = false};
        QImage bare(extent, extent, QImage::Format_RGB32);
        QPainter painter(&bare);
        painter.fillRect(bare.rect(), theme.palette.color(QPalette::Window));
        paintKeyboardCase(painter, QRectF(-unit, -unit, 4 * unit, 4 * unit), unit, theme.palette, true);
        painter.end();
        const double contrast = contrastOfDrawing(drawnKey(fixed, theme.palette), bare);
        QVERIFY2(contrast >= leastShapeContrast,
                 qPrintable(u"%1: %2"_s.arg(QLatin1StringView(theme.name)).arg(contrast)));
    }
}

void KeycapTest::markNeverCoversTheLegend_data()
{
    QTest::addColumn<double>("keyUnit");
    for (const double keyUnit : {30.0, 33.4, 44.0, 61.7, 155.0})
        QTest::addRow("%.1f pixels", keyUnit) << keyUnit;
}

void KeycapTest::markNeverCoversTheLegend()
{
    QFETCH(double, keyUnit);
    constexpr int visibleAlpha = 40;
    constexpr qreal ratio = 2;
    struct Print
    {
        QSizeF size;
        KeyLegend legend;
    };
    QList<Print> prints;
    for (const KeyShape &shape : KeyGeometry::shapes())
        prints << Print{shape.place.size(), {shape.look, QString(shape.legend), QString(shape.upperLegend)}};
    // The characters of other keyboards are wider.
    for (const QString &wide : {u"\u00C6"_s, u"\u0416"_s, u"\u3042"_s, u"mmm"_s})
        prints << Print{QSizeF(1, 1), {KeyLook::letter, wide, wide}}
               << Print{QSizeF(1, 1), {KeyLook::letter, wide, {}}};
    for (const Print &print : prints) {
        const QRectF place(QPointF(), print.size * keyUnit);
        const QRectF face = keycapFace(place, keyUnit);
        const QRectF mark = keyMarkPlace(face, keyUnit);
        QVERIFY(face.contains(mark));
        QImage image((place.size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paintKeyLegend(painter, face, keyUnit, print.legend, Qt::black, mark);
        painter.end();
        int inked = 0;
        int covered = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) > visibleAlpha) {
                    ++inked;
                    covered += mark.contains(QPointF(x + 0.5, y + 0.5) / ratio);
                }
        QVERIFY2(covered == 0, qPrintable(u"%1: %2 of %3"_s.arg(print.legend.legend).arg(covered).arg(inked)));
        QCOMPARE(inked > 0, print.legend.look != KeyLook::blank);
    }
}

void KeycapTest::onlyALegendAtTheMarkBecomesNarrower()
{
    const auto print = [](const KeyLegend &legend, bool hasMark) {
        const QRectF place(0, 0, unit, unit);
        const QRectF face = keycapFace(place, unit);
        QImage image(place.size().toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintKeyLegend(painter, face, unit, legend, Qt::black, hasMark ? keyMarkPlace(face, unit) : QRectF());
        return image;
    };
    const KeyLegend plain{KeyLook::letter, u"Q"_s, {}};
    QCOMPARE(print(plain, true), print(plain, false));
    const KeyLegend wide{KeyLook::letter, u"mmm"_s, u"M"_s};
    QVERIFY(print(wide, true) != print(wide, false));
}

QTEST_MAIN(KeycapTest)
#include "keycaptest.moc"
