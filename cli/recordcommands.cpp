// SPDX-License-Identifier: MIT
#include "cli/recordcommands.h"

#include "base/exportpath.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "cli/mappingrepair.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

ExitCode listRecords(CommandContext &context, const RecordKind &kind,
                     RecordRow (*rowOf)(const QVariantMap &document, int number, const QVariantMap &record))
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    const QVariantList records = document.reply.value(kind.listKey).toList();
    QJsonArray list;
    for (int number = 0; number < records.size(); ++number) {
        const RecordRow row = rowOf(document.reply, number, records.at(number).toMap());
        if (context.hasOption(Options::json))
            list.append(row.object);
        else
            context.console.print(row.line);
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return ExitCode::ok;
}

ExitCode deleteRecord(CommandContext &context, const RecordKind &kind)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, kind, failure);
    if (!chosen)
        return failure;
    DaemonClient::Answer answer = context.daemon.sendChecked(kind.deletion, {{kind.numberKey, chosen->number}});
    if (answer.ok())
        answer = repairMappings(context.daemon, chosen->document, chosen->number, kind.assignment);
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(chosen->words() + u" is deleted"_s);
    return ExitCode::ok;
}

ExitCode exportRecord(CommandContext &context, const ChosenRecord &chosen, const QVariantMap &contents)
{
    const QString path = exportPath(context.arguments.at(1), chosen.kind->fileSuffix);
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(contents);
    if (!data || !PropertyList::writeFileAtomically(path, *data))
        return context.console.fail(ExitCode::noOutput, u"cannot write \"%1\""_s.arg(path));
    context.console.print(chosen.words() + u" is in "_s + path);
    return ExitCode::ok;
}

std::optional<QVariantMap> readRecordFile(CommandContext &context, const RecordKind &kind, ExitCode &failure)
{
    const QString &path = context.arguments.first();
    std::optional<QVariantMap> record = PropertyList::readPropertyListFile(path);
    if (!record) {
        failure =
            context.console.fail(ExitCode::usage, u"\"%1\" cannot be read or is no %2 file"_s.arg(path, kind.word));
        return {};
    }
    // Both kinds of record may lack any of their keys, so only the keys of the other kind show a mistake.
    const RecordKind &other = &kind == &profileKind ? macroKind : profileKind;
    if (isOfKind(*record, other) && !isOfKind(*record, kind)) {
        failure = context.console.fail(ExitCode::usage,
                                       u"\"%1\" is a %2 file, not a %3 file"_s.arg(path, other.word, kind.word));
        return {};
    }
    return record;
}

std::optional<ChosenRecord> chooseRecordToRename(CommandContext &context, const RecordKind &kind, ExitCode &failure)
{
    if (!context.arguments.at(1).isEmpty())
        return chooseRecord(context, kind, failure);
    failure = failWithoutName(context, kind);
    return {};
}

ExitCode failWithoutName(CommandContext &context, const RecordKind &kind)
{
    return context.console.fail(ExitCode::usage, u"a %1 needs a name"_s.arg(kind.word));
}
