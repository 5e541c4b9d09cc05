// SPDX-License-Identifier: MIT
// "macro text": writes a macro that types a text.
#include "cli/chosenrecord.h"
#include "cli/commandtable.h"
#include "cli/linewords.h"
#include "cli/macroeventsclient.h"
#include "macros/macrorecord.h"
#include "platform/desktopkeymap.h"
#include "typing/typedtext.h"
#include "typing/typingtable.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds compositorLimit = 2s;

CommandResult<int> pauseOf(const CommandContext &context)
{
    if (!context.hasOption(Options::pause))
        return MacroRecord::standardDelayMs;
    const QString text = context.optionValue(Options::pause);
    bool isNumber = false;
    const int pauseMs = text.toInt(&isNumber);
    if (!isNumber || pauseMs < 0)
        return wrongUsage(u"\"%1\" is not a number of milliseconds from 0 on"_s.arg(text));
    return pauseMs;
}

CommandResult<Keymap> keymapOf(const CommandContext &context)
{
    if (!context.hasOption(Options::layout)) {
        DesktopKeymap desktop(DesktopKeymap::desktopOfEnvironment());
        desktop.waitForDesktop(compositorLimit);
        return desktop.keymap();
    }
    const QString name = context.optionValue(Options::layout);
    const Keymap keymap = Keymap::fromDescription(name);
    if (keymap.isNull())
        return wrongUsage(
            u"\"%1\" is not a keyboard layout of this system, such as \"us\" or \"fr(bepo)\""_s.arg(name));
    return keymap;
}

/// Each character once, in the order of the text, with all its positions.
QString untypedWords(const QList<UntypedCharacter> &untyped)
{
    QList<char32_t> characters;
    QHash<char32_t, QStringList> positions;
    for (const UntypedCharacter &each : untyped) {
        if (!positions.contains(each.character))
            characters += each.character;
        positions[each.character] += QString::number(each.position);
    }
    QStringList words;
    for (const char32_t character : std::as_const(characters)) {
        const QStringList where = positions.value(character);
        words += u"%1 at position%2 %3"_s.arg(shownCharacter(character), where.size() > 1 ? u"s"_s : QString(),
                                              where.join(u", "_s));
    }
    return words.join(u"; "_s);
}

/// The text as events of `macro`, in the layout `keymap`. `before` are the events that the macro keeps.
CommandResult<QVariantList> eventsOf(const QString &text, const Keymap &keymap, int pauseMs, const ChosenRecord &macro,
                                     const QVariantList &before)
{
    const TypedText typed = typeText(text, TypingTable(keymap), pauseMs);
    if (!typed.untyped.isEmpty())
        return wrongUsage(
            u"the keyboard layout \"%1\" cannot type %2"_s.arg(keymap.name(), untypedWords(typed.untyped)));
    if (const CommandResult<void> possible = checkEventCount(macro, before.size() + typed.eventCount); !possible)
        return possible.error();
    return insertingTyped(before, before.size(), typed.events, pauseMs);
}

} // namespace

CommandResult<void> typeMacroText(CommandContext &context)
{
    const CommandResult<int> pauseMs = pauseOf(context);
    if (!pauseMs)
        return pauseMs.error();
    const CommandResult<Keymap> keymap = keymapOf(context);
    if (!keymap)
        return keymap.error();
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    const QVariantList read = MacroRecord::events(chosen->record());
    const QVariantList before = context.hasOption(Options::append) ? read : QVariantList();
    const CommandResult<QVariantList> events = eventsOf(context.arguments.at(1), *keymap, *pauseMs, *chosen, before);
    if (!events)
        return events.error();
    if (const CommandResult<void> stored = replaceEvents(*chosen, *events); !stored)
        return stored.error();
    printStored(context.console,
                chosen->words() + u" has %1, for the layout \"%2\""_s.arg(eventCount(events->size()), keymap->name()),
                *events);
    if (const QStringList held = modifiersHeldBefore(before, before.size()); !held.isEmpty())
        context.console.print(u"held where the text begins: %1; other characters may arrive"_s.arg(held.join(u", "_s)));
    return {};
}

QList<CommandForm> typeMacroTextForms()
{
    return {{.words = u"N|NAME TEXT [--append] [--layout LAYOUT] [--pause MS]"_s,
             .help = u"make a macro type a text, in your keyboard layout or LAYOUT"_s}};
}
