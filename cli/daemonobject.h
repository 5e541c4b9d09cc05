// SPDX-License-Identifier: MIT
// One object of the daemon besides its port, called over the session bus.
#pragma once

#include "cli/exitcode.h"

#include <QLatin1StringView>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <optional>

/// What became of a call: `failure` is ok, or why it was not carried out.
struct DaemonObjectResult
{
    ExitCode failure = ExitCode::ok;
    QString reason;
    QString errorName;   ///< on the bus; empty when it was carried out
    QString errorText;   ///< in the daemon's own words, likewise
    QVariantList values; ///< what the call returned
};

/// Main thread only; each call blocks for at most 5 seconds.
struct DaemonObject
{
    QLatin1StringView path;
    QLatin1StringView interface;
    QLatin1StringView words; ///< what it is, in an error: "virtual keyboard"

    [[nodiscard]] DaemonObjectResult call(QLatin1StringView method, const QVariantList &arguments = {}) const;

    /// Absent with `result` saying why.
    [[nodiscard]] std::optional<QVariant> property(QLatin1StringView name, DaemonObjectResult &result) const;
};
