// SPDX-License-Identifier: MIT
// Reads the "DeviceSettings" of the settings document: the settings that apply to the keyboard as a whole. A value over
// a shared dictionary, cheap to make and to copy; any thread.
#pragma once

#include <QVariantMap>

class DeviceSettings
{
public:
    explicit DeviceSettings(QVariantMap dictionary) : mDictionary(std::move(dictionary)) {}

    /// "ActiveProfile", read by PlistNumbers::integerValue(); 0 if it is absent or not a number. There may be no
    /// profile with this index.
    [[nodiscard]] int activeProfileIndex() const;
    /// Whether "GameMode" is a number other than 0, or true.
    [[nodiscard]] bool isGameModeOn() const;
    /// Whether "ProfileOSDOn" is a number other than 0, or true. In a document that the daemon has completed, this is
    /// the setting of the active profile.
    [[nodiscard]] bool isProfileOsdOn() const;
    /// "LastMacroID", the greatest "macroID" that the daemon has assigned; 0 if it is absent or not a number.
    [[nodiscard]] int lastMacroId() const;

    [[nodiscard]] QVariantMap dictionary() const { return mDictionary; }

private:
    QVariantMap mDictionary;
};
