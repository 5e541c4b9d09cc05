// SPDX-License-Identifier: MIT
// "document": the whole settings document as the daemon sent it.
#include "base/qlcoreutility.h"
#include "cli/commandtable.h"
#include "cli/plistjson.h"

using namespace Qt::StringLiterals;

CommandResult<void> showDocument(CommandContext &context)
{
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    if (!context.hasOption(Options::plist)) {
        context.console.printJson(jsonFromPropertyList(*document));
        return {};
    }
    const std::optional<QByteArray> bytes = QlCoreUtility::convertDictionaryToData(*document);
    if (!bytes)
        return CommandError{{u"the settings cannot be written as a property list"_s}, ExitCode::refused};
    context.console.printBytes(*bytes);
    return {};
}
