// SPDX-License-Identifier: MIT
// A try of a macro in the daemon, over its object /Macros. Never waits for the daemon. Main thread only.
#pragma once

#include "macros/macrotry.h"

#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>

#include <optional>

class ServiceStatus;

class MacroTryLink : public QObject
{
    Q_OBJECT

public:
    /// Follows the daemon that `service` follows.
    explicit MacroTryLink(const ServiceStatus &service, QObject *parent = nullptr);

    /// Starts a try, in the place of an earlier one, which ends without ended(). `macroId`: the record's own "macroID".
    /// `repeat`: as "param2" of a key that plays the macro.
    void start(int macroId, int repeat);
    /// Ends the try without ended(). played() may still come, with the releases of what the macro held.
    void stop();

Q_SIGNALS:
    void played(const QList<TriedKey> &keys);
    /// Once for each start(), unless stop() or another start() came first.
    void ended(TryEnd end);

private Q_SLOTS:
    void noteSignal(const QDBusMessage &message);

private:
    /// A try from its start() to its last signal.
    struct Try
    {
        QString daemon = {};            ///< the unique name on the bus of the program that plays it; empty at first
        uint number = 0;                ///< 0 before the reply
        QList<QDBusMessage> early = {}; ///< signals before the reply
        bool isStopped = false;
    };

    void takeReply(const QDBusMessage &reply);
    void handle(const QDBusMessage &message);
    void end(TryEnd end);
    void sendStop();

    std::optional<Try> mTry;
    bool mIsListening = false;
    quint64 mStarts = 0; ///< a reply to an earlier call belongs to no try
};
