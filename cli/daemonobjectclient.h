// SPDX-License-Identifier: MIT
// One object of the daemon besides its port, called over the session bus.
#pragma once

#include "cli/commandresult.h"

#include <QLatin1StringView>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <span>

template <typename T> using DaemonObjectResult = Result<T, CommandError>;

/// An error of the object itself. Its message is a whole sentence and is shown unchanged.
struct OwnError
{
    QLatin1StringView name; ///< on the bus
    ExitCode code = ExitCode::refused;
};

/// Main thread only; each call blocks for at most 5 seconds, or `limitMs` where given.
struct DaemonObjectClient
{
    static constexpr int usualLimitMs = 5000;

    QLatin1StringView path;
    QLatin1StringView interface;
    QLatin1StringView words; ///< its name in an error message: "virtual keyboard"
    std::span<const OwnError> ownErrors = {};

    /// The values that the call returns. `failure` begins the message of a refusal, before the daemon's reason. It says
    /// what does not happen to the user's object: "the brightness cannot be changed".
    [[nodiscard]] DaemonObjectResult<QVariantList> call(QLatin1StringView method, const QVariantList &arguments,
                                                        const QString &failure, int limitMs = usualLimitMs) const;
    [[nodiscard]] DaemonObjectResult<QVariant> property(QLatin1StringView name) const;
};
