// SPDX-License-Identifier: MIT
#include "daemon/virtualkeyboard.h"

#include "daemon/settingsdocument.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace SettingsDocument;

namespace {

constexpr uint greatestButton = 255;

bool isKeyOrButton(uint usagePage, uint usage)
{
    if (usagePage == HidUsage::keyboardPage)
        return usage >= HidUsage::firstKey && usage <= HidUsage::lastKey;
    return usagePage == HidUsage::buttonPage && usage >= 1 && usage <= greatestButton;
}

HidUsage hidUsage(uint usagePage, uint usage)
{
    return {static_cast<quint16>(usagePage), static_cast<quint16>(usage)};
}

} // namespace

QString VirtualKeyboard::firmwareVersion() const
{
    return u"1.00"_s;
}

void VirtualKeyboard::send(HidUsage usage, bool isDown)
{
    mSent.removeOne(usage);
    if (isDown)
        mSent += usage;
    Q_EMIT sent(usage.page, usage.usage, isDown);
}

VirtualKeyboard::Result VirtualKeyboard::press(uint usagePage, uint usage)
{
    if (!mIsAttached)
        return Result::notAttached;
    if (!isKeyOrButton(usagePage, usage))
        return Result::noSuchKey;
    const HidUsage key = hidUsage(usagePage, usage);
    if (!mPressed.contains(key)) {
        mPressed += key;
        Q_EMIT keyChanged(key, true);
    }
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
        Q_EMIT keyChanged(key, false);
    return Result::done;
}

void VirtualKeyboard::releaseAll()
{
    while (!mPressed.isEmpty())
        Q_EMIT keyChanged(mPressed.takeLast(), false);
}

VirtualKeyboard::Result VirtualKeyboard::pressGameMode()
{
    if (!mIsAttached)
        return Result::notAttached;
    Q_EMIT gameModePressed();
    return Result::done;
}

VirtualKeyboard::Result VirtualKeyboard::setBrightness(int level)
{
    if (level < brightnessMinimum || level > brightnessMaximum)
        return Result::noSuchBrightness;
    if (!mIsAttached)
        return Result::notAttached;
    Q_EMIT brightnessChosen(level);
    return Result::done;
}

VirtualKeyboard::Result VirtualKeyboard::changeBrightness(int steps)
{
    return setBrightness(std::clamp(mShownBrightness + steps, brightnessMinimum, brightnessMaximum));
}

void VirtualKeyboard::attach()
{
    if (!std::exchange(mIsAttached, true))
        Q_EMIT attachedChanged(true);
}

void VirtualKeyboard::remove()
{
    if (!std::exchange(mIsAttached, false))
        return;
    mPressed.clear();
    Q_EMIT attachedChanged(false);
}
