// SPDX-License-Identifier: MIT
// Which LEDs of the kernel's LED class are the light of a keyboard. Values and functions that only read; any thread.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Where the kernel shows its devices; another place in tests.
struct LedFolders
{
    QString leds = QStringLiteral("/sys/class/leds");
    QString inputs = QStringLiteral("/sys/class/input");
};

/// One LED, or one zone of several: a folder with "brightness" and "max_brightness".
struct KeyboardLed
{
    /// What a number of "multi_intensity", or the whole LED, stands for.
    enum class Channel { red, green, blue, anyColor, unused };

    QString name; ///< in the LED class
    QString folder;
    uint maximum = 1;                  ///< "max_brightness", and the most that a channel takes
    QList<Channel> channels;           ///< of "multi_intensity", in the order of "multi_index"; empty without them
    Channel color = Channel::anyColor; ///< of the LED as a whole, where it has no channels

    [[nodiscard]] bool showsColor() const { return !channels.isEmpty() || color != Channel::anyColor; }
};

/// The light of the keyboards with the event nodes `nodes` ("/dev/input/event3"), ordered by name: LEDs below the same
/// device that are named as a keyboard's light, or have several colours and are not named as an indicator. For a
/// keyboard that is built in, also those named as a keyboard's light that belong to no pluggable device. The lamps of
/// the lock keys are none. An LED whose files cannot be understood is left out.
[[nodiscard]] QList<KeyboardLed> keyboardLeds(const QStringList &nodes, const LedFolders &folders);
