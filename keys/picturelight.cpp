// SPDX-License-Identifier: MIT
#include "keys/picturelight.h"

#include <QLinearGradient>
#include <QPainter>
#include <QTimerEvent>

namespace {

constexpr int stepMs = 600;          // each step paints all keys: slow enough to cost nothing
constexpr qreal fullGlow = 0.85;     // opacity at full brightness
constexpr qreal margin = 0.12;       // around the glow, in key units
constexpr qreal cornerRadius = 0.25; // likewise
constexpr int gradientStops = 12;

/// The same clock as the daemon's, so that picture and keyboard go together.
Backlight::Time now()
{
    return std::chrono::duration_cast<Backlight::Time>(std::chrono::steady_clock::now().time_since_epoch());
}

/// The colour of the light at full brightness: how bright it is shows as opacity.
QColor hueAt(Backlight::Settings settings, Backlight::Time time)
{
    settings.brightness = Backlight::maximumBrightness;
    const Backlight::Color color = Backlight::colorAt(settings, time);
    return {color.red, color.green, color.blue};
}

} // namespace

void PictureLight::show(const Backlight::Settings &settings)
{
    if (settings == mSettings)
        return;
    mSettings = settings;
    startOrStop();
    Q_EMIT changed();
}

void PictureLight::setSeen(bool isSeen)
{
    mIsSeen = isSeen;
    startOrStop();
}

void PictureLight::setMotionAllowed(bool isAllowed)
{
    if (isAllowed == mIsMotionAllowed)
        return;
    mIsMotionAllowed = isAllowed;
    startOrStop();
    Q_EMIT changed();
}

void PictureLight::startOrStop()
{
    const bool moves = mIsSeen && mIsMotionAllowed && Backlight::nextChange(mSettings, {}).has_value();
    if (moves && !mTimer.isActive())
        mTimer.start(stepMs, this);
    else if (!moves)
        mTimer.stop();
}

void PictureLight::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == mTimer.timerId())
        Q_EMIT changed();
    else
        QObject::timerEvent(event);
}

void PictureLight::paint(QPainter &painter, const QRectF &place, qreal unit) const
{
    if (Backlight::colorAt(mSettings, {}).isOff())
        return;
    const bool cycles = Backlight::nextChange(mSettings, {}).has_value();
    const qreal inset = margin * unit;
    const QRectF glow = place.adjusted(inset, inset, -inset, -inset);
    QLinearGradient spectrum(glow.topLeft(), glow.topRight());
    for (int stop = 0; stop <= gradientStops; ++stop)
        spectrum.setColorAt(qreal(stop) / gradientStops,
                            hueAt(mSettings, Backlight::spectrumPeriod * stop / gradientStops));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(fullGlow * mSettings.brightness / Backlight::maximumBrightness);
    painter.setPen(Qt::NoPen);
    painter.setBrush(cycles && !mIsMotionAllowed ? QBrush(spectrum) : QBrush(hueAt(mSettings, now())));
    painter.drawRoundedRect(glow, cornerRadius * unit, cornerRadius * unit);
    painter.restore();
}
