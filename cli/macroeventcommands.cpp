// SPDX-License-Identifier: MIT
// "macro insert", "delete-event", "move-event", "set-delay" and "scale-delays": several events of a macro at once, and
// "macro duplicate" and "where". Rows are those of "macro show".
#include "base/document.h"
#include "cli/chosenrecord.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/linewords.h"
#include "cli/macroeventsclient.h"
#include "keys/keynames.h"
#include "keys/macrouses.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "macros/macrotext.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView endWord{"end"};
constexpr QLatin1StringView allWord{"all"};

std::optional<int> wholeNumber(QStringView text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 ? std::optional(number) : std::nullopt;
}

CommandError noRow(QStringView text, const ChosenRecord &macro)
{
    return wrongUsage(u"%1 has no row \"%2\" (see kestractl macro show)"_s.arg(macro.words(), text.toString()));
}

/// The event of the row with this number, counted from 1.
CommandResult<int> eventOfRow(QStringView text, const QList<int> &eventsOfRows, const ChosenRecord &macro)
{
    const std::optional<int> row = wholeNumber(text);
    if (!row || *row < 1 || *row > eventsOfRows.size())
        return noRow(text, macro);
    return eventsOfRows.at(*row - 1);
}

/// The event before which the row named by `text` is, or the place at the end.
CommandResult<int> placeOf(const QString &text, const ChosenRecord &macro)
{
    const QVariantList events = MacroRecord::events(macro.record());
    if (text == endWord)
        return static_cast<int>(events.size());
    return eventOfRow(text, MacroRecord::eventsOfRows(events), macro);
}

/// The events of "3", "2-5", "1,4-6" or "all".
CommandResult<QList<int>> eventsOf(const QString &text, const ChosenRecord &macro)
{
    const QVariantList events = MacroRecord::events(macro.record());
    QList<int> indexes;
    if (text == allWord) {
        for (int index = 0; index < events.size(); ++index)
            indexes += index;
        return indexes;
    }
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(events);
    for (const QString &part : text.split(u',')) {
        const CommandResult<int> first = eventOfRow(part.section(u'-', 0, 0), eventsOfRows, macro);
        const CommandResult<int> last =
            part.contains(u'-') ? eventOfRow(part.section(u'-', 1), eventsOfRows, macro) : first;
        if (!first || !last)
            return first ? last.error() : first.error();
        if (*last < *first)
            return noRow(part, macro);
        for (int index = *first; index <= *last; ++index)
            indexes += index;
    }
    return indexes;
}

/// Stores `events`, absent if a pause is too long, and prints how many there are now and which have no partner.
CommandResult<void> store(CommandContext &context, const ChosenRecord &macro, const std::optional<QVariantList> &events)
{
    if (!events)
        return wrongUsage(
            u"%1 cannot have a longer pause than %2 ms"_s.arg(macro.words()).arg(MacroRecord::maximumDelayMs));
    if (const CommandResult<void> stored = replaceEvents(macro, *events); !stored)
        return stored;
    printStored(context.console, macro.words() + u" is changed: "_s + eventCount(events->size()), *events);
    return {};
}

/// The macro that the first argument names, with the events that the second one names.
struct ChosenEvents
{
    ChosenRecord macro;
    QVariantList events; // of the macro
    QList<int> indexes;
};

CommandResult<ChosenEvents> chooseEvents(CommandContext &context)
{
    const CommandResult<ChosenRecord> macro = chooseRecord(context, macroKind);
    if (!macro)
        return macro.error();
    const CommandResult<QList<int>> indexes = eventsOf(context.arguments.at(1), *macro);
    if (!indexes)
        return indexes.error();
    return ChosenEvents{.macro = *macro, .events = MacroRecord::events(macro->record()), .indexes = *indexes};
}

} // namespace

