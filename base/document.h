// SPDX-License-Identifier: MIT
// Reads the settings document {"Profiles", "Macros", "DeviceSettings"}, from any source: the daemon, its clients, a
// file that is not checked yet. A value over the shared dictionary, cheap to make and to copy; any thread. The
// functions of base/profilerecord.h and macros/macrorecord.h read the records. The daemon changes the document
// (daemon/settings/settingsdocument.h).
#pragma once

#include "base/devicesettings.h"

#include <QVariantList>
#include <QVariantMap>

class Document
{
public:
    explicit Document(QVariantMap dictionary) : mDictionary(std::move(dictionary)) {}

    /// "Profiles" and "Macros". Empty if absent. The elements are unchecked; profile() and macro() check them.
    [[nodiscard]] QVariantList profiles() const;
    [[nodiscard]] QVariantList macros() const;
    /// The record at `index`; empty if there is no such element, or if it is not a dictionary.
    [[nodiscard]] QVariantMap profile(int index) const;
    [[nodiscard]] QVariantMap macro(int index) const;

    /// "DeviceSettings"; without settings if it is absent or not a dictionary.
    [[nodiscard]] DeviceSettings deviceSettings() const;
    /// As DeviceSettings::activeProfileIndex().
    [[nodiscard]] int activeProfileIndex() const;
    /// The profile record at that index; empty if there is none.
    [[nodiscard]] QVariantMap activeProfile() const;

private:
    QVariantMap mDictionary;
};
