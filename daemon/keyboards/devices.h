// SPDX-License-Identifier: MIT
// The keyboards of the machine as the daemon's other parts see them: which there are, which were chosen, what became
// of that. Values, and the abstract source that finds and takes over keyboards; one thread, the daemon's.
#pragma once

#include "base/devicekeys.h"

#include <QLatin1StringView>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

/// One keyboard that is plugged in, with all event nodes that belong to it.
struct InputDevice
{
    QString id;          ///< names it in "kestractl device use": unique, stable; letters, digits and . : - _
    QString name;        ///< as the keyboard calls itself: text from outside, not to be trusted
    quint16 vendor = 0;  ///< of the USB or Bluetooth device
    quint16 product = 0; ///< likewise
    QString serial;      ///< text from outside; empty for one that has none
    QString path;        ///< the port it is plugged into, as udev's ID_PATH; empty when unknown
    QStringList nodes;   ///< "/dev/input/event3", ...
    bool isInUse = false;
    QString problem; ///< empty: it can be used; else why not, with the remedy, as sentences

    bool operator==(const InputDevice &) const = default;
};

/// What is kept of a choice, so that the keyboard is known again after it was unplugged or the machine restarted.
struct ChosenDevice
{
    quint16 vendor = 0;
    quint16 product = 0;
    QString serial;
    QString path;

    bool operator==(const ChosenDevice &) const = default;
};

/// The remedy for a keyboard that the daemon has no right to, as a sentence for InputDevice::problem.
[[nodiscard]] QString deviceRightsRemedy(const QString &id);
/// The remedy for an output device that it has no right to, likewise.
[[nodiscard]] QString outputRightsRemedy();

[[nodiscard]] ChosenDevice choiceOf(const InputDevice &device);

/// Which of `devices` (by index, ascending) `choices` mean. A choice with a serial number means the keyboard with that
/// number, at whatever port; when several have the same number, the one at the same port, else the first. A choice
/// without one means the keyboard at the same port. Vendor and product must agree in any case.
[[nodiscard]] QList<qsizetype> chosenAmong(const QList<InputDevice> &devices, const QList<ChosenDevice> &choices);

/// How long keys take through the daemon: from the time stamp of the kernel's event to the return of the write to the
/// daemon's own device. Of the keys since the keyboard was taken over.
struct KeyLatency
{
    quint64 count = 0;     ///< of the keys measured; the others are 0 with it
    quint32 p50Us = 0;     ///< microseconds; may be rounded up to the bound of a bucket
    quint32 p99Us = 0;     ///< likewise
    quint32 maximumUs = 0; ///< exact

    bool operator==(const KeyLatency &) const = default;
};

enum class DeviceState {
    released,  ///< no real keyboard is chosen: the virtual one is used
    absent,    ///< none of the chosen ones is plugged in
    waiting,   ///< until no key is down, before the first is taken over
    inUse,     ///< at least one is taken over
    suspended, ///< by the panic chord: chosen, but let go of until use() or the next plugging in
    failed,    ///< chosen and plugged in, but cannot be taken over: see the problem
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
    case DeviceState::failed: return DeviceKeys::stateFailed;
    }
    return QLatin1StringView("?");
}

struct DeviceStatus
{
    DeviceState state = DeviceState::released;
    QStringList names;       ///< of the keyboards in use
    QStringList grabs;       ///< the event nodes that the daemon holds for itself
    QString problem;         ///< empty, or why a chosen keyboard is not in use, with the remedy
    bool isRealTime = false; ///< whether the key thread has real-time priority
    quint64 lostEvents = 0;  ///< how often the kernel said that it had to drop events (each was made up for)
    KeyLatency latency;

    bool operator==(const DeviceStatus &) const = default;
};

/// What became of a wish to use keyboards: `problem` is empty when it was taken on, else says why not, with the remedy.
struct UseResult
{
    /// `unknown`: no such keyboard is plugged in; `refused`: it is there but cannot be used (no right to, for example).
    enum class Code { ok, unknown, refused };

    Code code = Code::ok;
    QString problem;

    [[nodiscard]] bool isOk() const { return code == Code::ok; }
};

/// Finds keyboards and takes over those that were chosen. Takes over none by itself.
class DeviceSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Those plugged in, in a stable order. The daemon's own output device is not among them.
    [[nodiscard]] virtual QList<InputDevice> devices() const = 0;

    /// Uses the keyboards `ids` (of devices(); at least one) from now on, in place of those used before. When one of
    /// them cannot be used, nothing changes. Ok means taken on: status() tells when they have been taken over, which is
    /// after their keys came up.
    [[nodiscard]] virtual UseResult use(const QStringList &ids) = 0;

    /// Uses those `choices` that are plugged in, and the others once they are; what is missing is no error. For the
    /// choice kept from before; an empty list is release().
    virtual void useWhenPresent(const QList<ChosenDevice> &choices) = 0;

    /// Lets go of all keyboards and forgets the choice.
    virtual void release() = 0;

    /// What is chosen now, to be kept; empty when released. Also holds those that are not plugged in.
    [[nodiscard]] virtual QList<ChosenDevice> choices() const = 0;

    [[nodiscard]] virtual DeviceStatus status() const = 0;

Q_SIGNALS:
    void changed(); ///< devices(), choices() or status() (but for the counters, which change without a word)
};
