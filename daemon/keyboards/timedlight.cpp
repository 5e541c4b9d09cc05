// SPDX-License-Identifier: MIT
#include "daemon/keyboards/timedlight.h"

#include <algorithm>

namespace {

Backlight::Time machineTime()
{
    return std::chrono::duration_cast<Backlight::Time>(std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

TimedLight::TimedLight(QObject *parent) : TimedLight(machineTime, parent) {}

TimedLight::TimedLight(Clock clock, QObject *parent) : QObject(parent), mClock(std::move(clock))
{
    mTimer.setSingleShot(true);
    mTimer.callOnTimeout(this, &TimedLight::look);
}

Backlight::Color TimedLight::color() const
{
    return mIsPowered ? Backlight::colorAt(mSettings, mClock()) : Backlight::Color();
}

std::optional<Backlight::Time> TimedLight::sleep() const
{
    return mTimer.isActive() ? std::optional(mTimer.intervalAsDuration()) : std::nullopt;
}

void TimedLight::show(const Backlight::Settings &settings)
{
    if (settings == mSettings)
        return; // every change of the document calls this
    mSettings = settings;
    look();
}

void TimedLight::setPowered(bool isPowered)
{
    mIsPowered = isPowered;
    look();
}

void TimedLight::look()
{
    const Backlight::Time now = mClock();
    const std::optional<Backlight::Time> next =
        mIsPowered ? Backlight::nextChange(mSettings, now) : std::optional<Backlight::Time>();
    if (next)
        mTimer.start(std::max(*next - now, Backlight::Time(1)));
    else
        mTimer.stop();
    const Backlight::Color shown = color();
    if (shown == mAnnounced)
        return;
    mAnnounced = shown;
    Q_EMIT changed(shown);
}
