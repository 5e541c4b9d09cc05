// SPDX-License-Identifier: MIT
// The machine's keyboards as other parts of the daemon see them: the attached ones, the chosen ones and their state.
// Values, and the abstract source that finds and grabs keyboards; main thread only.
#pragma once

#include "base/devicekeys.h"
#include "base/result.h"

#include <QLatin1StringView>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

/// The reason why a keyboard cannot be used, for programs; InputDevice::problem has it for people.
enum class DeviceObstacle {
    none,
    noRight,   ///< the user may not open it
    taken,     ///< another program has grabbed it
    pointer,   ///< its keys share an event device with a pointer, so the daemon never grabs it
    elsewhere, ///< no session of the user is active at the keyboard's seat
    other,
};

/// The name on the bus; empty for `none`.
[[nodiscard]] constexpr QLatin1StringView deviceObstacleName(DeviceObstacle obstacle)
{
    switch (obstacle) {
    case DeviceObstacle::none: return {};
    case DeviceObstacle::noRight: return DeviceKeys::obstacleNoRight;
    case DeviceObstacle::taken: return DeviceKeys::obstacleTaken;
    case DeviceObstacle::pointer: return DeviceKeys::obstaclePointer;
    case DeviceObstacle::elsewhere: return DeviceKeys::obstacleElsewhere;
    case DeviceObstacle::other: break;
    }
    return DeviceKeys::obstacleOther;
}

enum class DeviceKind {
    keyboard,
    numberPad, ///< has the digits of a keypad, but not all letters
    keyPad,    ///< has some keys of a keyboard, for example for one hand
};

/// The name on the bus and in "kestractl device list".
[[nodiscard]] constexpr QLatin1StringView deviceKindName(DeviceKind kind)
{
    switch (kind) {
    case DeviceKind::keyboard: return DeviceKeys::kindKeyboard;
    case DeviceKind::numberPad: return DeviceKeys::kindNumberPad;
    case DeviceKind::keyPad: return DeviceKeys::kindKeyPad;
    }
    return QLatin1StringView("?");
}

enum class DeviceState {
    released,  ///< no real keyboard is chosen: the virtual one is used
    absent,    ///< none of the chosen ones is attached
    waiting,   ///< until no key is down, or for the login manager's answer, before the first one is grabbed
    inUse,     ///< at least one is grabbed
    suspended, ///< released by the release chord until use() or the next plugging in; still chosen
    inactive,  ///< no session of this user is active at their seat; grabbed once one is
    failed,    ///< chosen and attached, but cannot be grabbed: see the problem
};

/// The name on the bus, in "kestractl status" and in the log.
[[nodiscard]] constexpr QLatin1StringView deviceStateName(DeviceState state)
{
    switch (state) {
    case DeviceState::released: return DeviceKeys::stateReleased;
    case DeviceState::absent: return DeviceKeys::stateAbsent;
    case DeviceState::waiting: return DeviceKeys::stateWaiting;
    case DeviceState::inUse: return DeviceKeys::stateInUse;
    case DeviceState::suspended: return DeviceKeys::stateSuspended;
    case DeviceState::inactive: return DeviceKeys::stateInactive;
    case DeviceState::failed: return DeviceKeys::stateFailed;
    }
    return QLatin1StringView("?");
}

/// An attached keyboard with all its event devices.
struct InputDevice
{
    QString id;   ///< unique and stable, for "kestractl device use"; letters, digits and . : - _
    QString name; ///< reported by the keyboard: untrusted text from outside
    DeviceKind kind = DeviceKind::keyboard;
    quint16 vendor = 0;  ///< of the USB or Bluetooth device
    quint16 product = 0; ///< of the USB or Bluetooth device
    QString serial;      ///< text from outside; empty if the keyboard has none
    QString path;        ///< its port, as udev's ID_PATH; empty when unknown
    QStringList nodes;   ///< paths of its event devices: "/dev/input/event3", ...
    bool isInUse = false;
    DeviceState state = DeviceState::released; ///< of this keyboard alone; `released`: not chosen; never `absent`
    QString problem; ///< empty if it can be used; otherwise the reason and the remedy, as sentences
    DeviceObstacle obstacle = DeviceObstacle::none; ///< the same reason; `none` if it can be used

    bool operator==(const InputDevice &) const = default;
};

/// The part of a choice that is stored. It identifies the keyboard after it was unplugged or the machine restarted.
struct ChosenDevice
{
    quint16 vendor = 0;
    quint16 product = 0;
    QString serial;
    QString path;

    bool operator==(const ChosenDevice &) const = default;
};

