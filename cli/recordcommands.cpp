// SPDX-License-Identifier: MIT
#include "cli/recordcommands.h"

#include "base/exportpath.h"
#include "base/propertylist.h"
#include "cli/mappingrepair.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

CommandResult<void> listRecords(CommandContext &context, const RecordKind &kind,
                                RecordRow (*rowOf)(const QVariantMap &document, int index, const QVariantMap &record))
{
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    const QVariantList records = (Document(*document).*kind.records)();
    QJsonArray list;
    for (int index = 0; index < records.size(); ++index) {
        const RecordRow row = rowOf(*document, index, records.at(index).toMap());
        if (context.hasOption(Options::json))
            list.append(row.object);
        else
            context.console.print(row.line);
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return {};
}

CommandResult<void> deleteRecord(CommandContext &context, const RecordKind &kind,
                                 QString (*noteOf)(const ChosenRecord &deleted))
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, kind);
    if (!chosen)
        return chosen.error();
    const CommandResult<QVariantMap> reply = context.daemon.sendChecked(kind.deletion, {{kind.indexKey, chosen->index}},
                                                                        chosen->words() + u" cannot be deleted"_s);
    if (!reply)
        return reply.error();
    context.console.print(chosen->words() + u" is deleted"_s);
    if (const QString note = noteOf ? noteOf(*chosen) : QString(); !note.isEmpty())
        context.console.print(note);
    const CommandResult<void> repaired =
        repairMappings(context.daemon, chosen->document, chosen->index, kind.assignment);
    if (!repaired)
        return CommandError{{u"the keys that used it may still name it: "_s + repaired.error().message},
                            ExitCode::incomplete};
    return {};
}

CommandResult<void> exportRecord(CommandContext &context, const ChosenRecord &chosen, const QVariantMap &contents)
{
    const QString path = exportPath(context.arguments.at(1), chosen.kind->fileSuffix);
    if (const Result<void> written = PropertyList::writePropertyListFile(path, contents); !written)
        return CommandError{{u"cannot write \"%1\": %2"_s.arg(path, written.error().message)}, ExitCode::noOutput};
    context.console.print(chosen.words() + u" is in "_s + path);
    return {};
}

CommandResult<QVariantMap> readRecordFile(CommandContext &context, const RecordKind &kind)
{
    const QString &path = context.arguments.first();
    const auto record = PropertyList::readPropertyListFile(path);
    if (!record)
        return wrongUsage(u"\"%1\" cannot be read as a %2 file: %3"_s.arg(path, kind.word, record.error().message));
    // Both kinds of record may lack any of their keys, so only the keys of the other kind show a mistake.
    const RecordKind &other = &kind == &profileKind ? macroKind : profileKind;
    if (isOfKind(*record, other) && !isOfKind(*record, kind))
        return wrongUsage(u"\"%1\" is a %2 file, not a %3 file"_s.arg(path, other.word, kind.word));
    return *record;
}

CommandResult<ChosenRecord> chooseRecordToRename(CommandContext &context, const RecordKind &kind)
{
    if (context.arguments.at(1).isEmpty())
        return missingName(kind);
    return chooseRecord(context, kind);
}

CommandError missingName(const RecordKind &kind)
{
    return wrongUsage(u"a %1 needs a name"_s.arg(kind.word));
}
