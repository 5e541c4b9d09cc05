// SPDX-License-Identifier: MIT
#include "cli/macroeventsclient.h"

#include "base/daemonprotocol.h"
#include "base/macroskeys.h"
#include "base/propertylist.h"
#include "cli/daemonobjectclient.h"
#include "macros/macrorecord.h"

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObjectClient macros{
    .path = MacrosKeys::objectPath, .interface = MacrosKeys::interfaceName, .words = "list of macros"_L1};

QString failureFor(const ChosenRecord &macro)
{
    return macro.words() + u" cannot be changed"_s;
}

} // namespace

CommandResult<void> checkEventCount(const ChosenRecord &macro, qsizetype count)
{
    const QString fault = MacroRecord::faultOfCount(macro.records, macro.index, count);
    return fault.isEmpty() ? CommandResult<void>() : wrongUsage(failureFor(macro) + u": "_s + fault);
}

CommandResult<void> replaceEvents(const ChosenRecord &macro, const QVariantList &events)
{
    if (const CommandResult<void> possible = checkEventCount(macro, events.size()); !possible)
        return possible;
    const QString failure = failureFor(macro);
    const std::optional<QByteArray> bytes = PropertyList::writeBinary(events);
    if (!bytes)
        return CommandError{{failure + u": the events are too large"_s}, ExitCode::usage};
    return macros
        .call(MacrosKeys::replace,
              {uint(MacroRecord::macroId(macro.record())), MacroRecord::digest(MacroRecord::events(macro.record())),
               *bytes, QString(DaemonProtocol::kestractlIdentifier)},
              failure)
        .withoutValue();
}
