// SPDX-License-Identifier: MIT
// The process's latest reply: the reply-port thread puts it in, the thread that sent a request takes it out.
#pragma once

#include <QVariantMap>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

/// One place for one reply; a newer reply replaces an older one. Every operation is atomic; any thread may call it.
/// A reply is not matched to the request that caused it: the next waiter takes whatever is there. Deliberate.
class LatestReplySlot
{
public:
    /// The slot of this process.
    static LatestReplySlot &shared();

    /// A copy of the reply held, if any.
    [[nodiscard]] std::optional<QVariantMap> read() const;

    /// Puts `reply` in the place of whatever was there.
    void replace(QVariantMap reply);

    void clear();

    /// The reply held, if any; the slot is empty afterwards.
    [[nodiscard]] std::optional<QVariantMap> take();

    /// The same where `isWanted` accepts the reply; otherwise the slot is left as it is.
    [[nodiscard]] std::optional<QVariantMap> takeIf(const std::function<bool(const QVariantMap &)> &isWanted);

    [[nodiscard]] bool holdsReply() const;

    /// Waits until a reply is there or `limit` has passed. Never empties the slot.
    void waitFor(std::chrono::microseconds limit) const;

private:
    mutable std::mutex mMutex;
    mutable std::condition_variable mArrived;
    std::optional<QVariantMap> mReply;
};
