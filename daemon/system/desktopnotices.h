// SPDX-License-Identifier: MIT
// The daemon's desktop notifications: their texts, and one bubble for each kind. Owned by the DaemonSession; main
// thread only.
#pragma once

#include "daemon/system/desktopnotification.h"
#include "daemon/system/desktopquestion.h"

/// A notice replaces the previous one of its kind alone. No function waits.
class DesktopNotices
{
public:
    /// The button of watchQuestion() that allows.
    static constexpr QLatin1StringView allowButton{"allow"};

    explicit DesktopNotices(const QDBusConnection &bus) : mProfile(bus), mRelease(bus), mSettings(bus) {}

    /// The profile `name` is now active. Passes by itself.
    void showProfile(const QString &name);
    /// The user has held the release chord.
    void showKeyboardReleased();
    /// A settings file has a problem.
    void showSettingsProblem();

    /// Asks whether `program` may see the keys. Refuses with any other button.
    [[nodiscard]] static DesktopQuestion::Bubble watchQuestion(const QString &program);
    /// `program` sees the keys. Its button stops that.
    [[nodiscard]] static DesktopQuestion::Bubble watchNotice(const QString &program);

private:
    DesktopNotification mProfile;
    DesktopNotification mRelease;
    DesktopNotification mSettings;
};
