// SPDX-License-Identifier: MIT
#include "daemon/keyboards/devices.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maximumPartLength = 64; // of an id

bool isOfKind(const InputDevice &device, const ChosenDevice &choice)
{
    return device.vendor == choice.vendor && device.product == choice.product && device.serial == choice.serial;
}

QString idPart(const QString &text)
{
    QString result = text.left(maximumPartLength);
    const auto isAllowed = [](QChar character) {
        return character.unicode() < 128 && (character.isLetterOrNumber() || u".:-_"_s.contains(character));
    };
    std::ranges::replace_if(
        result, [&](QChar character) { return !isAllowed(character); }, u'_');
    return result;
}

/// The devices that only their port distinguishes from `choice`.
QList<ChosenDevice> sameMake(const QList<InputDevice> &devices, const ChosenDevice &choice)
{
    QList<ChosenDevice> found;
    for (const InputDevice &device : devices) {
        if (choice.serial.isEmpty() && isOfKind(device, choice))
            found += choiceOf(device);
    }
    return found;
}

} // namespace

QString deviceRightsRemedy(const QString &id)
{
    return u"Run \"kestractl device rule %1\" and follow the first lines of its output."_s.arg(id);
}

QString outputRightsRemedy()
{
    return u"\"kestractl device rule ID\", with the ID of your keyboard, prints a rule that gives the right to "
           "/dev/uinput as well; follow its first lines. Where there is no /dev/uinput, load the module: "
           "sudo modprobe uinput."_s;
}

ChosenDevice choiceOf(const InputDevice &device)
{
    return {.vendor = device.vendor, .product = device.product, .serial = device.serial, .path = device.path};
}

QString idOf(const ChosenDevice &device)
{
    const QString make =
        u"%1:%2"_s.arg(uint(device.vendor), 4, 16, QChar(u'0')).arg(uint(device.product), 4, 16, QChar(u'0'));
    const QString part = idPart(device.serial.isEmpty() ? device.path : device.serial);
    return part.isEmpty() ? make : make + u':' + part;
}

QList<std::optional<qsizetype>> choicesOf(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices)
{
    QList<std::optional<qsizetype>> found(devices.size());
    const auto find = [&](qsizetype choiceIndex, bool atSamePath) {
        const ChosenDevice &choice = choices.at(choiceIndex);
        for (qsizetype index = 0; index < devices.size(); ++index) {
            const InputDevice &device = devices.at(index);
            if (!found.at(index) && isOfKind(device, choice) && (!atSamePath || device.path == choice.path)) {
                found[index] = choiceIndex;
                return true;
            }
        }
        return false;
    };
    // Keyboards at their port first: of two with the same number, each must be found where it was.
    QList<qsizetype> moved;
    for (qsizetype index = 0; index < choices.size(); ++index) {
        if (!find(index, true) && !choices.at(index).serial.isEmpty())
            moved += index;
    }
    for (const qsizetype index : moved)
        find(index, false);
    return found;
}

QList<qsizetype> chosenAmong(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices)
{
    const QList<std::optional<qsizetype>> found = choicesOf(devices, choices);
    QList<qsizetype> indexes;
    for (qsizetype index = 0; index < devices.size(); ++index) {
        if (found.at(index))
            indexes += index;
    }
    return indexes;
}

QList<ChosenDevice> movedChoices(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices,
                                 const QList<ChosenDevice> &others)
{
    QList<ChosenDevice> moved = choices;
    for (ChosenDevice &choice : moved) {
        const QList<ChosenDevice> found = sameMake(devices, choice);
        // At the port of this choice, or of another one, it has not moved.
        if (found.size() == 1 && !moved.contains(found.first()) && !others.contains(found.first()))
            choice = found.first();
    }
    return moved;
}

QList<ChosenDevice> othersBesideChosen(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices)
{
    QList<ChosenDevice> others;
    for (const ChosenDevice &choice : choices) {
        const QList<ChosenDevice> found = sameMake(devices, choice);
        for (const ChosenDevice &device : found) {
            if (found.contains(choice) && !choices.contains(device))
                others += device;
        }
    }
    return others;
}
