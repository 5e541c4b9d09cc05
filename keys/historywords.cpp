// SPDX-License-Identifier: MIT
#include "keys/historywords.h"

#include "base/historykeys.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "lighting/backlight.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QFileInfo>
#include <QStringList>

using namespace Qt::StringLiterals;
using HistoryKeys::Key;
using KeyMappings::Assignment;

namespace {

/// The words of one kind. `singleFormat` is that for a count of 1, and for a switch that is off.
struct Row
{
    Key kind;
    const char *format;
    Key first = {};  // the ingredients for the placeholders of the format
    Key second = {}; // a count or a switch for one with `singleFormat`
    const char *singleFormat = nullptr;
};

/// The state of a thing, where this is not worded as the change that led to it.
constexpr Row stateRows[] = {
    {HistoryKeys::kindProfileAdded, "lkeyHistoryProfile", HistoryKeys::name},
    {HistoryKeys::kindProfileDeleted, "lkeyHistoryProfile", HistoryKeys::name},
    {HistoryKeys::kindProfileRenamed, "lkeyHistoryProfile", HistoryKeys::name},
    {HistoryKeys::kindProfilesMoved, "lkeyHistoryProfileOrder", HistoryKeys::name},
    {HistoryKeys::kindMacroAdded, "lkeyHistoryMacro", HistoryKeys::name},
    {HistoryKeys::kindMacroDeleted, "lkeyHistoryMacro", HistoryKeys::name},
    {HistoryKeys::kindMacroRenamed, "lkeyHistoryMacro", HistoryKeys::name},
    {HistoryKeys::kindEvents, "lkeyHistoryMacroEvents", HistoryKeys::macro, HistoryKeys::count,
     "lkeyHistoryMacroEvent"},
};

constexpr Row rows[] = {
    {HistoryKeys::kindKeys, "lkeyHistoryKeys", HistoryKeys::profile, HistoryKeys::count},
    {HistoryKeys::kindProfileAdded, "lkeyHistoryProfileAdded", HistoryKeys::profile},
    {HistoryKeys::kindProfileDeleted, "lkeyHistoryProfileDeleted", HistoryKeys::profile},
    {HistoryKeys::kindProfileRenamed, "lkeyHistoryProfileRenamed", HistoryKeys::profile, HistoryKeys::name},
    {HistoryKeys::kindProfileChosen, "lkeyHistoryProfileChosen", HistoryKeys::profile},
    {HistoryKeys::kindProfileBound, "lkeyHistoryProfileBound", HistoryKeys::profile, HistoryKeys::application},
    {HistoryKeys::kindProfileUnbound, "lkeyHistoryProfileUnbound", HistoryKeys::profile},
    {HistoryKeys::kindProfileDisplay, "lkeyHistoryProfileShown", HistoryKeys::profile, HistoryKeys::isOn,
     "lkeyHistoryProfileNotShown"},
    {HistoryKeys::kindProfileChanged, "lkeyHistoryProfileChanged", HistoryKeys::profile},
    {HistoryKeys::kindProfilesMoved, "lkeyHistoryProfilesMoved"},
    {HistoryKeys::kindLight, "lkeyHistoryLightOn", HistoryKeys::profile, HistoryKeys::isOn, "lkeyHistoryLightOff"},
    {HistoryKeys::kindBrightness, "lkeyHistoryBrightness", HistoryKeys::profile, HistoryKeys::value},
    {HistoryKeys::kindColor, "lkeyHistoryColor", HistoryKeys::profile, HistoryKeys::color},
    {HistoryKeys::kindEffect, "lkeyHistoryEffect", HistoryKeys::profile},
    {HistoryKeys::kindMacroAdded, "lkeyHistoryMacroAdded", HistoryKeys::macro},
    {HistoryKeys::kindMacroDeleted, "lkeyHistoryMacroDeleted", HistoryKeys::macro},
    {HistoryKeys::kindMacroRenamed, "lkeyHistoryMacroRenamed", HistoryKeys::macro, HistoryKeys::name},
    {HistoryKeys::kindMacroRecorded, "lkeyHistoryMacroRecorded", HistoryKeys::macro, HistoryKeys::count,
     "lkeyHistoryMacroRecordedOne"},
    {HistoryKeys::kindMacroChanged, "lkeyHistoryMacroChanged", HistoryKeys::macro},
    {HistoryKeys::kindEventsAdded, "lkeyHistoryEventsAdded", HistoryKeys::macro, HistoryKeys::count,
     "lkeyHistoryEventAdded"},
    {HistoryKeys::kindEventsRemoved, "lkeyHistoryEventsRemoved", HistoryKeys::macro, HistoryKeys::count,
     "lkeyHistoryEventRemoved"},
    {HistoryKeys::kindEventsChanged, "lkeyHistoryEventsChanged", HistoryKeys::macro, HistoryKeys::count,
     "lkeyHistoryEventChanged"},
    {HistoryKeys::kindDelaysSet, "lkeyHistoryDelaysSet", HistoryKeys::macro, HistoryKeys::count, "lkeyHistoryDelaySet"},
    {HistoryKeys::kindGameMode, "lkeyHistoryGameModeOn", HistoryKeys::isOn, {}, "lkeyHistoryGameModeOff"},
    {HistoryKeys::kindSeveral, "lkeyHistorySeveral"},
    {HistoryKeys::kindDocument, "lkeyHistoryDocument", HistoryKeys::name},
    {HistoryKeys::kindElsewhere, "lkeyHistoryElsewhere"},
};

QString shown(const QString &text)
{
    return visibleText(text, u'?');
}

QString ingredient(const QVariantMap &entry, Key key)
{
    return shown(entry.value(key).toString());
}

QString keyWords(int code)
{
    const QString name = keyName(code);
    return name.isEmpty() ? QString::number(code) : name;
}

const char *assignmentKey(const KeyMappings::Entry &assignment)
{
    if (!assignment.isMapped())
        return "lkeyDefaultKey";
    switch (static_cast<Assignment>(assignment.command)) {
    case Assignment::playMacro: return "lkeyMacro";
    case Assignment::singleKey: return "lkeySingleKey";
    case Assignment::switchProfile: return "lkeyProfile";
    case Assignment::disabled: return "lkeyDisable";
    case Assignment::launchProgram: return "lkeyLaunchProgram";
    case Assignment::defaultKey: break;
    }
    return "lkeyHistoryUnknownAssignment";
}

/// The macro, profile, program or keys of an assignment; empty if it has none.
QString assignmentDetail(const KeyMappings::Entry &assignment, const QVariantMap &entry)
{
    if (assignment.is(Assignment::launchProgram))
        return shown(QFileInfo(assignment.programPath).completeBaseName());
    if (!assignment.is(Assignment::singleKey))
        return ingredient(entry, HistoryKeys::name);
    QList<int> codes;
    eventParser::getModifierHIDRetVal(static_cast<quint8>(assignment.param2), codes);
    if (!keyName(assignment.param1).isEmpty())
        codes += assignment.param1;
    QStringList names;
    for (const int code : std::as_const(codes))
        names += keyWords(code);
    return names.join(u" + "_s);
}

QString keyChangeWords(const QVariantMap &entry)
{
    const KeyMappings::Entry assignment = KeyMappings::readEntry(entry.value(HistoryKeys::assignment));
    const QString key = keyWords(entry.value(HistoryKeys::key).toInt());
    const QString kind = localizedText(assignmentKey(assignment));
    const QString detail = assignmentDetail(assignment, entry);
    return detail.isEmpty() ? localizedFormat("lkeyHistoryKey", {key, kind})
                            : localizedFormat("lkeyHistoryKeyWithDetail", {key, kind, detail});
}

/// The words of an undo, a redo or a restoration.
QString returnWords(const char *format, const QVariantMap &entry)
{
    const QVariantMap change = entry.value(HistoryKeys::change).toMap();
    // A change that was itself a return has no further words: they would grow without end.
    const bool hasWords = !change.isEmpty() && !change.contains(HistoryKeys::target);
    return localizedFormat(format, {hasWords ? historyWords(change) : localizedText("lkeyHistoryEarlierChange")});
}

QString rowWords(const Row &row, const QVariantMap &entry)
{
    const Key choice = row.second.isEmpty() ? row.first : row.second;
    const QVariant chosen = entry.value(choice);
    const bool isSingle = choice == HistoryKeys::isOn ? !chosen.toBool() : chosen.toInt() == 1;
    const char *format = row.singleFormat && isSingle ? row.singleFormat : row.format;
    QStringList arguments;
    for (const Key key : {row.first, row.second}) {
        if (!key.isEmpty() && key != HistoryKeys::isOn)
            arguments += ingredient(entry, key);
    }
    return localizedFormat(format, arguments);
}

QString effectWords(const QVariantMap &state)
{
    const int effect = state.value(HistoryKeys::value).toInt();
    const QString name = effect == Backlight::fixedColorEffect        ? localizedText("lkeyEffectFixedColor")
                         : effect == Backlight::spectrumCyclingEffect ? localizedText("lkeyEffectSpectrumCycling")
                                                                      : QString::number(effect);
    return localizedFormat("lkeyHistoryEffectIs", {ingredient(state, HistoryKeys::profile), name});
}

QString eventWords(const QVariantMap &state)
{
    const QVariantMap event = state.value(HistoryKeys::event).toMap();
    const MacroRecord::Event fields = MacroRecord::eventFields(event);
    const QString macro = ingredient(state, HistoryKeys::macro);
    const QString index = ingredient(state, HistoryKeys::index);
    const QString delay = QString::number(fields.delayMs);
    if (!eventParser::hasEventLine(event))
        return localizedFormat("lkeyHistoryEventDelay", {macro, index, delay});
    return localizedFormat(fields.command == MacroRecord::keyUp ? "lkeyHistoryEventUp" : "lkeyHistoryEventDown",
                           {macro, index, eventParser::nameOfKeyOrButton(event), delay});
}

QString stateWords(const QVariantMap &state)
{
    const QString kind = state.value(HistoryKeys::kind).toString();
    if (kind == HistoryKeys::kindEffect)
        return effectWords(state);
    if (kind == HistoryKeys::kindEvent)
        return eventWords(state);
    if (kind == HistoryKeys::kindProfileBound && state.value(HistoryKeys::application).toString().isEmpty())
        return localizedFormat("lkeyHistoryProfileUnbound", {ingredient(state, HistoryKeys::profile)});
    for (const Row &row : stateRows) {
        if (row.kind == kind)
            return rowWords(row, state);
    }
    return historyWords(state);
}

} // namespace

