// SPDX-License-Identifier: MIT
// The udev rules that give the seated user the right to one keyboard: the one that kestractl prints, and the one that
// the rule helper installs. Pure functions.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

// `device` is a keyboard as on the bus, with the keys of base/devicekeys.h. Root's udev obeys the rules, and the
// keyboard reports its serial number and port itself. A rule therefore has the serial number, or the port of a keyboard
// without one, only if all its characters are harmless. Otherwise, the rule applies to every keyboard of this make, and
// its first line says so. No rule can name a keyboard whose vendor and product are both 0.

/// The complete rules file for a manual installation. Its first lines explain how. Besides the keyboard it gives the
/// right to the daemon's output device, and the user with the number `userId` may set the keyboard's light.
/// Absent if no rule can name the keyboard, or if its id is not made of letters, digits and . : - _
[[nodiscard]] std::optional<QString> deviceRule(const QVariantMap &device, uint userId);

/// The two commands for a terminal that install the rule. `program` is kestractl, as a path or from the search path.
/// Absent if no rule can name the keyboard, or if its id is not made of letters, digits and . : - _
[[nodiscard]] std::optional<QStringList> deviceRuleCommands(const QVariantMap &device, const QString &program);

/// The rules file for the event devices of the keyboard alone. Absent if no rule can name the keyboard.
[[nodiscard]] std::optional<QString> eventDeviceRule(const QVariantMap &device);

/// The name of the file that the rule helper writes into the folder of udev's rules. It has digits alone for the
/// vendor, the product and whatever distinguishes keyboards of the make. Each keyboard has a file of its own. Absent if
/// no rule can name the keyboard.
[[nodiscard]] std::optional<QString> deviceRuleFileName(const QVariantMap &device);
