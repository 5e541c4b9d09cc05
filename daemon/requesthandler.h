// SPDX-License-Identifier: MIT
// Takes the messages of the request port: reads the request, hands it to the part whose job it is, and replies. Owned
// by the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/requestmessage.h"
#include "daemon/settings/documentcommands.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>

class CaptureCommands;
class CurrentKeyboard;
class CurrentSettings;
struct DaemonOutlets;
class ProfileSwitch;
class RequestQueue;

/// Changes that wait at the same time share one write: the disk takes as long for many as for one. Each client still
/// gets the document as its own change has left it, and no reply leaves before the write. When that fails, each is
/// carried out by itself, so that one that is too large for the disk does not take the others with it. The reply leaves
/// before the notification that follows a change. A reply that comes too late is not sent, because its client would
/// take it for the answer to its next request; the notification then names the daemon as its source, so that the client
/// reads the document again. Every failure is logged.
class RequestHandler
{
public:
    /// All must live longer.
    RequestHandler(CurrentSettings &settings, ProfileSwitch &profiles, CaptureCommands &captures,
                   const CurrentKeyboard &keyboard, const DaemonOutlets &outlets);

    void handleMessage(const RequestMessage &message);
    /// The next request of the queue, and changes that can share its write. True when there is more to do: it is called
    /// again when the event loop has had its turn.
    [[nodiscard]] bool handleNext(RequestQueue &queue);

private:
    static constexpr std::size_t maximumSharing = 32;           // changes that share a write
    static constexpr std::chrono::milliseconds sharingTime{10}; // for which changes are gathered

    struct Request
    {
        qint32 number = 0;
        QVariantMap values;
        std::optional<QString> replyPort;                // absent: no client waits for a reply
        std::optional<std::chrono::microseconds> readAt; // as in RequestMessage
    };

    struct Change
    {
        Request request;
        const DocumentCommand *command = nullptr;
        CommandOutcome outcome;
    };

    /// Absent, and logged, when the message is not a request.
    [[nodiscard]] static std::optional<Request> read(const RequestMessage &message);
    void handle(const Request &request);
    /// Carries out a command on the document, and with it what `queue` holds that can share its write.
    void carryOut(const Request &request, const DocumentCommand &command, RequestQueue *queue = nullptr);
    [[nodiscard]] Change plan(const Request &request, const DocumentCommand &command);
    void finish(const Change &change);
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
    std::deque<Request> mOneByOne; // changes that could not be written together, to be carried out before others
};
