// SPDX-License-Identifier: MIT
#include "tests/support/workerthread.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>

WorkerThread::WorkerThread() : mThread(&WorkerThread::serve, this)
{
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mDispatcher != nullptr; });
}

WorkerThread::~WorkerThread()
{
    {
        const std::scoped_lock lock(mMutex);
        mIsEnding = true;
        mDispatcher->wakeUp();
    }
    mThread.join();
}

void WorkerThread::run(const std::function<void()> &work)
{
    if (std::this_thread::get_id() == mThread.get_id()) {
        work();
        return;
    }
    std::unique_lock lock(mMutex);
    mPending.push_back(&work);
    const int own = ++mAccepted;
    mDispatcher->wakeUp();
    mChanged.wait(lock, [this, own] { return mFinished >= own; });
}

void WorkerThread::serve()
{
    QEventLoop loop;
    QObject context;
    mContext = &context;
    std::unique_lock lock(mMutex);
    mDispatcher = QAbstractEventDispatcher::instance();
    mChanged.notify_all();
    while (!mIsEnding) {
        lock.unlock();
        loop.processEvents(QEventLoop::WaitForMoreEvents); // returns at once after an earlier wake-up
        runPending();
        lock.lock();
    }
}

void WorkerThread::runPending()
{
    std::unique_lock lock(mMutex);
    while (!mPending.empty()) {
        const std::function<void()> &work = *mPending.front();
        mPending.pop_front();
        lock.unlock();
        work();
        lock.lock();
        ++mFinished;
        mChanged.notify_all();
    }
}
