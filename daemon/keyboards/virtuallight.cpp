// SPDX-License-Identifier: MIT
#include "daemon/keyboards/virtuallight.h"

#include <algorithm>

namespace {

Backlight::Time machineTime()
{
    return std::chrono::duration_cast<Backlight::Time>(std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

VirtualLight::VirtualLight(QObject *parent) : VirtualLight(machineTime, parent) {}

VirtualLight::VirtualLight(Clock clock, QObject *parent) : QObject(parent), mClock(std::move(clock))
{
    mTimer.setSingleShot(true);
    mTimer.callOnTimeout(this, &VirtualLight::look);
}

Backlight::Color VirtualLight::color() const
{
    return mIsPowered ? Backlight::colorAt(mSettings, mClock()) : Backlight::Color();
}

std::optional<Backlight::Time> VirtualLight::sleep() const
{
    return mTimer.isActive() ? std::optional(mTimer.intervalAsDuration()) : std::nullopt;
}

void VirtualLight::show(const Backlight::Settings &settings)
{
    if (settings == mSettings)
        return; // every change of the document calls this
    mSettings = settings;
    look();
}

void VirtualLight::setPowered(bool isPowered)
{
    mIsPowered = isPowered;
    look();
}

void VirtualLight::look()
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
