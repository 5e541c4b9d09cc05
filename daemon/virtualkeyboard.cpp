// SPDX-License-Identifier: MIT
#include "daemon/virtualkeyboard.h"

#include "daemon/settingsdocument.h"

#include <QDBusConnection>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char notAttachedError[] = "org.quillkestra.VirtualKeyboard.Error.NotAttached";
constexpr char invalidArgumentsError[] = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr uint greatestButton = 255;

QList<uint> extended(const QList<HidUsage> &usages)
{
    QList<uint> result;
    for (const HidUsage usage : usages)
        result += usage.extended();
    return result;
}

HidUsage hidUsage(uint usagePage, uint usage)
{
    return {static_cast<quint16>(usagePage), static_cast<quint16>(usage)};
}

} // namespace

bool VirtualKeyboard::registerOn(QDBusConnection connection)
{
    return connection.registerObject(u"/VirtualKeyboard"_s, this, QDBusConnection::ExportScriptableContents);
}

QString VirtualKeyboard::firmwareVersion() const
{
    return u"1.00"_s;
}

QList<uint> VirtualKeyboard::pressedKeys() const
{
    return extended(mPressed);
}

QList<uint> VirtualKeyboard::sentKeys() const
{
    return extended(mSent);
}

void VirtualKeyboard::send(HidUsage usage, bool isDown)
{
    mSent.removeOne(usage);
    if (isDown)
        mSent += usage;
    Q_EMIT Sent(usage.page, usage.usage, isDown);
}

void VirtualKeyboard::Press(uint usagePage, uint usage)
{
    if (!checkAttached() || !checkKey(usagePage, usage))
        return;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.contains(key))
        return; // a key that is down cannot go down
    mPressed += key;
    Q_EMIT keyChanged(key, true);
}

void VirtualKeyboard::Release(uint usagePage, uint usage)
{
    if (!checkAttached() || !checkKey(usagePage, usage))
        return;
    const HidUsage key = hidUsage(usagePage, usage);
    if (mPressed.removeOne(key))
        Q_EMIT keyChanged(key, false);
}

void VirtualKeyboard::ReleaseAll()
{
    while (!mPressed.isEmpty())
        Q_EMIT keyChanged(mPressed.takeLast(), false);
}

void VirtualKeyboard::PressGameMode()
{
    if (checkAttached())
        Q_EMIT gameModePressed();
}

void VirtualKeyboard::PressBrightnessUp()
{
    chooseBrightness(std::min(mShownBrightness + 1, SettingsDocument::brightnessMaximum));
}

void VirtualKeyboard::PressBrightnessDown()
{
    chooseBrightness(std::max(mShownBrightness - 1, SettingsDocument::brightnessMinimum));
}

void VirtualKeyboard::SetBrightness(int level)
{
    if (level < SettingsDocument::brightnessMinimum || level > SettingsDocument::brightnessMaximum) {
        (void)fail(invalidArgumentsError, u"no such brightness: %1"_s.arg(level));
        return;
    }
    chooseBrightness(level);
}

void VirtualKeyboard::chooseBrightness(int level)
{
    if (checkAttached())
        Q_EMIT brightnessChosen(level);
}

void VirtualKeyboard::Attach()
{
    if (std::exchange(mIsAttached, true))
        return;
    Q_EMIT attachedChanged(true);
}

void VirtualKeyboard::Remove()
{
    if (!std::exchange(mIsAttached, false))
        return;
    mPressed.clear();
    Q_EMIT attachedChanged(false);
}

bool VirtualKeyboard::fail(const char *errorName, const QString &text) const
{
    if (calledFromDBus())
        sendErrorReply(QLatin1StringView(errorName), text);
    return false;
}

bool VirtualKeyboard::checkAttached() const
{
    return mIsAttached || fail(notAttachedError, u"the keyboard is not attached"_s);
}

bool VirtualKeyboard::checkKey(uint usagePage, uint usage) const
{
    const bool isKey = usagePage == HidUsage::keyboardPage && usage >= HidUsage::firstKey && usage <= HidUsage::lastKey;
    const bool isButton = usagePage == HidUsage::buttonPage && usage >= 1 && usage <= greatestButton;
    return isKey || isButton || fail(invalidArgumentsError, u"no such key: page %1, usage %2"_s.arg(usagePage).arg(usage));
}
