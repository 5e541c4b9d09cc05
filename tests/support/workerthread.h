// SPDX-License-Identifier: MIT
// A thread with an event loop that runs what it is given, for parts of a test that must work while the main thread
// blocks.
#pragma once

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

class QAbstractEventDispatcher;

/// Any thread may call run(). Work is handed over under a standard mutex and not through Qt's event queue, since
/// ThreadSanitizer sees no order in what passes through libraries that were built without it.
class WorkerThread
{
public:
    WorkerThread();
    ~WorkerThread();
    Q_DISABLE_COPY_MOVE(WorkerThread)

    /// Runs `work` on the thread and waits until it is done; at once when called on the thread itself.
    void run(const std::function<void()> &work);

    /// An object that lives on the thread, for what needs one there (timers). To be used on the thread.
    [[nodiscard]] QObject *context() const { return mContext; }

private:
    void serve();
    void runPending();

    std::mutex mMutex; // guards what follows
    std::condition_variable mChanged;
    std::deque<const std::function<void()> *> mPending;
    int mFinished = 0; // pieces of work, in the order in which they came
    int mAccepted = 0;
    bool mIsEnding = false;
    QAbstractEventDispatcher *mDispatcher = nullptr;

    QObject *mContext = nullptr; // used on the thread
    std::thread mThread;
};
