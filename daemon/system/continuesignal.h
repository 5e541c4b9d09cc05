// SPDX-License-Identifier: MIT
// Notices that the process was stopped and has been continued (SIGCONT). Lives on the thread that needs this and must
// be used on that thread only. A process has one instance.
#pragma once

#include <QObject>

/// The signal handler runs on this thread before anything else that the thread does after the stop, provided that every
/// other thread blocks the signal.
class ContinueSignal : public QObject
{
    Q_OBJECT

public:
    explicit ContinueSignal(QObject *parent = nullptr);
    ~ContinueSignal() override;

    /// Blocks the signal on this thread and on the threads that it starts. Call this while the process has only one
    /// thread.
    static void block();

    /// Whether the process has been continued since the last call.
    [[nodiscard]] bool take();

Q_SIGNALS:
    void received();

private:
    void drain();
};
