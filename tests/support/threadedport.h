// SPDX-License-Identifier: MIT
// A message port with its own thread and bus connection, as in another process.
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

    /// Returns false when the name was taken.
    [[nodiscard]] bool isServing() const { return mIsServing; }

private:
    QString mConnectionName;
    std::unique_ptr<LocalMessagePort> mPort; // used on mThread only
    bool mIsServing = false;
    WorkerThread mThread;
};
