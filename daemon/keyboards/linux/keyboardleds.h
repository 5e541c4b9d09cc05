// SPDX-License-Identifier: MIT
// Finds the LEDs of the kernel's LED class that are a keyboard's lighting. Values and functions that only read; any
// thread.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The kernel's device folders; tests use others.
struct LedFolders
{
    QString leds = QStringLiteral("/sys/class/leds");
    QString inputs = QStringLiteral("/sys/class/input");
};

/// An LED, or one zone of several: a folder with "brightness" and "max_brightness".
struct KeyboardLed
{
    /// The meaning of a number in "multi_intensity", or of the whole LED.
    enum class Channel { red, green, blue, anyColor, unused };

    QString name; ///< in the LED class
    QString folder;
    uint maximum = 1;                  ///< "max_brightness", and the most that a channel takes
    QList<Channel> channels;           ///< of "multi_intensity", in the order of "multi_index"; empty without them
    Channel color = Channel::anyColor; ///< of the LED as a whole, if it has no channels

    [[nodiscard]] bool showsColor() const { return !channels.isEmpty() || color != Channel::anyColor; }
};

/// The lighting of the keyboards with the event devices `nodes` ("/dev/input/event3"), ordered by name. It consists of
/// LEDs below the same device that are named as key lighting, or have several colours and are not named as an
/// indicator. For a built-in keyboard it includes LEDs named as key lighting that belong to no pluggable device. It
/// excludes the lamps of the lock keys and LEDs whose files cannot be interpreted.
[[nodiscard]] QList<KeyboardLed> keyboardLeds(const QStringList &nodes, const LedFolders &folders);
