// SPDX-License-Identifier: MIT
// The keyboard layout that the user types with: that of the desktop, or of the system where there is none. Main thread.
#pragma once

#include "platform/keymap.h"

#include <QObject>

#include <chrono>

class WaylandKeymap;
class X11Keymap;

class DesktopKeymap : public QObject
{
    Q_OBJECT

public:
    enum class Desktop { none, x11, wayland };

    /// The desktop of the environment: WAYLAND_DISPLAY has priority over DISPLAY.
    [[nodiscard]] static Desktop desktopOfEnvironment();
    /// The desktop of a program whose Qt platform is `name` ("xcb", "wayland"; others have none).
    [[nodiscard]] static Desktop desktopOfPlatform(const QString &name);
    /// The layout that `text` sets, which is in the form of /etc/default/keyboard (XKBLAYOUT="de", XKBVARIANT="neo").
    /// Of several layouts it is the first. American English if the text has none, or one that the system does not know.
    [[nodiscard]] static Keymap keymapOfFile(const QByteArray &text);

    explicit DesktopKeymap(Desktop desktop, QObject *parent = nullptr);

    /// The desktop's layout; until the desktop has sent one, and without a desktop, that of the system.
    [[nodiscard]] Keymap keymap() const;
    /// Waits for the layout of a Wayland compositor, but not longer than `limit`. Processes events.
    void waitForDesktop(std::chrono::milliseconds limit);

Q_SIGNALS:
    void changed();

private:
    X11Keymap *mX11 = nullptr;
    WaylandKeymap *mWayland = nullptr;
};
