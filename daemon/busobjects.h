// SPDX-License-Identifier: MIT
// The daemon's objects on the bus, apart from its request port. Owned by the DaemonSession; main thread only.
#pragma once

#include "daemon/capture/macrosadaptor.h"
#include "daemon/frontapplication/frontapplicationadaptor.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/keywatchadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/settings/historyadaptor.h"
#include "daemon/settings/settingsadaptor.h"

class BusObjects
{
public:
    /// The parts that the objects show, all of which must outlive them.
    struct Parts
    {
        const SettingsStore &store;
        VirtualKeyboard &virtualKeyboard;
        DeviceSource &devices;
        DeviceChoice &deviceChoice;
        KeyWatch &keyWatch;
        FrontApplicationWatch &frontApplication;
        GnomeShell &gnomeShell;
        const ProfileSwitch &profiles;
        History &history;
        HistoryCalls &historyCalls;
        MacroReplacement &macroReplacement;
        MacroTries &macroTries;
        CaptureCommands &captures;
    };

    explicit BusObjects(const Parts &parts);

    /// False if one of the objects cannot be put on `bus`.
    [[nodiscard]] bool registerOn(const QDBusConnection &bus);

    /// Must be called after each new problem of the store.
    void reportSettingsProblem() { mSettings.reportProblem(); }

private:
    SettingsObject mSettings;
    VirtualKeyboardObject mVirtualKeyboard;
    DevicesObject mDevices;
    KeyWatchObject mKeyWatch;
    FrontApplicationObject mFrontApplication;
    HistoryObject mHistory;
    MacrosObject mMacros;
};
