// SPDX-License-Identifier: MIT
// The process's latest reply. The reply-port thread stores it, and the thread that sent a request takes it out.
#pragma once

#include <QVariantMap>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

/// One place for one reply; a newer reply replaces an older one. Every operation is atomic; any thread may call it. A
/// reply is not matched to its request: the next waiter takes whatever is there. Deliberate.
class LatestReplySlot
{
public:
    /// Returns the slot of this process.
    static LatestReplySlot &shared();

    /// Returns a copy of the reply held, if any.
    [[nodiscard]] std::optional<QVariantMap> read() const;

    /// Stores `reply` in place of the reply held, if any.
    void replace(QVariantMap reply);

    void clear();

    /// Returns the reply held, if any, and empties the slot.
    [[nodiscard]] std::optional<QVariantMap> take();

    /// Does the same if `isWanted` accepts the reply; otherwise leaves the slot unchanged.
    [[nodiscard]] std::optional<QVariantMap> takeIf(const std::function<bool(const QVariantMap &)> &isWanted);

    [[nodiscard]] bool holdsReply() const;

    /// Waits until a reply is there or `limit` has passed. Never empties the slot.
    void waitFor(std::chrono::microseconds limit) const;

private:
    mutable std::mutex mMutex;
    mutable std::condition_variable mArrived;
    std::optional<QVariantMap> mReply;
};
