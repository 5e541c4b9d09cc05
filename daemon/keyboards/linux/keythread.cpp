// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keythread.h"

#include "daemon/keyboards/linux/epolldispatcher.h"
#include "daemon/keyboards/linux/realtime.h"
#include "daemon/system/handover.h"
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
    QMetaObject::invokeMethod(&mAnchor, HandOver::Call{[this] { prepare(); }}, Qt::QueuedConnection);
}

KeyThread::~KeyThread()
{
    QMetaObject::invokeMethod(&mAnchor, HandOver::Call{[this] {
        mChannel->removeAllNodes(); // must be able to release its keys through the path
        mKeys.reset();
        mChannel.reset();
        mWatch.reset();
    }},
                              Qt::BlockingQueuedConnection);
    HandOver::take();
    mThread.quit();
    mThread.wait();
}

/// Runs on the key thread.
void KeyThread::prepare()
{
    mWatch = std::make_unique<StallWatch>();
    const std::size_t locked = Realtime::lockMemory();
    (void)Realtime::raiseCurrentThread(); // the keeper looks at the result
    const pid_t thread = Realtime::currentThread();
    QMetaObject::invokeMethod(this, HandOver::Call{[this, thread, locked, isWatched = mWatch->isUsable()] {
                                  if (!isWatched)
                                      qCCritical(lcKeyboard, "daemon: no timer, so the key thread is not watched");
                                  if (locked == 0)
                                      qCInfo(lcKeyboard,
                                             "desktop: memory cannot be locked, keys may wait for it under load");
                                  keepRealTime(thread);
                              }},
                              Qt::QueuedConnection);
}

void KeyThread::keepRealTime(pid_t thread)
{
    mThreadId = thread;
    mRealtime = std::make_unique<RealtimeKeeper>(RealtimeKeeper::Services{
        .isRealTime = [thread] { return Realtime::isRealTime(thread); },
        .request =
            [this, thread](const std::function<void()> &answered) {
                Realtime::askRealtimeKit(QDBusConnection::systemBus(), thread, this, [answered](bool) { answered(); });
            }});
    connect(mRealtime.get(), &RealtimeKeeper::found, this, [this](bool isRealTime) {
        qCInfo(lcKeyboard, "key thread runs, real-time priority %s",
               isRealTime ? "given" : "not given: keys may wait for other programs under load");
        Q_EMIT realTimeChanged();
    });
    mRealtime->start();
}

bool KeyThread::isRealTime() const
{
    return mThreadId != 0 && Realtime::isRealTime(mThreadId);
}
