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

} // namespace

CommandResult<void> replaceEvents(const ChosenRecord &macro, const QVariantList &events)
{
    const QString failure = macro.words() + u" cannot be changed"_s;
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
