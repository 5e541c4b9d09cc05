// SPDX-License-Identifier: MIT
// All parts of a serving daemon, and the connections between them. Owned by runDaemon(), which calls the steps of the
// start; main thread only.
#pragma once

#include "daemon/busobjects.h"
#include "daemon/devicedaemon.h"
#include "daemon/frontapplication/desktopsearch.h"
#include "daemon/keyboards/linux/linuxdevices.h"
#include "daemon/requestturns.h"
#include "daemon/system/desktopnotices.h"
#include "daemon/systemservices.h"

struct StartDocument;

class DaemonSession
{
public:
    /// Makes the parts, with the virtual keyboard in use. Reports the problems of `store`, which must be open and
    /// outlive this; `start` comes from it.
    DaemonSession(SettingsStore &store, const StartDocument &start, const QDBusConnection &bus,
                  const HistoryLimits &limits);

    /// Puts the objects on the bus. False if that failed.
    [[nodiscard]] bool registerObjects() { return mObjects.registerOn(mBus); }
    /// Puts the request port on the bus. False if its name is taken.
    [[nodiscard]] bool serveRequests() { return mRequests.serve(); }
    /// Notifies clients whether a keyboard is attached, then uses the keyboards that the user chose.
    void useKeyboards();
    /// Lets the profile follow the application in front.
    void followFrontApplication() { mDesktopSearch.start(); }
    /// Releases every key.
    void shutDown() { mDaemon.shutDown(); }

private:
    void connectDaemon();
    void connectKeyboards();
    void connectStore(SettingsStore &store);

    // Each part refers only to parts above it, and is destroyed before them.
    QDBusConnection mBus;
    DesktopNotices mNotices;
    SystemServices mServices;
    VirtualKeyboard mVirtualKeyboard;
    LinuxKeyboard mLinuxKeyboard;
    UdevEventDevices mEventDevices;
    SeatWatch mSeats;
    LinuxDevices mDevices;
    DeviceChoice mDeviceChoice;
    DeviceDaemon mDaemon;
    KeyWatch mKeyWatch;
    MacroTries mMacroTries;
    GnomeShell mGnomeShell;
    FrontApplicationWatch mFrontApplication;
    DesktopSearch mDesktopSearch;
    BusObjects mObjects;
    // Last, so the port leaves the bus and its thread ends before anything else does.
    RequestTurns mRequests;
};
