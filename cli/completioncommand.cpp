// SPDX-License-Identifier: MIT
#include "cli/completioncommand.h"

#include "base/devicekeys.h"
#include "base/document.h"
#include "cli/completion.h"
#include "cli/daemonclient.h"
#include "cli/deviceclient.h"
#include "cli/historyclient.h"
#include "cli/recordchoice.h"
#include "cli/recordkind.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList namesOfRecords(const RecordKind &kind)
{
    const CommandResult<QVariantMap> document = DaemonClient().document();
    QStringList names;
    if (!document)
        return names;
    for (const QVariant &record : (Document(*document).*kind.records)())
        names += nameArgument(record.toMap().value(kind.nameKey).toString());
    return names;
}

QStringList idsOfKeyboards()
{
    const DaemonObjectResult<QList<QVariantMap>> keyboards = DeviceClient::list();
    QStringList ids;
    if (!keyboards)
        return ids;
    for (const QVariantMap &keyboard : *keyboards)
        ids += keyboard.value(DeviceKeys::id).toString();
    return ids;
}

QStringList valuesOfKind(QLatin1StringView kind)
{
    if (kind == CompletionValues::profiles)
        return namesOfRecords(profileKind);
    if (kind == CompletionValues::macros)
        return namesOfRecords(macroKind);
    if (kind == CompletionValues::keyboards)
        return idsOfKeyboards();
    const DaemonObjectResult<QStringList> days = HistoryClient::backups();
    return days ? *days : QStringList();
}

/// A word must stay one line.
bool canBeShown(const QString &word)
{
    return !word.isEmpty()
           && std::ranges::none_of(word, [](QChar character) { return character.category() == QChar::Other_Control; });
}

} // namespace

void printCompletions(const QStringList &words, Console &console)
{
    const Completions found = completionsOf(words, valuesOfKind);
    console.print(found.canBeFile ? u"files"_s : u"words"_s);
    for (const Completion &completion : found.words) {
        if (!canBeShown(completion.word))
            continue;
        console.print(completion.word);
        console.print(completion.help);
    }
}
