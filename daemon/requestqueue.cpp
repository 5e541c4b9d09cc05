// SPDX-License-Identifier: MIT
#include "daemon/requestqueue.h"

#include "base/propertylist.h"

#include <algorithm>
#include <utility>

static_assert(RequestQueue::maximumMessageBytes <= PropertyList::maximumInputBytes);

namespace {

qsizetype sizeOf(const RequestMessage &message)
{
    return message.data ? message.data->size() : 0;
}

} // namespace

Status RequestQueue::add(const QString &sender, RequestMessage message)
{
    const qsizetype bytes = sizeOf(message);
    const std::scoped_lock lock(mMutex);
    if (const Status refusal = refusalOf(sender, bytes); refusal != Status::ok) {
        ++mRefusedCount;
        return refusal;
    }
    Waiting &waiting = mSenders[sender];
    if (waiting.requests.empty())
        mTurns.push_back(sender);
    waiting.requests.push_back(std::move(message));
    waiting.bytes += bytes;
    mBytes += bytes;
    ++mCount;
    return Status::ok;
}

Status RequestQueue::refusalOf(const QString &sender, qsizetype bytes) const
{
    if (bytes > maximumMessageBytes)
        return Status::limitReached;
    if (mCount >= maximumRequests || mBytes + bytes > maximumBytes)
        return Status::busy;
    const auto waiting = mSenders.constFind(sender);
    if (waiting == mSenders.constEnd())
        return Status::ok;
    const bool isFull =
        std::ssize(waiting->requests) >= maximumRequestsOfSender || waiting->bytes + bytes > maximumBytesOfSender;
    return isFull ? Status::busy : Status::ok;
}

std::optional<RequestMessage> RequestQueue::take()
{
    return takeIf([](const RequestMessage &) { return true; });
}

std::optional<RequestMessage> RequestQueue::takeIf(const std::function<bool(const RequestMessage &)> &isWanted)
{
    const std::scoped_lock lock(mMutex);
    const auto turn = std::ranges::find_if(
        mTurns, [&](const QString &sender) { return isWanted(mSenders[sender].requests.front()); });
    if (turn == mTurns.end())
        return {};
    const QString sender = *turn;
    mTurns.erase(turn);
    Waiting &waiting = mSenders[sender];
    RequestMessage message = std::move(waiting.requests.front());
    waiting.requests.pop_front();
    waiting.bytes -= sizeOf(message);
    mBytes -= sizeOf(message);
    --mCount;
    if (waiting.requests.empty())
        mSenders.remove(sender);
    else
        mTurns.push_back(sender);
    return message;
}

bool RequestQueue::isEmpty() const
{
    const std::scoped_lock lock(mMutex);
    return mTurns.empty();
}

int RequestQueue::takeRefusedCount()
{
    const std::scoped_lock lock(mMutex);
    return std::exchange(mRefusedCount, 0);
}
