// SPDX-License-Identifier: MIT
// Takes the messages of the request port: reads the request, hands it to the part whose job it is, and replies. Owned
// by the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/settings/documentcommands.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

class CaptureCommands;
class CurrentKeyboard;
class CurrentSettings;
struct DaemonOutlets;
class ProfileSwitch;

/// The reply leaves before the notification that follows a change. Every failure is logged.
class RequestHandler
{
public:
    /// All must live longer.
    RequestHandler(CurrentSettings &settings, ProfileSwitch &profiles, CaptureCommands &captures,
                   const CurrentKeyboard &keyboard, const DaemonOutlets &outlets);

    /// One message; `data` is a dictionary as a property list, or the message is dropped.
    void handleMessage(qint32 number, const std::optional<QByteArray> &data);

private:
    struct Request
    {
        qint32 number = 0;
        QVariantMap values;
        std::optional<QString> replyPort; // absent: no client waits for a reply
    };

    void handle(const Request &request);
    void openDevice(const Request &request);
    void postFirmwareVersion();
    /// Replies with the outcome of a command. Then notifies the clients if the document has changed from `before`.
    void finish(const Request &request, const QVariantMap &before, const CommandOutcome &outcome,
                ReturnsDocument returnsDocument);
    void reply(const Request &request, Status status, QVariantMap values = {});

    CurrentSettings &mSettings;
    ProfileSwitch &mProfiles;
    CaptureCommands &mCaptures;
    const CurrentKeyboard &mKeyboard;
    const DaemonOutlets &mOutlets;
};
