// SPDX-License-Identifier: MIT
// The requests that wait for the main thread: in order for each sender, in turn between senders. The thread of the
// request port adds them and the main thread takes them. Any thread may call every function.
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

/// Bounded. A client that sends faster than the disk writes therefore uses up neither the memory nor the turns of
/// others.
class RequestQueue
{
public:
    /// The data of one message: the largest document as a binary property list, and a margin for the rest of the
    /// request.
    static constexpr qsizetype maximumMessageBytes = SettingsDocument::maximumBinaryBytes + 64 * 1024;
    static constexpr qsizetype maximumRequestsOfSender = 256;
    static constexpr qsizetype maximumBytesOfSender = maximumMessageBytes;
    static constexpr qsizetype maximumRequests = 4096; ///< of all senders
    static constexpr qsizetype maximumBytes = 2 * maximumMessageBytes;

    /// Adds a request of `sender`, a name of the bus. Returns Status::ok, Status::limitReached for a message that is
    /// too large, or Status::busy when too much is waiting already.
    [[nodiscard]] Status add(const QString &sender, RequestMessage message);

    /// Takes the first request of the sender whose turn it is; absent when nothing waits.
    [[nodiscard]] std::optional<RequestMessage> take();
    /// As take(), for the first sender in turn whose first request is wanted.
    [[nodiscard]] std::optional<RequestMessage> takeIf(const std::function<bool(const RequestMessage &)> &isWanted);

    [[nodiscard]] bool isEmpty() const;
    /// How many requests were refused since the last call.
    [[nodiscard]] int takeRefusedCount();

private:
    struct Waiting
    {
        std::deque<RequestMessage> requests; // never empty
        qsizetype bytes = 0;
    };

    [[nodiscard]] Status refusalOf(const QString &sender, qsizetype bytes) const;

    mutable std::mutex mMutex; // guards the following members
    QHash<QString, Waiting> mSenders;
    std::deque<QString> mTurns; // the senders in the order of their turns
    qsizetype mCount = 0;
    qsizetype mBytes = 0;
    int mRefusedCount = 0;
};
