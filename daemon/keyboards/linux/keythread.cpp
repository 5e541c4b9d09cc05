// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keythread.h"

#include "daemon/keyboards/linux/epolldispatcher.h"
#include "daemon/keyboards/linux/realtime.h"
#include "daemon/system/logging.h"

KeyThread::KeyThread(QObject *parent)
    : QObject(parent), mChannel(std::make_unique<LinuxKeyChannel>()), mKeys(std::make_unique<KeyPath>(*mChannel))
{
    mThread.setObjectName(QLatin1StringView("keys"));
    mThread.setEventDispatcher(new EpollDispatcher); // owned by the thread
    mAnchor.moveToThread(&mThread);
    mChannel->moveToThread(&mThread);
    mKeys->moveToThread(&mThread);
    mThread.start();
    QMetaObject::invokeMethod(
        &mAnchor, [this] { prepare(); }, Qt::QueuedConnection);
}

KeyThread::~KeyThread()
{
    QMetaObject::invokeMethod(
        &mAnchor,
        [this] {
            mChannel->removeAllNodes(); // must be able to release its keys through the path
            mKeys.reset();
            mChannel.reset();
            mWatch.reset();
        },
        Qt::BlockingQueuedConnection);
    mThread.quit();
    mThread.wait();
}

/// Runs on the key thread.
void KeyThread::prepare()
{
    mWatch = std::make_unique<StallWatch>();
    const std::size_t locked = Realtime::lockMemory();
    const bool isRealTime = Realtime::raiseCurrentThread();
    const pid_t thread = Realtime::currentThread();
    QMetaObject::invokeMethod(
        this,
        [this, isRealTime, thread, locked, isWatched = mWatch->isUsable()] {
            if (!isWatched)
                qCCritical(lcKeyboard, "daemon: no timer, so the key thread is not watched");
            if (locked == 0)
                qCInfo(lcKeyboard, "desktop: memory cannot be locked, keys may wait for it under load");
            if (isRealTime)
                return setRealTime(true);
            Realtime::askRealtimeKit(thread, this, [this](bool isGiven) { setRealTime(isGiven); });
        },
        Qt::QueuedConnection);
}

void KeyThread::setRealTime(bool isRealTime)
{
    qCInfo(lcKeyboard, "key thread started, real-time priority %s",
           isRealTime ? "given" : "not given: keys may wait for other programs under load");
    if (std::exchange(mIsRealTime, isRealTime) != isRealTime)
        Q_EMIT realTimeChanged();
}