/// The remedy for a keyboard that the daemon has no right to open, as a sentence for InputDevice::problem.
[[nodiscard]] QString deviceRightsRemedy(const QString &id);
/// The same for the output device.
[[nodiscard]] QString outputRightsRemedy();

[[nodiscard]] ChosenDevice choiceOf(const InputDevice &device);

/// The id of an InputDevice with these values, if no other attached keyboard has the same.
[[nodiscard]] QString idOf(const ChosenDevice &device);

/// For each device, the index of the choice that means it, if any; the rules are those of chosenAmong().
[[nodiscard]] QList<std::optional<qsizetype>> choicesOf(const QList<InputDevice> &devices,
                                                        const QList<ChosenDevice> &choices);

/// The indices of the devices that `choices` mean, ascending. Vendor and product must match. A choice with a serial
/// number means the keyboard with that number at any port: of several, the one at the same port, otherwise the first. A
/// choice without a serial number means the keyboard at the same port.
[[nodiscard]] QList<qsizetype> chosenAmong(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices);

/// `choices`, with new ports for keyboards without a serial number that were plugged in elsewhere: none of the make is
/// at the chosen port, exactly one is attached, and it is not one of `others`, the keyboards that were not chosen.
[[nodiscard]] QList<ChosenDevice> movedChoices(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices,
                                               const QList<ChosenDevice> &others);
/// The devices beside a chosen one that only its port distinguishes from them.
[[nodiscard]] QList<ChosenDevice> othersBesideChosen(const QList<InputDevice> &devices,
                                                     const QList<ChosenDevice> &choices);

/// The latency of keys through the daemon: from the kernel's time stamp of an event to the return of the write to the
/// output device. Measured since the keyboard was grabbed.
struct KeyLatency
{
    quint64 count = 0;     ///< measured keys; if 0, so are the other values
    quint32 p50Us = 0;     ///< microseconds; may be rounded up to the bound of a bucket
    quint32 p99Us = 0;     ///< as p50Us
    quint32 maximumUs = 0; ///< exact

    bool operator==(const KeyLatency &) const = default;
};

struct DeviceStatus
{
    DeviceState state = DeviceState::released;
    QStringList names;       ///< of the keyboards in use
    QStringList absent;      ///< the ids of the chosen keyboards that are not attached
    QStringList grabs;       ///< the event devices that the daemon has grabbed
    QString problem;         ///< the reason why a chosen keyboard is not in use, with the remedy; may be empty
    bool isRealTime = false; ///< whether the key thread has real-time priority
    quint64 lostEvents = 0;  ///< how often the kernel reported dropped events (the daemon has recovered each time)
    KeyLatency latency;

    bool operator==(const DeviceStatus &) const = default;
};

/// Why keyboards cannot be used. The message has the reason and the remedy, as sentences.
struct UseError : Error
{
    /// `unknown`: no such keyboard is attached; `refused`: it is attached but cannot be used, for example without the
    /// right to.
    enum class Cause { unknown, refused };

    Cause cause = Cause::refused;
};

/// Finds keyboards, and grabs those that were chosen, no others.
class DeviceSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The attached keyboards without the output device, in a stable order.
    [[nodiscard]] virtual QList<InputDevice> devices() const = 0;

    /// Uses the keyboards `ids` (of devices(); at least one) from now on, instead of the previous ones. If one of them
    /// cannot be used, nothing changes. Success means accepted: a keyboard is grabbed once its keys have come up, which
    /// status() shows.
    [[nodiscard]] virtual Result<void, UseError> use(const QStringList &ids) = 0;

    /// As use(), beside the keyboards that are chosen already. A released one of `ids` is grabbed again, another is
    /// not.
    [[nodiscard]] virtual Result<void, UseError> useAlso(const QStringList &ids) = 0;

    /// Uses the `choices` that are attached, and the others once they are; an absent one is not an error. Meant for the
    /// stored choice; an empty list acts as release().
    virtual void useWhenPresent(const QList<ChosenDevice> &choices) = 0;

    /// Releases all keyboards and forgets the choice.
    virtual void release() = 0;

    /// Releases these chosen keyboards, which may be absent, and forgets them. If one of `ids` is not chosen, nothing
    /// changes.
    [[nodiscard]] virtual Result<void, UseError> releaseThese(const QStringList &ids) = 0;

    /// The current choice, to be stored; empty when released. Includes keyboards that are not attached.
    [[nodiscard]] virtual QList<ChosenDevice> choices() const = 0;

    [[nodiscard]] virtual DeviceStatus status() const = 0;

Q_SIGNALS:
    void changed(); ///< devices(), choices() or status(); changes of its counters are not signalled
};
