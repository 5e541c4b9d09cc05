// SPDX-License-Identifier: MIT
// Every way in which the daemon acts on the world, as functions that tests can replace. Owned by the DeviceDaemon,
// whose parts refer to it; main thread only.
#pragma once

#include "daemon/system/bootclock.h"

#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

struct DaemonServices
{
    using Time = std::chrono::microseconds; ///< since any fixed moment; never goes backwards

    /// Sends a reply to the port `portName`. Must not wait for the client.
    std::function<void(const QString &portName, qint32 command, const QVariantMap &reply)> sendReply;
    std::function<void(const QString &name, const QVariantMap &userInfo)> postNotification;
    /// Calls DeviceDaemon::clientVanished() when the port loses its owner. An empty name ends the watch.
    std::function<void(const QString &portName)> watchClient;
    /// The unique name on the bus of the program that had the port when its watch began; empty if none had it.
    std::function<QString()> watchedProgram = [] { return QString(); };
    std::function<void(const QString &program)> launchProgram;
    std::function<Time()> now;
    /// The clock of RequestMessage::readAt.
    std::function<Time()> sinceBoot = timeSinceBoot;
    /// Requests a call of DeviceDaemon::wake() at this time or soon after it. Each call replaces the time of the one
    /// before; an absent time cancels it.
    std::function<void(std::optional<Time>)> wakeAt = [](std::optional<Time>) {};
    /// Shows the user that the profile `name` is now active. Must not wait.
    std::function<void(const QString &name)> showProfile = [](const QString &) {};
};
