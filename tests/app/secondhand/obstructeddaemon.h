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

/// Owns the request port from construction to destruction. The functions may be called from any thread.
class ObstructedDaemon
{
public:
    using Command = DaemonProtocol::Command;

    /// `document`: a valid settings document.
    explicit ObstructedDaemon(const QVariantMap &document);
    ~ObstructedDaemon();
    Q_DISABLE_COPY_MOVE(ObstructedDaemon)

    /// From now on obstructs this command of the configurator, but not of other clients. The configurator does not wait
    /// for the reply to an unanswered command.
    void setObstructed(const std::optional<ObstructedCommand> &command);
    /// Whether an obstructed command was received.
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
    std::unique_ptr<Parts> mParts; // made, used and destroyed on mThread
    WorkerThread mThread;
};
