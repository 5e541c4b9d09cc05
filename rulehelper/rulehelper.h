// SPDX-License-Identifier: MIT
// The work of the program that runs as root for the configurator: installs or removes the udev rule of one keyboard.
// It does not trust its caller. One thread, no event loop, no bus.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <sys/types.h>

namespace RuleHelper {

struct Request
{
    QByteArray node; ///< the name of an event device in /dev/input: "event" and at most 5 digits
    bool isRemoval = false;
};

/// The keyboard of an event device, according to the system.
struct Keyboard
{
    QVariantMap device; ///< vendor, product, serial number and port, with the keys of base/devicekeys.h
    QString systemPath; ///< the event device's folder below /sys
    QString wholePath;  ///< the folder below /sys that its event devices share
};

/// The effects on the system; see systemservices.h. Tests replace them.
struct Services
{
    /// The device number of the event device with this name; an error if it is not a character device of the input
    /// subsystem.
    std::function<Result<dev_t>(const QByteArray &node)> numberOf;
    /// An error if there is no such device, or if it is not a keyboard or has been made by a program.
    std::function<Result<Keyboard>(dev_t number)> keyboardOf;
    /// Makes udev read its rules and apply them to the keyboard; an error if the right is not as `isGranted` says
    /// afterwards.
    std::function<Result<void>(const Keyboard &keyboard, bool isGranted)> apply;
    QString rulesFolder;
};

/// `arguments` without the program's name: "/dev/input/event7", or "--remove" and such a path.
[[nodiscard]] Result<Request> requestOf(const QStringList &arguments);

/// Writes or removes the rule and applies it. Installing twice, and removing what is not there, succeed.
[[nodiscard]] Result<void> carryOut(const Request &request, const Services &services);

} // namespace RuleHelper
