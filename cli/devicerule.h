// SPDX-License-Identifier: MIT
// The udev rule that gives the seated user the right to one keyboard and to the daemon's output device. A pure
// function.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The rules file, whose first lines explain how to install it. `device` is one of DeviceClient::list(); the user with
/// the number `userId` may set the keyboard's light. Absent for a keyboard without vendor and product numbers, or with
/// an id that is not made of letters, digits and . : - _
///
/// Root's udev obeys the rule, and the keyboard reports its serial number and port itself. The rule therefore has the
/// serial number, or the port of a keyboard without one, only if all its characters are harmless. Otherwise, the rule
/// applies to every keyboard of this make, and its first line says so.
[[nodiscard]] std::optional<QString> deviceRule(const QVariantMap &device, uint userId);
