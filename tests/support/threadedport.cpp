// SPDX-License-Identifier: MIT
#include "tests/support/threadedport.h"

#include "platform/sessionbus.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

ThreadedPort::ThreadedPort(const QString &name, const LocalMessagePort::Callback &callback)
    : mConnectionName(u"threaded-port-%1"_s.arg(quintptr(this)))
{
    mThread.run([&] {
        const auto connection = openSessionBus(mConnectionName);
        mPort = LocalMessagePort::create(name, callback, connection);
        mIsServing = mPort != nullptr;
    });
}

ThreadedPort::~ThreadedPort()
{
    mThread.run([this] {
        mPort.reset();
        QDBusConnection::disconnectFromBus(mConnectionName);
    });
}
