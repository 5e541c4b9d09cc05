// SPDX-License-Identifier: MIT
// "undo", "redo" and "history": the changes of the settings by all clients, and the way back.
#include "base/historykeys.h"
#include "base/resources.h"
#include "base/text.h"
#include "cli/commandtable.h"
#include "cli/historyclient.h"
#include "cli/plistjson.h"
#include "keys/historywords.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;
using HistoryClient::Restoration;
using HistoryKeys::Key;

namespace {

/// The words are English, like all that kestractl prints, and come from the window's string table.
void loadWords()
{
    installTexts(resourcePath(u"texts"_s), {u"en"_s});
}

uint idOf(const QVariantMap &entry)
{
    return entry.value(HistoryKeys::id).toUInt();
}

QDateTime timeOf(const QVariantMap &entry)
{
    return QDateTime::fromMSecsSinceEpoch(entry.value(HistoryKeys::time).toLongLong());
}

QChar markOf(const QVariantMap &entry)
{
    if (entry.value(HistoryKeys::next).toString() == HistoryKeys::nextUndo)
        return u'*';
    const QString state = entry.value(HistoryKeys::state).toString();
    return state == HistoryKeys::stateUndone ? u'-' : u' ';
}

QString lineOf(const QVariantMap &entry)
{
    return u"%1 %2  %3  %4  %5"_s.arg(markOf(entry))
        .arg(idOf(entry), 5)
        .arg(timeOf(entry).toString(u"yyyy-MM-dd HH:mm:ss"_s),
             entry.value(HistoryKeys::author).toString().leftJustified(12), historyWords(entry));
}

/// The keys begin with a small letter, as all keys of kestractl's JSON do.
QJsonObject plainJsonOf(const QVariantMap &values)
{
    QJsonObject object;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        QString name = value.key();
        name[0] = name.at(0).toLower();
        object.insert(name, jsonFromPropertyList(value.value()));
    }
    return object;
}

QJsonObject jsonOf(const QVariantMap &entry)
{
    QJsonObject object = plainJsonOf(entry);
    object.insert(u"time"_s, timeOf(entry).toUTC().toString(Qt::ISODateWithMs));
    object.insert(u"words"_s, historyWords(entry));
    return object;
}

QJsonObject jsonOf(const Restoration &restoration)
{
    QJsonArray others;
    for (const uint id : restoration.others)
        others += static_cast<qint64>(id);
    return {{u"alone"_s, restoration.isAlone},
            {u"others"_s, others},
            {u"newest"_s, static_cast<qint64>(restoration.newest)}};
}

QJsonArray jsonOf(const HistoryParts &parts)
{
    QJsonArray list;
    for (const QVariantMap &part : parts.list) {
        const HistoryPartWords words = historyPartWords(part);
        QJsonObject object = plainJsonOf(part);
        const auto addState = [&object, &part](Key key, const QString &stateWords) {
            if (!part.contains(key))
                return;
            QJsonObject state = plainJsonOf(part.value(key).toMap());
            state.insert(u"words"_s, stateWords);
            object.insert(QString(key).toLower(), state);
        };
        addState(HistoryKeys::before, words.before);
        addState(HistoryKeys::after, words.after);
        list += object;
    }
    return list;
}

void print(Console &console, const HistoryParts &parts)
{
    for (const QVariantMap &part : parts.list) {
        const HistoryPartWords words = historyPartWords(part);
        if (!words.before.isEmpty())
            console.print(u"  before: %1"_s.arg(words.before));
        console.print(u"  after:  %1"_s.arg(words.after));
    }
    if (parts.count > parts.list.size())
        console.print(u"  (the first %1 of %2 changed things)"_s.arg(parts.list.size()).arg(parts.count));
}

CommandResult<uint> idArgument(const CommandContext &context)
{
    bool isNumber = false;
    const uint id = context.arguments.first().toUInt(&isNumber);
    if (!isNumber)
        return wrongUsage(
            u"\"%1\" is not the number of an entry (see kestractl history)"_s.arg(context.arguments.first()));
    return id;
}

/// The newest entry that the user allows, or else the present one.
CommandResult<uint> newestArgument(const CommandContext &context, uint id)
{
    if (context.hasOption(Options::newest)) {
        bool isNumber = false;
        const uint newest = context.optionValue(Options::newest).toUInt(&isNumber);
        if (!isNumber || newest == 0)
            return wrongUsage(u"\"%1\" is not the number of an entry"_s.arg(context.optionValue(Options::newest)));
        return newest;
    }
    const DaemonObjectResult<Restoration> preview = HistoryClient::preview(id);
    if (!preview)
        return preview.error();
    return preview->newest;
}

/// An entry that the user has named, and all entries.
struct NamedEntry
{
    QVariantMap entry;
    QList<QVariantMap> all;
};

