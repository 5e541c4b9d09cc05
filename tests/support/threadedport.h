// SPDX-License-Identifier: MIT
// A message port on a thread and a bus connection of its own, as another process would have it.
#pragma once

#include "platform/messageport.h"
#include "tests/support/workerthread.h"

#include <memory>

/// Serves from construction to destruction. The callback runs on the port's thread.
class ThreadedPort
{
public:
    ThreadedPort(const QString &name, const LocalMessagePort::Callback &callback);
    ~ThreadedPort();
    Q_DISABLE_COPY_MOVE(ThreadedPort)

    /// False when the name was taken.
    [[nodiscard]] bool isServing() const { return mIsServing; }

private:
    QString mConnectionName;
    std::unique_ptr<LocalMessagePort> mPort; // used on mThread only
    bool mIsServing = false;
    WorkerThread mThread;
};
