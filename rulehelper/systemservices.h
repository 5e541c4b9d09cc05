// SPDX-License-Identifier: MIT
// The rule helper's effects on the real system: device files, libudev, udevadm.
#pragma once

#include "rulehelper/rulehelper.h"

namespace RuleHelper {

/// The device number of `node` in `folder`, which must be no link, nor have a link as its last part. Opens no device: a
/// descriptor for the path alone is enough.
[[nodiscard]] Result<dev_t> inputDeviceNumber(const QByteArray &folder, const QByteArray &node);

/// For the folders /dev/input and /etc/udev/rules.d.
[[nodiscard]] Services systemServices();

} // namespace RuleHelper
