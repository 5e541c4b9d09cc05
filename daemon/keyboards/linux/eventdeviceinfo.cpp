// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventdeviceinfo.h"

#include "base/visibletext.h"
#include "daemon/keyboards/linux/outputdevice.h"

#include <linux/input-event-codes.h>

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maximumTextLength = 64;
constexpr quint16 firstLetter = 4; // HID usages
constexpr quint16 lastLetter = 29;
constexpr quint16 firstKeypadDigit = 89;
constexpr quint16 lastKeypadDigit = 98;
constexpr quint16 lastDigit = 39; // after the letters
constexpr quint16 firstFunctionKey = 58;
constexpr quint16 lastFunctionKey = 69; // F12
constexpr quint16 firstFurtherFunctionKey = 104;
constexpr quint16 lastFurtherFunctionKey = 115; // F24
constexpr int leastKeysOfPad = 6;               // presenters and hot keys have fewer

int countUsages(const EventDeviceInfo::Codes &keys, quint16 first, quint16 last)
{
    int count = 0;
    for (quint16 usage = first; usage <= last; ++usage) {
        const std::optional<quint16> code = KeyCodes::linuxCode({HidUsage::keyboardPage, usage});
        if (code && keys[*code])
            ++count;
    }
    return count;
}

bool hasUsages(const EventDeviceInfo::Codes &keys, quint16 first, quint16 last)
{
    return countUsages(keys, first, last) == last - first + 1;
}

bool hasLetters(const EventDeviceInfo &info)
{
    return hasUsages(info.keys, firstLetter, lastLetter);
}

bool hasKeypad(const EventDeviceInfo &info)
{
    return hasUsages(info.keys, firstKeypadDigit, lastKeypadDigit);
}

bool hasKeysOfPad(const EventDeviceInfo &info)
{
    return countUsages(info.keys, firstLetter, lastDigit) + countUsages(info.keys, firstFunctionKey, lastFunctionKey)
               + countUsages(info.keys, firstFurtherFunctionKey, lastFurtherFunctionKey)
           >= leastKeysOfPad;
}

bool isOwn(const EventDeviceInfo &info)
{
    return info.bus == OutputDevice::bus && info.vendor == OutputDevice::vendor
           && info.product == OutputDevice::product;
}

/// Text from a device must not move a cursor or fill a screen.
QString printable(const QString &text)
{
    return visibleText(text.simplified().left(maximumTextLength), u'?');
}

/// Keyboards with the same id get a number, in the order of their nodes.
QString uniqueId(const QString &id, QSet<QString> &taken)
{
    QString unique = id;
    for (int number = 2; taken.contains(unique); ++number)
        unique = u"%1:%2"_s.arg(id).arg(number);
    taken += unique;
    return unique;
}

bool isToGrab(EventDeviceKind kind)
{
    return kind == EventDeviceKind::keyboard || kind == EventDeviceKind::pad || kind == EventDeviceKind::extraKeys;
}

bool isOfKeyboard(EventDeviceKind kind)
{
    return kind == EventDeviceKind::keyboard || kind == EventDeviceKind::pad || kind == EventDeviceKind::mixed;
}

DeviceKind kindOfDevice(const QList<EventDeviceInfo> &nodes)
{
    if (std::ranges::any_of(nodes, hasLetters))
        return DeviceKind::keyboard;
    return std::ranges::any_of(nodes, hasKeypad) ? DeviceKind::numberPad : DeviceKind::keyPad;
}

/// The nodes of the same device as `first`, as one keyboard.
KeyboardInfo keyboardWith(const EventDeviceInfo &first, const QList<EventDeviceInfo> &nodes, QSet<QString> &ids)
{
    KeyboardInfo keyboard;
    bool isUsable = false;
    for (const EventDeviceInfo &node : nodes) {
        const EventDeviceKind kind = kindOf(node);
        if (node.devicePath != first.devicePath || !isToGrab(kind))
            continue;
        keyboard.nodes += node;
        keyboard.device.nodes += node.node;
        isUsable = isUsable || kind != EventDeviceKind::extraKeys;
    }
    keyboard.device.kind = kindOfDevice(isUsable ? keyboard.nodes : QList<EventDeviceInfo>{first});
    if (!isUsable) {
        keyboard.nodes.clear();
        keyboard.device.nodes = {first.node};
        keyboard.device.obstacle = DeviceObstacle::pointer;
        keyboard.device.problem =
            u"The keys and the pointer of this keyboard share one event device (%1). Grabbing it would take the "
            u"pointer "
            "from the desktop; only a keyboard with an event device of its own for the keys can be used."_s.arg(
                first.node);
    }
    keyboard.device.id = uniqueId(
        idOf({.vendor = first.vendor, .product = first.product, .serial = first.serial, .path = first.path}), ids);
    keyboard.device.name = printable(first.name);
    keyboard.device.vendor = first.vendor;
    keyboard.device.product = first.product;
    keyboard.device.serial = printable(first.serial);
    keyboard.device.path = first.path;
    keyboard.seat = first.seat;
    return keyboard;
}

} // namespace

EventDeviceInfo::Codes EventDeviceInfo::codesFromText(const QByteArray &text, int wordBits)
{
    Codes codes;
    const QList<QByteArray> words = text.simplified().split(' ');
    for (qsizetype index = 0; index < words.size(); ++index) {
        const quint64 word = words.at(words.size() - 1 - index).toULongLong(nullptr, 16);
        for (int bit = 0; bit < wordBits; ++bit) {
            const std::size_t code = static_cast<std::size_t>(index) * static_cast<std::size_t>(wordBits) + bit;
            if (code < codes.size() && ((word >> bit) & 1))
                codes.set(code);
        }
    }
    return codes;
}

EventDeviceKind kindOf(const EventDeviceInfo &info)
{
    if (info.keys.none() || isOwn(info))
        return EventDeviceKind::other;
    const auto hasPlane = [](const EventDeviceInfo::Codes &axes, std::size_t x, std::size_t y) {
        return axes[x] || axes[y];
    };
    const bool isPointer = hasPlane(info.relativeAxes, REL_X, REL_Y) || hasPlane(info.absoluteAxes, ABS_X, ABS_Y)
                           || hasPlane(info.absoluteAxes, ABS_MT_POSITION_X, ABS_MT_POSITION_Y);
    if (hasLetters(info) || hasKeypad(info))
        return isPointer ? EventDeviceKind::mixed : EventDeviceKind::keyboard;
    if (isPointer)
        return EventDeviceKind::pointer;
    return hasKeysOfPad(info) ? EventDeviceKind::pad : EventDeviceKind::extraKeys;
}

QList<KeyboardInfo> keyboardsOf(QList<EventDeviceInfo> nodes)
{
    // event10 comes after event9
    std::ranges::stable_sort(nodes, {},
                             [](const EventDeviceInfo &info) { return std::pair(info.node.size(), info.node); });
    QList<KeyboardInfo> keyboards;
    QSet<QString> ids;
    QSet<QString> known; // device paths
    for (const EventDeviceInfo &first : std::as_const(nodes)) {
        if (!isOfKeyboard(kindOf(first)) || known.contains(first.devicePath))
            continue;
        known += first.devicePath;
        keyboards += keyboardWith(first, nodes, ids);
    }
    return keyboards;
}
