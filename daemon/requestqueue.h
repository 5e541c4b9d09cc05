// SPDX-License-Identifier: MIT
// The requests that wait for the daemon's main thread: in order for each sender, and in turns between senders. The
// thread of the request port adds them, the main thread takes them; any thread may call every function.
#pragma once

#include "base/status.h"
#include "daemon/requestmessage.h"
#include "daemon/settings/settingsdocument.h"

#include <QHash>
#include <QString>

#include <deque>
#include <functional>
#include <mutex>
#include <optional>

/// Bounded, so that a client that sends faster than the disk writes takes neither the memory nor the turns of others.
class RequestQueue
{
public:
    /// Data of one message: what a request with the largest document needs as a binary property list. The rest of such
    /// a request is small.
    static constexpr qsizetype maximumMessageBytes = SettingsDocument::maximumBinaryBytes + 64 * 1024;
    static constexpr qsizetype maximumRequestsOfSender = 256;
    static constexpr qsizetype maximumBytesOfSender = maximumMessageBytes;
    static constexpr qsizetype maximumRequests = 4096; ///< of all senders
    static constexpr qsizetype maximumBytes = 2 * maximumMessageBytes;

    /// Adds a request of `sender`, a name of the bus. Status::ok, or why it is refused: Status::limitReached for a
    /// message that is too large, Status::busy when too much is waiting already.
    [[nodiscard]] Status add(const QString &sender, RequestMessage message);

    /// The first request of the sender whose turn it is; absent when nothing waits.
    [[nodiscard]] std::optional<RequestMessage> take();
    /// The same of the first sender in turn whose first request is wanted.
    [[nodiscard]] std::optional<RequestMessage> takeIf(const std::function<bool(const RequestMessage &)> &isWanted);

    [[nodiscard]] bool isEmpty() const;
    /// How many requests were refused since the last call.
    [[nodiscard]] int takeRefusedCount();

private:
    struct Waiting
    {
        std::deque<RequestMessage> requests; // not empty
        qsizetype bytes = 0;
    };

    [[nodiscard]] Status refusalOf(const QString &sender, qsizetype bytes) const;

    mutable std::mutex mMutex; // guards what follows
    QHash<QString, Waiting> mSenders;
    std::deque<QString> mTurns; // the senders in the order of their turns
    qsizetype mCount = 0;
    qsizetype mBytes = 0;
    int mRefusedCount = 0;
};
