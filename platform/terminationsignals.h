// SPDX-License-Identifier: MIT
// Turns SIGTERM, SIGINT and SIGHUP (the end of the session) into an orderly quit of the event loop.
#pragma once

#include <QObject>

/// While the object exists, each of the three signals emits terminationRequested() on its thread. One instance per
/// process.
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
