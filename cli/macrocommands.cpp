// SPDX-License-Identifier: MIT
// "macro list", "show", "add", "rename", "duplicate", "delete", "import" and "export": the macros that the daemon
// keeps, by the rules of the configurator's macros tab.
#include "base/document.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/linewords.h"
#include "cli/plistjson.h"
#include "cli/recordcommands.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "macros/macrotext.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

RecordRow rowOf(const QVariantMap &, int index, const QVariantMap &record)
{
    const QString name = MacroRecord::name(record);
    const auto events = static_cast<int>(MacroRecord::events(record).size());
    return {.line = numberedLine(index, name + u" (%1)"_s.arg(eventCount(events))),
            .object = {{u"index"_s, index}, {u"name"_s, name}, {u"events"_s, events}}};
}

/// Adds `record` under a name that none of the macros has.
CommandResult<void> addRecord(CommandContext &context, const QVariantMap &record)
{
    const CommandResult<QVariantMap> before = context.daemon.document();
    if (!before)
        return before.error();
    const QVariantList others = Document(*before).macros();
    const QVariantMap named = MacroFile::importedRecord(record, others);
    const QString failure = u"macro \"%1\" cannot be added"_s.arg(MacroRecord::name(named));
    const QString fault = MacroRecord::faultOfCount(others, others.size(), MacroRecord::events(named).size());
    if (!fault.isEmpty())
        return wrongUsage(failure + u": "_s + fault);
    const CommandResult<QVariantMap> reply =
        context.daemon.sendChecked(Command::addMacro, {{DaemonProtocol::macroContents, named}}, failure);
    if (!reply)
        return reply.error();
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    const QVariantList macros = Document(*document).macros();
    const int last = static_cast<int>(macros.size()) - 1;
    const QVariantMap added = macros.value(last).toMap();
    printStored(context.console, recordWords(macroKind, last, added) + u" is added"_s, MacroRecord::events(added));
    return {};
}

/// The record of the file that the first argument names: a property list, or the text of a macro.
CommandResult<QVariantMap> readMacroFile(CommandContext &context)
{
    const QString &path = context.arguments.first();
    const Result<QByteArray> bytes = PropertyList::readFileBytes(path);
    if (!bytes || bytes->size() > PropertyList::maximumInputBytes || !MacroText::isMacroText(*bytes)
        || PropertyList::read(*bytes))
        return readRecordFile(context, macroKind);
    const auto content = MacroText::parse(*bytes);
    if (!content)
        return wrongUsage(u"\"%1\", %2"_s.arg(path, content.error().message));
    const QVariantMap record{{SettingsKeys::macroName, content->name.value_or(QString())},
                             {SettingsKeys::delay, MacroRecord::standardDelayMs},
                             {SettingsKeys::sequence, QVariantMap()}};
    return MacroRecord::withEvents(record, content->events);
}

} // namespace

CommandResult<void> listMacros(CommandContext &context)
{
    return listRecords(context, macroKind, rowOf);
}

CommandResult<void> showMacro(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    if (context.hasOption(Options::text)) {
        context.console.printBytes((MacroText::nameLine(MacroRecord::name(chosen->record()))
                                    + MacroText::write(MacroRecord::events(chosen->record())))
                                       .toUtf8());
        return {};
    }
    const CommandResult<QVariantMap> reply =
        context.daemon.sendChecked(Command::readMacroLines, {{DaemonProtocol::indexOfMacroSequence, chosen->index}},
                                   chosen->words() + u" cannot be read"_s);
    if (!reply)
        return reply.error();
    QStringList lines;
    for (const QVariant &line : reply->value(DaemonProtocol::macroSequences).toList())
        lines += line.toString().trimmed();
    if (context.hasOption(Options::json)) {
        context.console.printJson(QJsonObject{
            {u"index"_s, chosen->index},
            {u"name"_s, MacroRecord::name(chosen->record())},
            {u"events"_s, jsonFromPropertyList(MacroRecord::events(chosen->record()))},
            {u"lines"_s, QJsonArray::fromStringList(lines)},
        });
        return {};
    }
    for (int row = 0; row < lines.size(); ++row)
        context.console.print(numberedLine(row, lines.at(row)));
    return {};
}

CommandResult<void> addMacro(CommandContext &context)
{
    QVariantMap record{{SettingsKeys::delay, MacroRecord::standardDelayMs}, {SettingsKeys::sequence, QVariantMap()}};
    if (!context.arguments.isEmpty()) {
        if (context.arguments.first().isEmpty())
            return missingName(macroKind);
        record.insert(SettingsKeys::macroName, context.arguments.first());
    }
    return addRecord(context, record);
}

CommandResult<void> renameMacro(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecordToRename(context, macroKind);
    if (!chosen)
        return chosen.error();
    const QVariantMap named{{SettingsKeys::macroName, chosen->freeName(context.arguments.at(1))},
                            {SettingsKeys::macroId, chosen->index}};
    const CommandResult<QVariantMap> reply = context.daemon.sendChecked(
        Command::renameMacro, {{DaemonProtocol::macroContents, named}}, chosen->words() + u" cannot be renamed"_s);
    if (!reply)
        return reply.error();
    context.console.print(recordWords(macroKind, chosen->index, named) + u" is renamed"_s);
    return {};
}

CommandResult<void> duplicateMacro(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    QVariantMap copy = MacroFile::exportedRecord(chosen->record());
    if (context.arguments.size() > 1) {
        if (context.arguments.at(1).isEmpty())
            return missingName(macroKind);
        copy.insert(SettingsKeys::macroName, context.arguments.at(1));
    }
    return addRecord(context, copy);
}

CommandResult<void> deleteMacro(CommandContext &context)
{
    return deleteRecord(context, macroKind, [](const ChosenRecord &macro) {
        const QString uses = describeMacroUses(macro.document, macro.index);
        return uses.isEmpty() ? uses : u"it was on "_s + uses;
    });
}

CommandResult<void> importMacro(CommandContext &context)
{
    const CommandResult<QVariantMap> record = readMacroFile(context);
    if (!record)
        return record.error();
    return addRecord(context, *record);
}

CommandResult<void> exportMacro(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    return exportRecord(context, *chosen, MacroFile::exportedRecord(chosen->record()));
}
