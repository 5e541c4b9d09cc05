// SPDX-License-Identifier: MIT
#include "keys/picturelight.h"

#include "platform/lowbands.h"
#include "platform/motionpreference.h"
#include "platform/sessionbus.h"

#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QRegion>
#include <QStyle>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int stepMs = 600; // each step paints all keys: slow enough to cost nothing
constexpr int gradientStops = 12;

/// The glow around a key: how far it reaches beyond the key's place, in key units, and its opacity there at full
/// brightness. The rings lie one over the other, which makes the glow fade. They are weak enough for the mark of the
/// selected key to stand out.
struct Ring
{
    qreal reach;
    qreal opacity;
};

constexpr Ring rings[] = {{0.16, 0.1}, {0.09, 0.18}, {0.03, 0.4}};

/// The daemon uses the same clock, so picture and keyboard are in step.
Backlight::Time now()
{
    return std::chrono::duration_cast<Backlight::Time>(std::chrono::steady_clock::now().time_since_epoch());
}

/// Returns the colour of the light at full brightness: the opacity shows the actual brightness.
QColor hueAt(Backlight::Settings settings, Backlight::Time time)
{
    settings.brightness = Backlight::maximumBrightness;
    const Backlight::Color color = Backlight::colorAt(settings, time);
    return {color.red, color.green, color.blue};
}

} // namespace

void PictureLight::follow(QWidget *picture)
{
    mPicture = picture;
    picture->installEventFilter(this);
    connect(this, &PictureLight::changed, picture, qOverload<>(&QWidget::update));
    askForMotion();
}

bool PictureLight::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (!mMotion) {
            mMotion = new MotionPreference(sharedSessionBus(), this);
            connect(mMotion, &MotionPreference::changed, this, &PictureLight::askForMotion);
        }
        setSeen(true);
        break;
    case QEvent::Hide: setSeen(false); break;
    case QEvent::StyleChange: askForMotion(); break;
    default: break;
    }
    return QObject::eventFilter(watched, event);
}

/// A desktop that asks for less motion reports it in its portal or gives animations no time.
void PictureLight::askForMotion()
{
    const bool hasTime = mPicture->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, mPicture) > 0;
    setMotionAllowed(hasTime && (!mMotion || mMotion->isMotionAllowed()));
}

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

void PictureLight::paint(QPainter &painter, const QList<QRect> &keys, qreal unit) const
{
    if (Backlight::colorAt(mSettings, {}).isOff())
        return;
    QRect all;
    for (const QRect &key : keys)
        all |= key;
    const bool cycles = Backlight::nextChange(mSettings, {}).has_value();
    QLinearGradient spectrum(all.topLeft(), all.topRight());
    for (int stop = 0; stop <= gradientStops; ++stop)
        spectrum.setColorAt(qreal(stop) / gradientStops,
                            hueAt(mSettings, Backlight::spectrumPeriod * stop / gradientStops));
    const QBrush brush = cycles && !mIsMotionAllowed ? QBrush(spectrum) : QBrush(hueAt(mSettings, now()));
    painter.save();
    for (const Ring &ring : rings) {
        // One region, because no place between two keys may be painted twice. Plain rectangles, because each step
        // paints all of them.
        const int reach = std::max(1, qRound(ring.reach * unit));
        QRegion glow;
        for (const QRect &key : keys)
            glow |= key.adjusted(-reach, -reach, reach, reach);
        painter.setOpacity(ring.opacity * mSettings.brightness / Backlight::maximumBrightness);
        for (const QRect &part : glow) {
            for (const QRect &band : lowBands(part, painter.device()->devicePixelRatio()))
                painter.fillRect(band, brush);
        }
    }
    painter.restore();
}