CommandResult<void> insertEvents(CommandContext &context)
{
    const auto content = MacroText::parse(context.arguments.sliced(2).join(u'\n').toUtf8());
    if (!content)
        return wrongUsage(content.error().message);
    if (content->name || content->events.isEmpty())
        return wrongUsage(content->name ? u"a name is not an event"_s : u"the lines have no event"_s);
    const CommandResult<ChosenRecord> macro = chooseRecord(context, macroKind);
    if (!macro)
        return macro.error();
    const CommandResult<int> place = placeOf(context.arguments.at(1), *macro);
    if (!place)
        return place.error();
    // A wait after the last event is the pause before the event that follows.
    QVariantList inserted = content->events;
    QVariantList events = MacroRecord::events(macro->record());
    if (*place < events.size() && MacroEdits::isPause(inserted.constLast().toMap())) {
        const int pauseMs = MacroRecord::eventFields(inserted.takeLast().toMap()).delayMs;
        const std::optional<QVariantList> paused = MacroEdits::insertingPause(events, *place, pauseMs);
        if (!paused)
            return store(context, *macro, {});
        events = *paused;
    }
    // Not MacroEdits::inserting(), which does not say how many events are too many.
    return store(context, *macro, events.first(*place) + inserted + events.sliced(*place));
}

CommandResult<void> deleteEvents(CommandContext &context)
{
    const CommandResult<ChosenEvents> chosen = chooseEvents(context);
    if (!chosen)
        return chosen.error();
    return store(context, chosen->macro, MacroEdits::removing(chosen->events, chosen->indexes));
}

CommandResult<void> moveEvents(CommandContext &context)
{
    const CommandResult<ChosenEvents> chosen = chooseEvents(context);
    if (!chosen)
        return chosen.error();
    const CommandResult<int> place = placeOf(context.arguments.at(2), chosen->macro);
    if (!place)
        return place.error();
    return store(context, chosen->macro, MacroEdits::moving(chosen->events, chosen->indexes, *place));
}

CommandResult<void> setDelays(CommandContext &context)
{
    const std::optional<int> delayMs = wholeNumber(context.arguments.at(2));
    if (!delayMs)
        return wrongUsage(u"\"%1\" is not a number of milliseconds"_s.arg(context.arguments.at(2)));
    const CommandResult<ChosenEvents> chosen = chooseEvents(context);
    if (!chosen)
        return chosen.error();
    return store(context, chosen->macro, MacroEdits::settingDelays(chosen->events, chosen->indexes, *delayMs));
}

CommandResult<void> scaleDelays(CommandContext &context)
{
    bool isNumber = false;
    const double factor = context.arguments.at(2).toDouble(&isNumber);
    if (!isNumber || !(factor >= 0 && factor <= 1000))
        return wrongUsage(u"\"%1\" is not a factor from 0 to 1000, such as 0.5"_s.arg(context.arguments.at(2)));
    const CommandResult<ChosenEvents> chosen = chooseEvents(context);
    if (!chosen)
        return chosen.error();
    return store(context, chosen->macro, MacroEdits::scalingDelays(chosen->events, chosen->indexes, factor));
}

CommandResult<void> showMacroUses(CommandContext &context)
{
    const CommandResult<ChosenRecord> macro = chooseRecord(context, macroKind);
    if (!macro)
        return macro.error();
    if (context.hasOption(Options::json)) {
        QJsonArray list;
        for (const KeyMappings::MacroUse &use :
             KeyMappings::macroUses(Document(macro->document).profiles(), macro->index)) {
            list.append(QJsonObject{{u"profile"_s, use.profileIndex},
                                    {u"profileName"_s, use.profileName},
                                    {u"code"_s, use.keyCode},
                                    {u"key"_s, keyName(use.keyCode)}});
        }
        context.console.printJson(list);
        return {};
    }
    const QString uses = describeMacroUses(macro->document, macro->index);
    context.console.print(uses.isEmpty() ? u"no key plays "_s + macro->words() : uses);
    return {};
}
