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
    std::optional<QByteArray> data; ///< a dictionary as a property list, or the message is dropped
    /// The time since boot at which the daemon read it. Absent: it waited for a daemon that stood still, so that its
    /// client waits no longer.
    std::optional<std::chrono::microseconds> readAt;
};

/// The port to which the reply to `request` goes. Absent when it names none, or one that cannot be replied to: a text
/// that can be no port's name, or the daemon's own port.
[[nodiscard]] std::optional<QString> replyPortOf(const QVariantMap &request);
