// SPDX-License-Identifier: MIT
// The reply port of this process, on a thread and a bus connection of its own.
#pragma once

#include <QString>
#include <QThread>

/// start() begins to serve; the thread runs until the object is destroyed. Replies go to LatestReplySlot::shared().
class ReplyPort : public QThread
{
    Q_OBJECT

public:
    explicit ReplyPort(QString portName, QObject *parent = nullptr);
    ~ReplyPort() override;

    /// Blocks until the port is registered or has failed to be, at most `limitMs` milliseconds; true when it is there.
    bool waitUntilServing(int limitMs);

protected:
    void run() override;

private:
    QString mPortName;
};
