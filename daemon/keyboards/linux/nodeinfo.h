// SPDX-License-Identifier: MIT
// What the system says of an event node, without opening it, and which nodes make a keyboard. Values and rules; any
// thread.
#pragma once

#include "daemon/keyboards/devices.h"
#include "daemon/keyboards/linux/keycodes.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <bitset>

struct NodeInfo
{
    /// The codes that a node has of a type of event; a bit a code.
    using Codes = std::bitset<KeyCodes::codeCount>;

    QString node = {};       ///< "/dev/input/event3"
    QString systemPath = {}; ///< its folder below /sys; another one each time that it is plugged in
    QString devicePath = {}; ///< that of the whole device, which nodes of one keyboard have in common
    QString name = {};
    quint16 bus = 0;
    quint16 vendor = 0;
    quint16 product = 0;
    quint16 version = 0;
    QString serial = {};
    QString path = {};  ///< see InputDevice
    bool isHid = false; ///< its scan codes are HID usages
    Codes keys = {};
    Codes relativeAxes = {};
    Codes absoluteAxes = {};

    /// `text` as the kernel writes a set of codes in /sys (hexadecimal words, the highest first, `wordBits` each). What
    /// cannot be read is no code.
    [[nodiscard]] static Codes codesFromText(const QByteArray &text, int wordBits = sizeof(long) * 8);
};

/// What the daemon can do with a node.
enum class NodeKind {
    keyboard,  ///< has the letters, or all digits of a keypad
    extraKeys, ///< the media or power keys of a keyboard, for example: taken over together with it
    mixed,     ///< a keyboard that also moves the pointer: the desktop keeps it, or it would lose the pointer
    pointer,   ///< has other keys, and moves the pointer: likewise
    other,     ///< no keys, or the daemon's own
};

[[nodiscard]] NodeKind kindOf(const NodeInfo &info);

/// One keyboard and the nodes of it to take over.
struct KeyboardInfo
{
    InputDevice device;    ///< isInUse is the caller's; problem only where there is nothing that could be taken over
    QList<NodeInfo> nodes; ///< empty with a problem
};

/// The keyboards that `nodes` make, ordered by their first node. A device with no node that is a keyboard, or could be
/// one but for its pointer, is none.
[[nodiscard]] QList<KeyboardInfo> keyboardsOf(QList<NodeInfo> nodes);