HistoryPartWords historyPartWords(const QVariantMap &part)
{
    QVariantMap thing = part;
    const QVariant before = thing.take(HistoryKeys::before);
    const QVariant after = thing.take(HistoryKeys::after);
    if (!before.isValid() && !after.isValid())
        return {.after = historyWords(thing)};
    const auto words = [&thing](const QVariant &state) {
        if (!state.isValid())
            return localizedText("lkeyHistoryNotThere");
        QVariantMap whole = thing;
        whole.insert(state.toMap());
        return stateWords(whole);
    };
    return {.before = words(before), .after = words(after)};
}

QString historyWords(const QVariantMap &entry)
{
    const QString kind = entry.value(HistoryKeys::kind).toString();
    if (kind == HistoryKeys::kindKey)
        return keyChangeWords(entry);
    if (kind == HistoryKeys::kindUndo)
        return returnWords("lkeyHistoryUndone", entry);
    if (kind == HistoryKeys::kindRedo)
        return returnWords("lkeyHistoryRedone", entry);
    if (kind == HistoryKeys::kindRestore)
        return returnWords("lkeyHistoryRestored", entry);
    for (const Row &row : rows) {
        if (row.kind == kind)
            return rowWords(row, entry);
    }
    return localizedText("lkeyHistorySeveral");
}
