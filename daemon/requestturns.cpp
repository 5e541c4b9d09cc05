// SPDX-License-Identifier: MIT
#include "daemon/requestturns.h"

#include "daemon/system/handover.h"

#include <utility>

RequestTurns::RequestTurns(const QDBusConnection &bus, HandleNext handleNext)
    : mHandleNext(std::move(handleNext)),
      mPort(bus, [this](const QString &sender, const RequestMessage &message) { return add(sender, message); })
{
    mTurn.callOnTimeout([this] { takeTurn(); });
}

/// Called on the thread of the request port.
Status RequestTurns::add(const QString &sender, const RequestMessage &message)
{
    const Status status = mQueue.add(sender, message);
    if (status == Status::ok)
        QMetaObject::invokeMethod(&mTurn, HandOver::Call{[this] { mTurn.start(); }}, Qt::QueuedConnection);
    return status;
}

void RequestTurns::takeTurn()
{
    if (!mHandleNext(mQueue))
        mTurn.stop();
}
