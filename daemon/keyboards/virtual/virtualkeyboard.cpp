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
    mChannel.tap().addKey(KeyTap::Side::computer, usage, isDown);
    mSent.removeOne(usage);
    if (isDown)
        mSent += usage;
    Q_EMIT sent(usage.page, usage.usage, isDown);
}

/// Succeeds if the keyboard accepts calls.
VirtualKeyboard::Outcome VirtualKeyboard::readiness() const
{
    if (!mKeys.isStarted())
        return Refusal::notInUse;
    if (!mIsAttached)
        return Refusal::notAttached;
    return {};
}

VirtualKeyboard::Outcome VirtualKeyboard::press(uint usagePage, uint usage)
{
    if (const Outcome ready = readiness(); !ready)
        return ready;
    if (!isKeyOrButton(usagePage, usage))
        return Refusal::noSuchKey;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.contains(key))
        return {};
    mPressed += key;
    if (key.page == HidUsage::consumerPage)
        mChannel.tap().addKey(KeyTap::Side::keyboard, key, true);
    if (key.page == HidUsage::consumerPage)
        return changeBrightness(key.usage == HidUsage::brightnessUp ? 1 : -1);
    announce(key, true);
    return {};
}

VirtualKeyboard::Outcome VirtualKeyboard::release(uint usagePage, uint usage)
{
    if (!mIsAttached)
        return Refusal::notAttached;
    if (!isKeyOrButton(usagePage, usage))
        return Refusal::noSuchKey;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.removeOne(key))
        announce(key, false);
    return {};
}

void VirtualKeyboard::releaseAll()
{
    while (!mPressed.isEmpty())
        announce(mPressed.takeLast(), false);
}

void VirtualKeyboard::announce(HidUsage key, bool isDown)
{
    mChannel.tap().addKey(KeyTap::Side::keyboard, key, isDown);
    if (key.page != HidUsage::consumerPage) // the keyboard's own: the daemon sees their effect, not the keys
        mChannel.keyChanged(key, isDown, mNow(), key);
}

VirtualKeyboard::Outcome VirtualKeyboard::pressGameMode()
{
    if (const Outcome ready = readiness(); !ready)
        return ready;
    Q_EMIT gameModePressed();
    return {};
}

VirtualKeyboard::Outcome VirtualKeyboard::setBrightness(int level)
{
    if (level < Backlight::minimumBrightness || level > Backlight::maximumBrightness)
        return Refusal::noSuchBrightness;
    if (const Outcome ready = readiness(); !ready)
        return ready;
    Q_EMIT brightnessChosen(level);
    return {};
}

VirtualKeyboard::Outcome VirtualKeyboard::changeBrightness(int steps)
{
    return setBrightness(
        std::clamp(shownBrightness() + steps, Backlight::minimumBrightness, Backlight::maximumBrightness));
}

VirtualKeyboard::Outcome VirtualKeyboard::pressMacroKey()
{
    if (const Outcome ready = readiness(); !ready)
        return ready;
    Q_EMIT mChannel.macroKeyPressed(mNow());
    return {};
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
