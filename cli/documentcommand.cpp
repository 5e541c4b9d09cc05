// SPDX-License-Identifier: MIT
// "document", "document export", "restore" and "backups": all settings as one file.
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "cli/commandtable.h"
#include "cli/documentfile.h"
#include "cli/historyclient.h"
#include "cli/plistjson.h"

#include <QFileInfo>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

CommandError notAPropertyList()
{
    return {{u"the settings cannot be written as a property list"_s}, ExitCode::refused};
}

CommandResult<void> restoreFile(const QString &path)
{
    const auto faultyFile = [&path](const QString &fault) { return wrongUsage(u"%1: %2"_s.arg(path, fault)); };
    const Result<QByteArray> bytes = PropertyList::readFileBytes(path);
    if (!bytes)
        return wrongUsage(u"cannot read \"%1\": %2"_s.arg(path, bytes.error().message));
    if (bytes->size() > PropertyList::maximumInputBytes)
        return faultyFile(u"the file is too large"_s);
    const CommandResult<QVariantMap> document = DocumentFile::read(*bytes);
    if (!document)
        return faultyFile(document.error().message);
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(*document);
    if (!data)
        return faultyFile(u"it has a value that no settings can have, such as null"_s);
    const DaemonObjectResult<void> restored = HistoryClient::restoreDocument(*data, QFileInfo(path).fileName());
    if (restored)
        return {};
    if (restored.error().code == ExitCode::usage)
        return faultyFile(restored.error().message);
    return restored.error();
}

CommandResult<void> restoreBackup(const QString &day)
{
    const DaemonObjectResult<void> restored = HistoryClient::restoreBackup(day);
    if (restored)
        return {};
    return restored.error();
}

} // namespace

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
        return notAPropertyList();
    context.console.printBytes(*bytes);
    return {};
}

CommandResult<void> exportDocument(CommandContext &context)
{
    const DaemonObjectResult<QVariantMap> document = HistoryClient::document();
    if (!document)
        return document.error();
    const QString &path = context.arguments.first();
    const std::optional<QByteArray> bytes = DocumentFile::contents(path, *document);
    if (!bytes)
        return notAPropertyList();
    if (const Result<void> written = PropertyList::writeFileAtomically(path, *bytes); !written)
        return CommandError{{u"cannot write \"%1\": %2"_s.arg(path, written.error().message)}, ExitCode::noOutput};
    context.console.print(u"all settings are in "_s + path);
    return {};
}

QList<CommandForm> restoreDocumentForms()
{
    return {{u"FILE"_s, u"replace all settings by those of a file: a property list or JSON; \"undo\" takes it back"_s},
            {u"--date DATE"_s, u"the same with a daily backup: DATE is one that \"document backups\" lists"_s}};
}

CommandResult<void> restoreDocument(CommandContext &context)
{
    const bool hasDate = context.hasOption(Options::date);
    if (hasDate != context.arguments.isEmpty())
        return wrongUsage(u"\"document restore\" takes a file or --date"_s);
    const QString day = context.optionValue(Options::date);
    const CommandResult<void> restored = hasDate ? restoreBackup(day) : restoreFile(context.arguments.first());
    if (!restored)
        return restored.error();
    context.console.print(u"all settings are those of "_s + (hasDate ? day : context.arguments.first()));
    return {};
}

CommandResult<void> listBackups(CommandContext &context)
{
    const DaemonObjectResult<QStringList> days = HistoryClient::backups();
    if (!days)
        return days.error();
    if (context.hasOption(Options::json))
        context.console.printJson(QJsonArray::fromStringList(*days));
    else {
        for (const QString &day : *days)
            context.console.print(day);
    }
    return {};
}
