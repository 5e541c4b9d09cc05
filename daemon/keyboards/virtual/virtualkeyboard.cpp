// SPDX-License-Identifier: MIT
#include "daemon/keyboards/virtual/virtualkeyboard.h"

#include "daemon/system/deadlinetimer.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr uint greatestButton = 255;

bool isKeyOrButton(uint usagePage, uint usage)
{
    if (usagePage == HidUsage::keyboardPage)
        return usage >= HidUsage::firstKey && usage <= HidUsage::lastKey;
    if (usagePage == HidUsage::consumerPage)
        return usage == HidUsage::brightnessUp || usage == HidUsage::brightnessDown;
    return usagePage == HidUsage::buttonPage && usage >= 1 && usage <= greatestButton;
}

HidUsage hidUsage(uint usagePage, uint usage)
{
    return {static_cast<quint16>(usagePage), static_cast<quint16>(usage)};
}

} // namespace

VirtualKeyboard::VirtualKeyboard(QObject *parent)
    : Keyboard(parent), mNow(DeadlineTimer::now), mChannel(*this), mKeys(mChannel)
{
    connectLight();
}

VirtualKeyboard::VirtualKeyboard(KeyClock clock, QObject *parent)
    : Keyboard(parent), mNow(clock.now), mChannel(*this), mKeys(mChannel, std::move(clock))
{
    connectLight();
}

void VirtualKeyboard::connectLight()
{
    connect(&mLight, &TimedLight::changed, this, &VirtualKeyboard::lightChanged);
}

QString VirtualKeyboard::firmwareVersion() const
{
    return u"1.00"_s;
}

void VirtualKeyboard::showCapture(const QString &client)
{
    if (std::exchange(mShownCapture, client) != client)
        Q_EMIT captureChanged(client);
}

void VirtualKeyboard::send(HidUsage usage, bool isDown)
{
    mSent.removeOne(usage);
    if (isDown)
        mSent += usage;
    Q_EMIT sent(usage.page, usage.usage, isDown);
}

/// `done` if the keyboard accepts calls.
VirtualKeyboard::Result VirtualKeyboard::readiness() const
{
    if (!mKeys.isStarted())
        return Result::notInUse;
    return mIsAttached ? Result::done : Result::notAttached;
}

VirtualKeyboard::Result VirtualKeyboard::press(uint usagePage, uint usage)
{
    if (const Result result = readiness(); result != Result::done)
        return result;
    if (!isKeyOrButton(usagePage, usage))
        return Result::noSuchKey;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.contains(key))
        return Result::done;
    mPressed += key;
    if (key.page == HidUsage::consumerPage)
        return changeBrightness(key.usage == HidUsage::brightnessUp ? 1 : -1);
    announce(key, true);
    return Result::done;
}

VirtualKeyboard::Result VirtualKeyboard::release(uint usagePage, uint usage)
{
    if (!mIsAttached)
        return Result::notAttached;
    if (!isKeyOrButton(usagePage, usage))
        return Result::noSuchKey;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.removeOne(key))
        announce(key, false);
    return Result::done;
}

void VirtualKeyboard::releaseAll()
{
    while (!mPressed.isEmpty())
        announce(mPressed.takeLast(), false);
}

void VirtualKeyboard::announce(HidUsage key, bool isDown)
{
    if (key.page != HidUsage::consumerPage) // the keyboard's own: the daemon sees their effect, not the keys
        Q_EMIT mChannel.keyChanged(key, isDown, mNow());
}

VirtualKeyboard::Result VirtualKeyboard::pressGameMode()
{
    if (const Result result = readiness(); result != Result::done)
        return result;
    Q_EMIT gameModePressed();
    return Result::done;
}

VirtualKeyboard::Result VirtualKeyboard::setBrightness(int level)
{
    if (level < Backlight::minimumBrightness || level > Backlight::maximumBrightness)
        return Result::noSuchBrightness;
    if (const Result result = readiness(); result != Result::done)
        return result;
    Q_EMIT brightnessChosen(level);
    return Result::done;
}

VirtualKeyboard::Result VirtualKeyboard::changeBrightness(int steps)
{
    return setBrightness(
        std::clamp(shownBrightness() + steps, Backlight::minimumBrightness, Backlight::maximumBrightness));
}

VirtualKeyboard::Result VirtualKeyboard::pressMacroKey()
{
    if (const Result result = readiness(); result != Result::done)
        return result;
    Q_EMIT macroKeyPressed();
    return Result::done;
}

void VirtualKeyboard::attach()
{
    if (std::exchange(mIsAttached, true))
        return;
    mLight.setPowered(true);
    Q_EMIT attachedChanged(true);
}

void VirtualKeyboard::remove()
{
    if (!std::exchange(mIsAttached, false))
        return;
    mPressed.clear();
    Q_EMIT mChannel.keysLost();
    mLight.setPowered(false);
    Q_EMIT attachedChanged(false);
}
