// SPDX-License-Identifier: MIT
// Turns SIGTERM, SIGINT and SIGHUP (the end of the session) into an orderly quit of the event loop.
#pragma once

#include <QObject>

/// While it lives, each of the three emits terminationRequested() on the thread of this object. One instance a process.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested(int signalNumber);

private:
    void readSignal();
};
