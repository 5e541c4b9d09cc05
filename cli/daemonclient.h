// SPDX-License-Identifier: MIT
// kestractl's side of the daemon link: one request, one reply, through a reply port that only this process has.
#pragma once

#include "base/daemonprotocol.h"
#include "cli/commandresult.h"
#include "daemonlink/replyport.h"

#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

/// Main thread only. Each request blocks for at most about 12 seconds; the first one, which opens the reply port,
/// for 17.
class DaemonClient
{
public:
    DaemonClient();

    /// Sends one command and waits for its reply. `request` holds only the keys of that command: the product, the reply
    /// port and the sender are added here.
    [[nodiscard]] CommandResult<QVariantMap> send(DaemonProtocol::Command command, const QVariantMap &request = {});

    /// As send(), but a "ReturnStatus" other than 0 is an error, whose message begins with `failure`: 'profile 1 "Game"
    /// cannot be deleted'. (Not for openDevice, whose status is a found flag.)
    [[nodiscard]] CommandResult<QVariantMap> sendChecked(DaemonProtocol::Command command, const QVariantMap &request,
                                                         const QString &failure);

    /// The whole settings document.
    [[nodiscard]] CommandResult<QVariantMap> document();

    /// The firmware version, which the daemon announces by a notification; absent when none came in time.
    [[nodiscard]] std::optional<QString> firmwareVersion();

private:
    /// Opens the reply port, once, if there is a daemon.
    [[nodiscard]] CommandResult<void> reachDaemon();
    [[nodiscard]] QVariantMap completed(QVariantMap request) const;

    QString mReplyPortName;
    std::unique_ptr<ReplyPort> mReplyPort; ///< started by the first request
};
