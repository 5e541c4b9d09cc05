// SPDX-License-Identifier: MIT
// Sends requests to the daemon and waits for its replies.
#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

inline constexpr int replyPollCount = 601;
inline constexpr std::chrono::microseconds replyPollInterval{10'000};
inline constexpr std::chrono::milliseconds requestSendTimeout{2000};
inline constexpr std::chrono::milliseconds requestReceiveTimeout{2000};

/// Sends `request` to the daemon's request port under the message identifier `command`. Ignores the answer, and sends
/// nothing when the port does not exist. Always returns -50, deliberately: only the latest-reply slot shows a success.
/// Calls `meanwhile` once: when the request is on its way, or when there is no port. Calls `whileWaiting` again and
/// again while it waits for the answer, about 10 ms apart or less. Any thread; blocks it for at most about 4 seconds.
int sendDaemonRequest(const std::optional<QVariantMap> &request, int command,
                      const std::function<void()> &meanwhile = {}, const std::function<void()> &whileWaiting = {});

/// Handles one message of the reply port. Without data the slot stays unchanged. Otherwise stores the decoded data in
/// the slot (an empty dictionary when it cannot be decoded) and returns `data` as the answer to the sender.
std::optional<QByteArray> replyPortCallback(int messageIdentifier, const std::optional<QByteArray> &data);

/// Waits until the latest-reply slot holds a reply. Makes 601 polls with a pause of at most 0.01 s between them; a
/// reply ends the pause early. Never empties the slot. Blocks the calling thread without an event loop. Calls
/// `whileWaiting` after each poll without a reply.
void waitForReply(const std::function<void()> &whileWaiting = {});

/// The longest wait of waitForReply().
[[nodiscard]] std::chrono::microseconds replyTimeout();

/// Sets the longest pause of waitForReply(). Tests of a silent daemon then need not wait 6 s for each command.
void setReplyPollInterval(std::chrono::microseconds interval);
