// SPDX-License-Identifier: MIT
// Notices that the process was stopped and runs again (SIGCONT). Lives on the thread that wants to know and may be used
// on no other; one instance a process.
#pragma once

#include <QObject>

/// The handler runs on this thread before anything else that the thread does after the stop, provided that every other
/// thread blocks the signal.
class ContinueSignal : public QObject
{
    Q_OBJECT

public:
    explicit ContinueSignal(QObject *parent = nullptr);
    ~ContinueSignal() override;

    /// Blocks the signal on this thread and on those that it starts. Must be called before the process has others.
    static void block();

    /// Whether the process has been continued since the last call.
    [[nodiscard]] bool take();

Q_SIGNALS:
    void received();

private:
    void drain();
};