CommandResult<NamedEntry> namedEntry(const CommandContext &context)
{
    const auto entries = HistoryClient::list();
    if (!entries)
        return entries.error();
    const CommandResult<uint> id = idArgument(context);
    if (!id)
        return id.error();
    const auto found = std::ranges::find(*entries, *id, idOf);
    if (found == entries->end())
        return wrongUsage(u"the history has no entry %1"_s.arg(*id));
    return NamedEntry{.entry = *found, .all = *entries};
}

CommandResult<void> step(CommandContext &context, Key next, DaemonObjectResult<void> (*call)(uint), const QString &done)
{
    loadWords();
    const auto entries = HistoryClient::next();
    if (!entries)
        return entries.error();
    const auto entry = std::ranges::find_if(*entries, [next](const QVariantMap &candidate) {
        return candidate.value(HistoryKeys::next).toString() == next;
    });
    if (entry == entries->end())
        return CommandError{{u"there is nothing to %1"_s.arg(next)}, ExitCode::refused};
    if (const DaemonObjectResult<void> result = call(idOf(*entry)); !result)
        return result.error();
    context.console.print(u"%1: %2"_s.arg(done, historyWords(*entry)));
    return {};
}

/// The lines about the changes that are taken back besides the named one.
void printOthers(Console &console, const Restoration &restoration, const QList<QVariantMap> &entries,
                 const QString &heading)
{
    if (restoration.isAlone)
        return;
    console.print(heading);
    for (const uint id : restoration.others) {
        const auto entry = std::ranges::find(entries, id, idOf);
        if (entry != entries.end())
            console.print(lineOf(*entry));
    }
}

} // namespace

CommandResult<void> undoChange(CommandContext &context)
{
    return step(context, HistoryKeys::nextUndo, HistoryClient::undo, u"undone"_s);
}

CommandResult<void> redoChange(CommandContext &context)
{
    return step(context, HistoryKeys::nextRedo, HistoryClient::redo, u"redone"_s);
}

CommandResult<void> listHistory(CommandContext &context)
{
    loadWords();
    const auto entries = HistoryClient::list();
    if (!entries)
        return entries.error();
    QJsonArray list;
    for (auto entry = entries->crbegin(); entry != entries->crend(); ++entry) {
        if (context.hasOption(Options::json))
            list += jsonOf(*entry);
        else
            context.console.print(lineOf(*entry));
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return {};
}

CommandResult<void> showHistoryEntry(CommandContext &context)
{
    loadWords();
    const CommandResult<NamedEntry> named = namedEntry(context);
    if (!named)
        return named.error();
    const QVariantMap &entry = named->entry;
    const DaemonObjectResult<HistoryParts> parts = HistoryClient::show(idOf(entry));
    const DaemonObjectResult<Restoration> preview = HistoryClient::preview(idOf(entry));
    if (context.hasOption(Options::json)) {
        QJsonObject object = jsonOf(entry);
        object.insert(u"parts"_s, parts ? QJsonValue(jsonOf(*parts)) : QJsonValue());
        object.insert(u"partCount"_s, parts ? QJsonValue(qint64{parts->count}) : QJsonValue());
        object.insert(u"restore"_s, preview ? QJsonValue(jsonOf(*preview)) : QJsonValue());
        context.console.printJson(object);
        return {};
    }
    context.console.print(lineOf(entry));
    if (parts)
        print(context.console, *parts);
    else
        context.console.print(u"The state before is not known: %1."_s.arg(parts.error().message));
    if (!preview)
        context.console.print(u"It cannot be taken back: %1."_s.arg(preview.error().message));
    else if (preview->isAlone)
        context.console.print(u"\"history restore %1\" takes back this change alone."_s.arg(idOf(entry)));
    else
        printOthers(context.console, *preview, named->all,
                    u"\"history restore %1\" also takes back these changes:"_s.arg(idOf(entry)));
    return {};
}

QList<CommandForm> restoreHistoryEntryForms()
{
    return {{u"ENTRY"_s, u"take the change back, with all later ones that must go back with it"_s},
            {u"ENTRY --newest N"_s,
             u"the same, refused if the settings have changed since \"history show ENTRY --json\" gave N as newest"_s}};
}

CommandResult<void> restoreHistoryEntry(CommandContext &context)
{
    loadWords();
    const CommandResult<NamedEntry> named = namedEntry(context);
    if (!named)
        return named.error();
    const QVariantMap &entry = named->entry;
    const CommandResult<uint> newest = newestArgument(context, idOf(entry));
    if (!newest)
        return newest.error();
    const DaemonObjectResult<Restoration> done = HistoryClient::restore(idOf(entry), *newest);
    if (!done)
        return done.error();
    context.console.print(u"taken back: %1"_s.arg(historyWords(entry)));
    printOthers(context.console, *done, named->all, u"also taken back:"_s);
    return {};
}

CommandResult<void> clearHistory(CommandContext &context)
{
    if (const DaemonObjectResult<void> cleared = HistoryClient::clear(); !cleared)
        return cleared.error();
    context.console.print(u"the history is empty, and the backups and previous settings are deleted"_s);
    return {};
}
