// SPDX-License-Identifier: MIT
// One message of the request port, as the daemon has read it.
#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>

struct RequestMessage
{
    qint32 number = 0;              ///< of the command
    std::optional<QByteArray> data; ///< a dictionary as a property list, or the message is dropped
    /// The time since boot at which the daemon read it. Absent: it waited for a daemon that stood still, so that its
    /// client waits no longer.
    std::optional<std::chrono::microseconds> readAt;
};
