// SPDX-License-Identifier: MIT
#include "daemonlink/latestreplyslot.h"

LatestReplySlot &LatestReplySlot::shared()
{
    static LatestReplySlot slot;
    return slot;
}

std::optional<QVariantMap> LatestReplySlot::read() const
{
    const std::scoped_lock lock(mMutex);
    return mReply;
}

void LatestReplySlot::replace(QVariantMap reply)
{
    {
        const std::scoped_lock lock(mMutex);
        mReply = std::move(reply);
    }
    mArrived.notify_all();
}

void LatestReplySlot::clear()
{
    const std::scoped_lock lock(mMutex);
    mReply.reset();
}

std::optional<QVariantMap> LatestReplySlot::take()
{
    const std::scoped_lock lock(mMutex);
    return std::exchange(mReply, std::nullopt);
}

std::optional<QVariantMap> LatestReplySlot::takeIf(const std::function<bool(const QVariantMap &)> &isWanted)
{
    const std::scoped_lock lock(mMutex);
    if (!mReply || !isWanted(*mReply))
        return {};
    return std::exchange(mReply, std::nullopt);
}

bool LatestReplySlot::holdsReply() const
{
    const std::scoped_lock lock(mMutex);
    return mReply.has_value();
}

void LatestReplySlot::waitFor(std::chrono::microseconds limit) const
{
    std::unique_lock lock(mMutex);
    mArrived.wait_for(lock, limit, [this] { return mReply.has_value(); });
}
