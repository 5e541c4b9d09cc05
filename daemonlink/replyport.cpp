// SPDX-License-Identifier: MIT
#include "daemonlink/replyport.h"

#include "daemonlink/daemontransport.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <chrono>

ReplyPort::ReplyPort(QString portName, QObject *parent) : QThread(parent), mPortName(std::move(portName))
{
    setObjectName(mPortName);
}

ReplyPort::~ReplyPort()
{
    quit();
    wait();
    const std::scoped_lock lock(mMutex); // the lock orders this after the thread's last change
}

bool ReplyPort::waitUntilServing(int limitMs)
{
    std::unique_lock lock(mMutex);
    mStateChanged.wait_for(lock, std::chrono::milliseconds(limitMs), [this] { return mState != State::starting; });
    return mState == State::serving;
}

void ReplyPort::post(const QDBusMessage &message)
{
    const std::scoped_lock lock(mMutex);
    if (mState == State::serving)
        QDBusConnection(connectionName()).send(message);
}

QString ReplyPort::connectionName() const
{
    return mPortName + QLatin1Char('-') + QString::number(quintptr(this), 16);
}

void ReplyPort::run()
{
    {
        QDBusConnection connection = openSessionBus(connectionName());
        const std::unique_ptr<LocalMessagePort> port =
            LocalMessagePort::create(mPortName, replyPortCallback, connection);
        setState(port ? State::serving : State::failed);
        exec();
    }
    QDBusConnection::disconnectFromBus(connectionName());
    setState(State::ended);
}

void ReplyPort::setState(State state)
{
    {
        const std::scoped_lock lock(mMutex);
        mState = state;
    }
    mStateChanged.notify_all();
}
