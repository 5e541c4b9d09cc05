// SPDX-License-Identifier: MIT
// kestractl's side of the daemon link: one request, one reply, through a reply port that only this process has.
#pragma once

#include "base/daemonprotocol.h"
#include "cli/exitcode.h"
#include "daemonlink/replyport.h"

#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

/// The bundle-like identifier that tells the configurator's changes from those of this program.
inline constexpr QLatin1StringView kestractlIdentifier{"org.quillkestra.kestractl"};

/// Main thread only. Each request blocks for at most about 12 seconds, the first, which opens the reply port,
/// for 17.
class DaemonClient
{
public:
    /// A reply, or the exit code and the words that say why there is none.
    struct Answer
    {
        QVariantMap reply;
        ExitCode failure = ExitCode::ok;
        QString reason; ///< one sentence without a full stop; empty when `failure` is ok

        [[nodiscard]] bool ok() const { return failure == ExitCode::ok; }
    };

    DaemonClient();

    /// Sends one command and waits for its reply. `request` holds only the keys of that command: the product, the reply
    /// port and the sender are added here.
    [[nodiscard]] Answer send(DaemonProtocol::Command command, const QVariantMap &request = {});

    /// As send(), and a "ReturnStatus" other than 0 is a failure too (not for openDevice, whose status is a found
    /// flag).
    [[nodiscard]] Answer sendChecked(DaemonProtocol::Command command, const QVariantMap &request = {});

    /// The whole settings document (in `reply`).
    [[nodiscard]] Answer document();

    /// The firmware version, which the daemon announces by a notification; absent when none came in time.
    [[nodiscard]] std::optional<QString> firmwareVersion();

private:
    [[nodiscard]] std::optional<Answer> failureToReachDaemon();
    [[nodiscard]] QVariantMap completed(QVariantMap request) const;

    QString mReplyPortName;
    std::unique_ptr<ReplyPort> mReplyPort; ///< started by the first request
};
