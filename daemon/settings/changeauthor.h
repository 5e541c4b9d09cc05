// SPDX-License-Identifier: MIT
// The author of a change in the history. No state; any thread.
#pragma once

#include "base/daemonprotocol.h"
#include "base/historykeys.h"

#include <QString>

/// Returns the author for the name that the sender of a change gives itself. It proves nothing: a client can give any
/// name.
[[nodiscard]] inline QString authorOfSource(const QString &sourceApp)
{
    if (sourceApp == DaemonProtocol::configuratorIdentifier)
        return HistoryKeys::authorConfigurator;
    return sourceApp == DaemonProtocol::kestractlIdentifier ? HistoryKeys::authorKestractl : HistoryKeys::authorClient;
}
