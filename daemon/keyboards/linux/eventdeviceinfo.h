// SPDX-License-Identifier: MIT
// The system's description of an event device, without opening it, and the rules that group nodes into keyboards.
// Values and rules; any thread.
#pragma once

#include "base/keycodes.h"
#include "daemon/keyboards/devices.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <bitset>

struct EventDeviceInfo
{
    static constexpr QLatin1StringView defaultSeat{"seat0"};

    /// A node's codes of one event type; one bit per code.
    using Codes = std::bitset<KeyCodes::codeCount>;

    QString node = {};       ///< "/dev/input/event3"
    QString systemPath = {}; ///< its folder below /sys; another one after each plugging in
    QString devicePath = {}; ///< of the whole device, which the nodes of one keyboard share
    QString name = {};
    quint16 bus = 0;
    quint16 vendor = 0;
    quint16 product = 0;
    quint16 version = 0;
    QString serial = {};
    QString path = {}; ///< see InputDevice
    QString seat = defaultSeat;
    bool isHid = false; ///< its scan codes are HID usages
    Codes keys = {};
    Codes relativeAxes = {};
    Codes absoluteAxes = {};

    /// Reads a set of codes as the kernel writes it in /sys: hexadecimal words of `wordBits` bits, the highest first.
    /// An unreadable word has no codes.
    [[nodiscard]] static Codes codesFromText(const QByteArray &text, int wordBits = sizeof(long) * 8);
};

/// The daemon's use of a node.
enum class EventDeviceKind {
    keyboard,  ///< has the letters, or all digits of a keypad
    pad,       ///< has some letters, digits or function keys: a keyboard for one hand, or a row of keys
    extraKeys, ///< for example the media or power keys of a keyboard: grabbed together with it
    mixed,     ///< a keyboard that also moves the pointer; not grabbed, because the desktop would lose the pointer
    pointer,   ///< has other keys, and moves the pointer; not grabbed either
    other,     ///< no keys, or the output device
};

[[nodiscard]] EventDeviceKind kindOf(const EventDeviceInfo &info);

/// A keyboard and its nodes to grab.
struct KeyboardInfo
{
    InputDevice device;           ///< the caller sets isInUse; a problem if there is no node to grab
    QList<EventDeviceInfo> nodes; ///< empty with a problem
    QString seat;                 ///< to which it is assigned
};

/// The keyboards in `nodes`, ordered by their first node. A device must have a node that is a keyboard or a pad, or
/// a keyboard mixed with a pointer.
[[nodiscard]] QList<KeyboardInfo> keyboardsOf(QList<EventDeviceInfo> nodes);
