// SPDX-License-Identifier: MIT
// The way of a request from the bus to the main thread: the request port fills a queue, and the main thread empties it
// in turns. Owned by the DaemonSession; main thread only.
#pragma once

#include "daemon/requestport.h"
#include "daemon/requestqueue.h"

#include <QTimer>

#include <functional>

/// Gives the main thread one turn in each round of its event loop, so keys get their turn between two requests.
class RequestTurns
{
public:
    /// As RequestHandler::handleNext().
    using HandleNext = std::function<bool(RequestQueue &)>;

    RequestTurns(const QDBusConnection &bus, HandleNext handleNext);

    /// As RequestPort::serve(). Requests wait until the event loop runs.
    [[nodiscard]] bool serve() { return mPort.serve(); }

private:
    [[nodiscard]] Status add(const QString &sender, const RequestMessage &message);
    void takeTurn();

    HandleNext mHandleNext;
    RequestQueue mQueue;
    QTimer mTurn; // runs while requests wait
    // Last, so its thread ends first: it uses the queue and the timer.
    RequestPort mPort;
};
