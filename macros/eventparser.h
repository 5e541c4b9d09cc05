// SPDX-License-Identifier: MIT
// Turns recorded macro events into the lines of the event list, and key codes into readable names. It keeps one list,
// the held keys, which the whole process shares without a lock: main thread only.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

/// An event is an event dictionary ("command", "delay", "page", "argument"; see macrorecord.h). Key codes are usages of
/// the Keyboard/Keypad page of the USB HID Usage Tables, section 10.
class eventParser
{
public:
    eventParser() = delete;

    /// Returns the lines of one event: its delay line, then its event line if it has one.
    [[nodiscard]] static QStringList parseSequence(const QVariantMap &event);

    /// Returns the display lines of a whole sequence (array of event dictionaries), without the first event's delay
    /// line.
    [[nodiscard]] static QStringList getMessagesArray(const QVariantList &sequence);

    /// Returns the names of the modifiers in `modifier` and of key code `hid`, joined by " + ". `modifier` is the
    /// modifier byte of the boot keyboard (low 8 bits). An unknown key has no name, also after " + ".
    [[nodiscard]] static QString getStringWithHIDWithModifier(int hid, int modifier);

    /// Returns the name of the key or mouse button of `event`; empty unless hasEventLine().
    [[nodiscard]] static QString nameOfKeyOrButton(const QVariantMap &event);

    /// Returns 'A' to 'Z' or '0' to '9' for the key codes 4 to 39, else 0.
    [[nodiscard]] static char returnASCII(quint8 hid);

    /// Appends to `retVal` the key code of each set bit of `modifier`, from the lowest bit to the highest.
    static void getModifierHIDRetVal(quint8 modifier, QList<int> &retVal);

    /// Rewrites `held`, the key codes held now, into the order in which they were first pressed.
    static void manageHIDStack(QList<int> &held);

    /// True if `event` has a line of its own in the event list. Every event but the first also has a delay line.
    [[nodiscard]] static bool hasEventLine(const QVariantMap &event);

private:
    static std::optional<QList<int>> sHeldKeys;
};
