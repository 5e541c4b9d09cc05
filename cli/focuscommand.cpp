// SPDX-License-Identifier: MIT
// "focus": tells the daemon which application is in front, where the desktop does not.
#include "cli/commandtable.h"
#include "cli/frontapplicationclient.h"

using namespace Qt::StringLiterals;

ExitCode tellFrontApplication(CommandContext &context)
{
    const DaemonObjectResult result = frontApplicationObject.call("Tell"_L1, {context.arguments.first()});
    return result.failure == ExitCode::ok ? ExitCode::ok : context.console.fail(result.failure, result.reason);
}
