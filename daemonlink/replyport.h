// SPDX-License-Identifier: MIT
// The reply port of this process, on a thread and a bus connection of its own.
#pragma once

#include <QDBusMessage>
#include <QString>
#include <QThread>

#include <condition_variable>
#include <mutex>

/// Serves from start() until the object is destroyed. Replies go to LatestReplySlot::shared(). If another process has
/// the port's name, the port serves nothing and reports nothing.
class ReplyPort : public QThread
{
    Q_OBJECT

public:
    explicit ReplyPort(QString portName, QObject *parent = nullptr);
    ~ReplyPort() override;

    /// Blocks until the port is registered or its registration has failed, at most `limitMs` milliseconds. True if it
    /// serves.
    bool waitUntilServing(int limitMs);
    /// Sends `message` without waiting, from the port's own connection: its receiver sees that the owner of the port
    /// has sent it. Sends nothing unless the port serves. Any thread.
    void post(const QDBusMessage &message);

protected:
    void run() override;

private:
    enum class State { starting, serving, failed, ended };

    void setState(State state);
    /// As QDBusConnection knows it.
    [[nodiscard]] QString connectionName() const;

    QString mPortName;
    std::mutex mMutex; // guards mState
    std::condition_variable mStateChanged;
    State mState = State::starting;
};
