// SPDX-License-Identifier: MIT
// The daemon with its rules, its store and its virtual keyboard, on a thread of the test. It can refuse one of the
// window's commands or leave it unanswered.
#pragma once

#include "tests/app/secondhand/ledger.h"
#include "tests/support/workerthread.h"

#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <optional>

/// Owns the request port from construction to destruction. Any thread may call the functions.
class ObstructedDaemon
{
public:
    using Command = DaemonProtocol::Command;

    /// `document`: a valid settings document.
    explicit ObstructedDaemon(const QVariantMap &document);
    ~ObstructedDaemon();
    Q_DISABLE_COPY_MOVE(ObstructedDaemon)

    /// Obstructs this command of the configurator from now on, but not of other clients. The configurator does not wait
    /// for the reply to an unanswered command.
    void setObstructed(const std::optional<ObstructedCommand> &command);
    /// Whether the daemon received an obstructed command.
    [[nodiscard]] bool hasObstructed() const;

private:
    struct Parts;

    std::optional<QByteArray> receive(qint32 number, const std::optional<QByteArray> &data);
    void refuse(qint32 number, Obstruction obstruction);
    void sendReply(const QString &port, qint32 number, const QVariantMap &reply) const;

    mutable std::mutex mMutex; // guards the next two
    std::optional<ObstructedCommand> mObstructed;
    bool mHasObstructed = false;

    QTemporaryDir mFolder;
    QString mConnectionName;
    std::unique_ptr<Parts> mParts; // created, used and destroyed on mThread
    WorkerThread mThread;
};
