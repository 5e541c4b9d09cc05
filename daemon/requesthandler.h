// SPDX-License-Identifier: MIT
// Reads each request of the request port, hands it to the part responsible, and replies. Owned by the DeviceDaemon;
// main thread only.
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
struct DaemonServices;
class ProfileSwitch;
class RequestQueue;

/// Changes that wait at the same time share one write, because many take the disk as long as one. Each client still
/// gets the document as its own change has left it, and no reply leaves before the write. If the write fails, each
/// change is carried out separately, so a change too large for the disk fails alone. A reply leaves before the
/// notification of its change. A late reply is not sent, because its client would take it for the answer to its next
/// request. The notification then names the daemon as its source, so the client reads the document again. Every failure
/// is logged.
class RequestHandler
{
public:
    /// All arguments must outlive this.
    RequestHandler(CurrentSettings &settings, ProfileSwitch &profiles, CaptureCommands &captures,
                   const CurrentKeyboard &keyboard, const DaemonServices &services);

    void handleMessage(const RequestMessage &message);
    /// Handles the next request of the queue, and changes that can share its write. Returns true if more work waits:
    /// the caller must call again after a turn of the event loop.
    [[nodiscard]] bool handleNext(RequestQueue &queue);

private:
    static constexpr std::size_t maximumSharing = 32;           // changes that share a write
    static constexpr std::chrono::milliseconds sharingTime{10}; // the longest time for gathering changes

    struct Request
    {
        qint32 number = 0;
        QVariantMap values;
        std::optional<QString> replyPort;                // absent: the client expects no reply
        std::optional<std::chrono::microseconds> readAt; // as in RequestMessage
    };

    struct Change
    {
        Request request;
        const DocumentCommand *command = nullptr;
        CommandOutcome outcome;
    };

    /// Absent, and logged, if the message is not a request.
    [[nodiscard]] static std::optional<Request> read(const RequestMessage &message);
    void handle(const Request &request);
    /// Carries out a command on the document, together with the changes in `queue` that can share its write.
    void carryOut(const Request &request, const DocumentCommand &command, RequestQueue *queue = nullptr);
    [[nodiscard]] Change plan(const Request &request, const DocumentCommand &command);
    void finish(const Change &change);
    void openDevice(const Request &request);
    void postFirmwareVersion();
    /// Replies with the outcome of a command. Then notifies the clients if the document has changed from `before`.
    /// False when it was too late for the reply.
    bool finish(const Request &request, const QVariantMap &before, const CommandOutcome &outcome,
                ReturnsDocument returnsDocument);
    /// Replies to a client that captures keys. If the reply comes too late, the capture ends: the client does not know
    /// of it.
    void replyToCapture(const Request &request, Status status);
    /// False if it is too late for a reply.
    bool reply(const Request &request, Status status, QVariantMap values = {});
    [[nodiscard]] bool isTooLate(const Request &request) const;
    void postUpdated(const Request &request, bool isReplyInTime);

    CurrentSettings &mSettings;
    ProfileSwitch &mProfiles;
    CaptureCommands &mCaptures;
    const CurrentKeyboard &mKeyboard;
    const DaemonServices &mServices;
    std::deque<Request> mOneByOne; // changes whose shared write has failed; handled before other requests
};
