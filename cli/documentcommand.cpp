// SPDX-License-Identifier: MIT
// "document": the whole settings document as the daemon sent it.
#include "base/qlcoreutility.h"
#include "cli/commandtable.h"
#include "cli/plistjson.h"

using namespace Qt::StringLiterals;

ExitCode showDocument(CommandContext &context)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    if (!context.hasOption(Options::plist)) {
        context.console.printJson(jsonFromPropertyList(document.reply));
        return ExitCode::ok;
    }
    const std::optional<QByteArray> bytes = QlCoreUtility::convertDictionaryToData(document.reply);
    if (!bytes)
        return context.console.fail(ExitCode::refused, u"the document cannot be written as a property list"_s);
    context.console.printBytes(*bytes);
    return ExitCode::ok;
}
