// SPDX-License-Identifier: MIT
// The daemon's desktop notifications: their texts, and one bubble for each kind. Owned by the DaemonSession; main
// thread only.
#pragma once

#include "daemon/system/desktopnotification.h"

/// A notice replaces the previous one of its kind alone. No function waits.
class DesktopNotices
{
public:
    explicit DesktopNotices(const QDBusConnection &bus) : mProfile(bus), mRelease(bus), mSettings(bus) {}

    /// The profile `name` is now active. Passes by itself.
    void showProfile(const QString &name);
    /// The user has held the release chord.
    void showKeyboardReleased();
    /// A settings file has a problem.
    void showSettingsProblem();

private:
    DesktopNotification mProfile;
    DesktopNotification mRelease;
    DesktopNotification mSettings;
};
