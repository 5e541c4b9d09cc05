// SPDX-License-Identifier: MIT
// "macro list", "show", "add", "rename", "delete", "import" and "export": the macros that the daemon keeps, by the
// rules of the configurator's macros tab.
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/plistjson.h"
#include "cli/recordcommands.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

RecordRow rowOf(const QVariantMap &, int number, const QVariantMap &record)
{
    const QString name = record.value(SettingsKeys::macroName).toString();
    const auto events = static_cast<int>(MacroRecord::events(record).size());
    return {.line = u"%1  %2 (%3 events)"_s.arg(number, 3).arg(name).arg(events),
            .object = {{u"number"_s, number}, {u"name"_s, name}, {u"events"_s, events}}};
}

/// Adds `record` under a name of its own, next to those of `macros`, and says what it became.
ExitCode addRecord(CommandContext &context, const QVariantMap &record)
{
    DaemonClient::Answer answer = context.daemon.document();
    if (answer.ok()) {
        const QVariantMap named = MacroFile::importedRecord(record, answer.reply.value(SettingsKeys::macros).toList());
        answer = context.daemon.sendChecked(Command::addMacro, {{DaemonProtocol::macroContents, named}});
    }
    if (answer.ok())
        answer = context.daemon.document();
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    const QVariantList macros = answer.reply.value(SettingsKeys::macros).toList();
    const int last = static_cast<int>(macros.size()) - 1;
    context.console.print(recordWords(macroKind, last, macros.value(last).toMap()) + u" is added"_s);
    return ExitCode::ok;
}

} // namespace

ExitCode listMacros(CommandContext &context)
{
    return listRecords(context, macroKind, rowOf);
}

ExitCode showMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, macroKind, failure);
    if (!chosen)
        return failure;
    const DaemonClient::Answer answer =
        context.daemon.sendChecked(Command::readMacroLines, {{DaemonProtocol::indexOfMacroSequence, chosen->number}});
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    QStringList lines;
    for (const QVariant &line : answer.reply.value(DaemonProtocol::macroSequences).toList())
        lines += line.toString().trimmed();
    if (context.hasOption(Options::json)) {
        context.console.printJson(QJsonObject{
            {u"number"_s, chosen->number},
            {u"name"_s, chosen->record().value(SettingsKeys::macroName).toString()},
            {u"events"_s, jsonFromPropertyList(MacroRecord::events(chosen->record()))},
            {u"lines"_s, QJsonArray::fromStringList(lines)},
        });
        return ExitCode::ok;
    }
    for (const QString &line : std::as_const(lines))
        context.console.print(line);
    return ExitCode::ok;
}

ExitCode addMacro(CommandContext &context)
{
    QVariantMap record{{SettingsKeys::delay, MacroRecord::standardDelayMs}, {SettingsKeys::sequence, QVariantMap()}};
    if (!context.arguments.isEmpty()) {
        if (context.arguments.first().isEmpty())
            return failWithoutName(context, macroKind);
        record.insert(SettingsKeys::macroName, context.arguments.first());
    }
    return addRecord(context, record);
}

ExitCode renameMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecordToRename(context, macroKind, failure);
    if (!chosen)
        return failure;
    const QVariantMap named{{SettingsKeys::macroName, chosen->freeName(context.arguments.at(1))},
                            {SettingsKeys::macroId, chosen->number}};
    const DaemonClient::Answer answer =
        context.daemon.sendChecked(Command::renameMacro, {{DaemonProtocol::macroContents, named}});
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(recordWords(macroKind, chosen->number, named) + u" is renamed"_s);
    return ExitCode::ok;
}

ExitCode deleteMacro(CommandContext &context)
{
    return deleteRecord(context, macroKind);
}

ExitCode importMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto record = readRecordFile(context, macroKind, failure);
    return record ? addRecord(context, *record) : failure;
}

ExitCode exportMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, macroKind, failure);
    return chosen ? exportRecord(context, *chosen, MacroFile::exportedRecord(chosen->record())) : failure;
}
