// SPDX-License-Identifier: MIT
// A thread with an event loop that runs given functions, for parts of a test that must work while the main thread
// blocks.
#pragma once

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

class QAbstractEventDispatcher;

/// Any thread may call run(). A standard mutex, not Qt's event queue, protects the hand-over of work, because
/// ThreadSanitizer cannot see the order in libraries that were built without it.
class WorkerThread
{
public:
    WorkerThread();
    ~WorkerThread();
    Q_DISABLE_COPY_MOVE(WorkerThread)

    /// Runs `work` on the thread and waits until it is done. A call on the thread itself runs it at once.
    void run(const std::function<void()> &work);

    /// An object that lives on the thread, for code that needs one there (timers). Must be used on the thread.
    [[nodiscard]] QObject *context() const { return mContext; }

private:
    void serve();
    void runPending();

    std::mutex mMutex; // guards the members below
    std::condition_variable mChanged;
    std::deque<const std::function<void()> *> mPending;
    int mFinished = 0; // pieces of work, in the order of their arrival
    int mAccepted = 0;
    bool mIsEnding = false;
    QAbstractEventDispatcher *mDispatcher = nullptr;

    QObject *mContext = nullptr; // used on the thread
    std::thread mThread;
};
