// SPDX-License-Identifier: MIT
// "macro list", "show", "add", "rename", "delete", "import" and "export": the macros that the daemon keeps, by the
// rules of the configurator's macros tab.
#include "base/exportpath.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/macrochoice.h"
#include "cli/mappingrepair.h"
#include "cli/plistjson.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

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
    context.console.print(macroWords(last, macros.value(last).toMap()) + u" is added"_s);
    return ExitCode::ok;
}

} // namespace

ExitCode listMacros(CommandContext &context)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    const QVariantList macros = document.reply.value(SettingsKeys::macros).toList();
    QJsonArray list;
    for (int number = 0; number < macros.size(); ++number) {
        const QVariantMap record = macros.at(number).toMap();
        const QString name = record.value(SettingsKeys::macroName).toString();
        const auto events = static_cast<int>(MacroRecord::events(record).size());
        if (context.hasOption(Options::json))
            list.append(QJsonObject{{u"number"_s, number}, {u"name"_s, name}, {u"events"_s, events}});
        else
            context.console.print(u"%1  %2 (%3 events)"_s.arg(number, 3).arg(name).arg(events));
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return ExitCode::ok;
}

ExitCode showMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseMacro(context, failure);
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
            return context.console.fail(ExitCode::usage, u"a macro needs a name"_s);
        record.insert(SettingsKeys::macroName, context.arguments.first());
    }
    return addRecord(context, record);
}

ExitCode renameMacro(CommandContext &context)
{
    const QString &name = context.arguments.at(1);
    if (name.isEmpty())
        return context.console.fail(ExitCode::usage, u"a macro needs a name"_s);
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseMacro(context, failure);
    if (!chosen)
        return failure;
    QVariantList others = chosen->macros;
    others.removeAt(chosen->number);
    const QVariantMap named{{SettingsKeys::macroName, QlCoreUtility::generateNameUsingDefaultName(others, name)},
                            {SettingsKeys::macroId, chosen->number}};
    const DaemonClient::Answer answer =
        context.daemon.sendChecked(Command::renameMacro, {{DaemonProtocol::macroContents, named}});
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(macroWords(chosen->number, named) + u" is renamed"_s);
    return ExitCode::ok;
}

ExitCode deleteMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseMacro(context, failure);
    if (!chosen)
        return failure;
    DaemonClient::Answer answer =
        context.daemon.sendChecked(Command::deleteMacro, {{DaemonProtocol::macroId, chosen->number}});
    if (answer.ok())
        answer = repairMappings(context.daemon, chosen->document, chosen->number, KeyMappings::Assignment::playMacro);
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(chosen->words() + u" is deleted"_s);
    return ExitCode::ok;
}

ExitCode importMacro(CommandContext &context)
{
    const QString &path = context.arguments.first();
    const std::optional<QVariantMap> record = PropertyList::readPropertyListFile(path);
    if (!record)
        return context.console.fail(ExitCode::usage, u"\"%1\" cannot be read or is no macro file"_s.arg(path));
    return addRecord(context, *record);
}

ExitCode exportMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseMacro(context, failure);
    if (!chosen)
        return failure;
    const QString path = exportPath(context.arguments.at(1), MacroFile::suffix);
    const std::optional<QByteArray> data =
        QlCoreUtility::convertDictionaryToData(MacroFile::exportedRecord(chosen->record()));
    if (!data || !PropertyList::writeFileAtomically(path, *data))
        return context.console.fail(ExitCode::noOutput, u"cannot write \"%1\""_s.arg(path));
    context.console.print(chosen->words() + u" is in "_s + path);
    return ExitCode::ok;
}
