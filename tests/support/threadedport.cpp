// SPDX-License-Identifier: MIT
#include "tests/support/threadedport.h"

using namespace Qt::StringLiterals;

ThreadedPort::ThreadedPort(const QString &name, LocalMessagePort::Callback callback)
    : mConnectionName(u"threaded-port-%1"_s.arg(quintptr(this)))
{
    mContext.moveToThread(&mThread);
    mThread.start();
    QMetaObject::invokeMethod(
        &mContext,
        [&] {
            const auto connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, mConnectionName);
            mPort = LocalMessagePort::create(name, std::move(callback), connection);
            mIsServing = mPort != nullptr;
        },
        Qt::BlockingQueuedConnection);
}

ThreadedPort::~ThreadedPort()
{
    QMetaObject::invokeMethod(
        &mContext,
        [this] {
            mPort.reset();
            mContext.moveToThread(nullptr);
        },
        Qt::BlockingQueuedConnection);
    mThread.quit();
    mThread.wait();
    QDBusConnection::disconnectFromBus(mConnectionName);
}
