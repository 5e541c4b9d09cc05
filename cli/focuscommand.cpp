// SPDX-License-Identifier: MIT
// "focus": reports the application in front to the daemon, where the desktop does not.
#include "cli/commandtable.h"
#include "cli/frontapplicationclient.h"

using namespace Qt::StringLiterals;

CommandResult<void> reportFrontApplication(CommandContext &context)
{
    const QString failure = u"the application in front cannot be reported"_s;
    return frontApplicationObject.call("Tell"_L1, {context.arguments.first()}, failure).withoutValue<CommandError>();
}
