// SPDX-License-Identifier: MIT
// One message of the request port, as the daemon has read it.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <optional>

struct RequestMessage
{
    qint32 number = 0;              ///< of the command
    std::optional<QByteArray> data; ///< a dictionary as a property list; otherwise the message is dropped
    /// The time since boot at which the daemon read it. Absent if the message waited while the daemon stood still: its
    /// client no longer waits.
    std::optional<std::chrono::microseconds> readAt;
};

/// The port for the reply to `request`. Absent if it names none, a text that cannot be a port's name, or the daemon's
/// own port.
[[nodiscard]] std::optional<QString> replyPortOf(const QVariantMap &request);
