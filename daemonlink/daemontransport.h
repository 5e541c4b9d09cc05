// SPDX-License-Identifier: MIT
// Requests to the device daemon, and the wait for its replies.
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

/// Sends `request` to the daemon's request port under the message identifier `command`; the answer is ignored, and
/// nothing is sent when the port does not exist. Returns -50 whatever happened, deliberately: success is learnt only
/// from the latest-reply slot. Any thread; blocks it for at most about 4 seconds. `meanwhile` is called once: when the
/// request is on its way, or when there is no port to send it to.
int sendDaemonRequest(const std::optional<QVariantMap> &request, int command,
                      const std::function<void()> &meanwhile = {});

/// What the reply port does with one message: no data leaves the slot as it was; anything else goes into the slot,
/// decoded (an empty dictionary when it cannot be), and is returned as the answer to the sender.
std::optional<QByteArray> replyPortCallback(int messageIdentifier, const std::optional<QByteArray> &data);

/// Waits until the latest-reply slot holds a reply: 601 polls with a pause of at most 0.01 s between them, each pause
/// ending early when a reply arrives. Never empties the slot. Blocks the calling thread without an event loop.
void waitForReply();

/// Sets the longest pause of waitForReply(), so that tests of a silent daemon need not wait 6 s for each command.
void setReplyPollInterval(std::chrono::microseconds interval);
