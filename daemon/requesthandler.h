// SPDX-License-Identifier: MIT
// Takes the messages of the request port: reads the request, hands it to the part whose job it is, and replies. Owned
// by the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/requestmessage.h"
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

/// The reply leaves before the notification that follows a change. A reply that comes too late is not sent, because its
/// client would take it for the answer to its next request; the notification then names the daemon as its source, so
/// that the client reads the document again. Every failure is logged.
class RequestHandler
{
public:
    /// All must live longer.
    RequestHandler(CurrentSettings &settings, ProfileSwitch &profiles, CaptureCommands &captures,
                   const CurrentKeyboard &keyboard, const DaemonOutlets &outlets);

    void handleMessage(const RequestMessage &message);

private:
    struct Request
    {
        qint32 number = 0;
        QVariantMap values;
        std::optional<QString> replyPort;                // absent: no client waits for a reply
        std::optional<std::chrono::microseconds> readAt; // as in RequestMessage
    };

    void handle(const Request &request);
    void openDevice(const Request &request);
    void postFirmwareVersion();
    /// Replies with the outcome of a command. Then notifies the clients if the document has changed from `before`.
    void finish(const Request &request, const QVariantMap &before, const CommandOutcome &outcome,
                ReturnsDocument returnsDocument);
    /// Replies to a client that wants keys. If that is too late, the client does not know that it has them.
    void replyToCapture(const Request &request, Status status);
    /// False when it is too late for a reply.
    bool reply(const Request &request, Status status, QVariantMap values = {});
    [[nodiscard]] bool isTooLate(const Request &request) const;
    void postUpdated(const Request &request, bool isReplyInTime);

    CurrentSettings &mSettings;
    ProfileSwitch &mProfiles;
    CaptureCommands &mCaptures;
    const CurrentKeyboard &mKeyboard;
    const DaemonOutlets &mOutlets;
};
