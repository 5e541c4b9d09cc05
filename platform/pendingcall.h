// SPDX-License-Identifier: MIT
// Waits for the answer of a call on the bus without processing an event. Any thread.
#pragma once

#include <QDBusPendingCall>

#include <chrono>
#include <functional>

/// Calls `whileWaiting` again and again until `call` is finished or `limit` has passed. QtDBus has no wait with a
/// limit. The pauses grow with the wait, so an answer that comes at once is noticed at once. False if it has not come.
[[nodiscard]] bool pollUntilFinished(const QDBusPendingCall &call, const std::function<void()> &whileWaiting,
                                     std::chrono::nanoseconds limit = std::chrono::nanoseconds::max());
