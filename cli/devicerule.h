// SPDX-License-Identifier: MIT
// The udev rule that gives the seated user the right to one keyboard and to the daemon's output device. A pure
// function.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The rule's file, its first lines telling how to install it. `device` is one of DeviceClient::list(); `userId` the
/// number of the user who is to set the keyboard's light. Absent for a keyboard without numbers to know it by, or with
/// an id that is more than letters, digits and . : - _
///
/// Serial number and port come from the keyboard: they are taken into the rule, which the superuser's udev reads, only
/// when they consist of harmless characters. Without one of them the rule means every keyboard of this make, and says
/// so.
[[nodiscard]] std::optional<QString> deviceRule(const QVariantMap &device, uint userId);
