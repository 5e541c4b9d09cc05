// SPDX-License-Identifier: MIT
// Everything that the daemon does to the world, as functions, so that tests can put their own in place. Owned by the
// DeviceDaemon, whose parts refer to it; one thread, the daemon's.
#pragma once

#include "daemon/system/bootclock.h"

#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

struct DaemonOutlets
{
    using Time = std::chrono::microseconds; ///< since any fixed moment; never goes backwards

    /// Sends a reply to the port `portName`; must not wait for the client.
    std::function<void(const QString &portName, qint32 command, const QVariantMap &reply)> sendReply;
    std::function<void(const QString &name, const QVariantMap &userInfo)> postNotification;
    /// Calls DeviceDaemon::clientVanished() when the owner of the port is gone. An empty name ends the watch.
    std::function<void(const QString &portName)> watchClient;
    std::function<void(const QString &program)> launchProgram;
    std::function<Time()> now;
    /// The clock of RequestMessage::readAt.
    std::function<Time()> sinceBoot = timeSinceBoot;
    /// Asks for a call of DeviceDaemon::wake() at this time, or soon after it. Each call replaces the time asked for
    /// before; an absent time asks for none.
    std::function<void(std::optional<Time>)> wakeAt = [](std::optional<Time>) {};
    /// Shows the user that the profile `name` is now the active one; must not wait.
    std::function<void(const QString &name)> showProfile = [](const QString &) {};
};
