// SPDX-License-Identifier: MIT
#include "platform/contrast.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

qreal linearLight(qreal channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor &color)
{
    return 0.2126 * linearLight(color.redF()) + 0.7152 * linearLight(color.greenF())
           + 0.0722 * linearLight(color.blueF());
}

qreal leastRatio(const QColor &color, std::initializer_list<QColor> backgrounds)
{
    qreal least = std::numeric_limits<qreal>::infinity();
    for (const QColor &background : backgrounds)
        least = std::min(least, Contrast::ratio(color, background));
    return least;
}

} // namespace

qreal Contrast::ratio(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor Contrast::readable(const QColor &color, std::initializer_list<QColor> backgrounds, qreal least)
{
    constexpr int steps = 20;
    for (int step = 0; step <= steps; ++step) {
        const qreal share = qreal(step) / steps;
        for (const QColor &end : {QColor(Qt::black), QColor(Qt::white)}) {
            const QColor changed = mixed(color, end, share);
            if (leastRatio(changed, backgrounds) >= least)
                return changed;
        }
    }
    return leastRatio(Qt::black, backgrounds) > leastRatio(Qt::white, backgrounds) ? Qt::black : Qt::white;
}

QColor Contrast::mixed(const QColor &a, const QColor &b, qreal shareOfB)
{
    const auto mix = [shareOfB](int from, int to) { return static_cast<int>(from + (to - from) * shareOfB); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}
