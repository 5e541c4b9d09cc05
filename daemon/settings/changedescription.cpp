// SPDX-License-Identifier: MIT
#include "daemon/settings/changedescription.h"

#include "base/document.h"
#include "base/historykeys.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "daemon/settings/differencekeys.h"
#include "daemon/settings/documentdifference.h"
#include "daemon/settings/historytext.h"
#include "keys/keymapping.h"
#include "lighting/backlight.h"
#include "macros/macrorecord.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
using HistoryKeys::Key;
using HistoryText::applicationOf;
using HistoryText::cut;

namespace {

QVariantMap described(Key kind, QVariantMap ingredients = {})
{
    ingredients.insert(HistoryKeys::kind, QString(kind));
    return ingredients;
}

/// The records of one list that a difference changes.
struct Records
{
    explicit Records(const QVariantMap &change)
    {
        for (const QVariant &element : change.value(DifferenceKeys::steps).toList()) {
            const QVariantMap step = element.toMap();
            if (step.contains(DifferenceKeys::changed))
                changed += step;
            removed += step.value(DifferenceKeys::oldValue).toList();
            inserted += step.value(DifferenceKeys::newValue).toList();
        }
    }

    [[nodiscard]] bool isStructural() const { return !removed.isEmpty() || !inserted.isEmpty(); }
    [[nodiscard]] qsizetype count() const { return removed.size() + inserted.size() + changed.size(); }

    QVariantList removed;
    QVariantList inserted;
    QList<QVariantMap> changed; // steps
};

/// The record before and after the one step that changes it, and the keys that have changed.
struct ChangedRecord
{
    ChangedRecord(const QVariantMap &step, const QVariantList &listBefore, const QVariantList &listAfter)
        : before(listBefore.value(step.value(DifferenceKeys::indexBefore).toLongLong()).toMap()),
          after(listAfter.value(step.value(DifferenceKeys::indexAfter).toLongLong()).toMap()),
          inside(step.value(DifferenceKeys::changed).toMap().value(DifferenceKeys::dictionary).toMap())
    {
    }

    [[nodiscard]] bool hasOnly(const QList<SettingsKeys::Key> &keys) const
    {
        const QStringList names = inside.keys();
        return std::ranges::all_of(names, [&keys](const QString &name) {
            return std::ranges::any_of(keys, [&name](SettingsKeys::Key key) { return name == key; });
        });
    }

    QVariantMap before;
    QVariantMap after;
    QVariantMap inside;
};

QVariantMap keyChange(const QVariantMap &documentAfter, const ChangedRecord &profile)
{
    const QVariantMap changed =
        profile.inside.value(SettingsKeys::keys).toMap().value(DifferenceKeys::dictionary).toMap();
    const QVariantMap of{{HistoryKeys::profile, cut(ProfileRecord::name(profile.after))}};
    if (changed.size() != 1) {
        QVariantMap several = of;
        several.insert(HistoryKeys::count, static_cast<int>(changed.size()));
        return described(HistoryKeys::kindKeys, several);
    }
    QVariantMap one = of;
    one.insert(HistoryKeys::key, changed.firstKey().toInt());
    const QVariantMap assignment = ProfileRecord::keys(profile.after).value(changed.firstKey()).toMap();
    one.insert(HistoryKeys::assignment, HistoryText::shownAssignment(assignment));
    const KeyMappings::Entry entry = KeyMappings::entryForKey(profile.after, changed.firstKey().toInt());
    const Document document(documentAfter);
    if (entry.is(KeyMappings::Assignment::playMacro))
        one.insert(HistoryKeys::name, cut(MacroRecord::name(document.macro(entry.param1))));
    else if (entry.is(KeyMappings::Assignment::switchProfile))
        one.insert(HistoryKeys::name, cut(ProfileRecord::name(document.profile(entry.param1))));
    return described(HistoryKeys::kindKey, one);
}

QVariantMap lightChange(const ChangedRecord &profile, const QVariantMap &of)
{
    const Backlight::Settings light = Backlight::settingsOf(profile.after);
    QVariantMap ingredients = of;
    if (profile.hasOnly({SettingsKeys::backlightLed})) {
        ingredients.insert(HistoryKeys::isOn, light.isOn);
        return described(HistoryKeys::kindLight, ingredients);
    }
    if (profile.hasOnly({SettingsKeys::brightnessKbNormal})) {
        ingredients.insert(HistoryKeys::value, light.brightness);
        return described(HistoryKeys::kindBrightness, ingredients);
    }
    if (profile.hasOnly({SettingsKeys::ledKbColors})) {
        ingredients.insert(HistoryKeys::color, Backlight::colorText(light.color));
        return described(HistoryKeys::kindColor, ingredients);
    }
    if (profile.hasOnly({SettingsKeys::ledKbEffects})) {
        ingredients.insert(HistoryKeys::value, light.effect);
        return described(HistoryKeys::kindEffect, ingredients);
    }
    return described(HistoryKeys::kindProfileChanged, of);
}

QVariantMap profileChange(const QVariantMap &documentAfter, const ChangedRecord &profile)
{
    const QVariantMap of{{HistoryKeys::profile, cut(ProfileRecord::name(profile.after))}};
    if (profile.hasOnly({SettingsKeys::profileName}))
        return described(HistoryKeys::kindProfileRenamed,
                         {{HistoryKeys::profile, cut(ProfileRecord::name(profile.before))},
                          {HistoryKeys::name, cut(ProfileRecord::name(profile.after))}});
    const QVariantMap keys = profile.inside.value(SettingsKeys::keys).toMap();
    if (profile.hasOnly({SettingsKeys::keys}) && keys.contains(DifferenceKeys::dictionary))
        return keyChange(documentAfter, profile);
    if (profile.hasOnly({SettingsKeys::profileOsdOn})) {
        const bool isOn = profile.after.value(SettingsKeys::profileOsdOn).toInt() != 0;
        return described(HistoryKeys::kindProfileDisplay,
                         {{HistoryKeys::profile, of.value(HistoryKeys::profile)}, {HistoryKeys::isOn, isOn}});
    }
    if (profile.hasOnly({SettingsKeys::appInfo, SettingsKeys::autoSwitchOn})) {
        const QString application = applicationOf(profile.after);
        if (ProfileRecord::autoSwitchValue(profile.after) == 0 || application.isEmpty())
            return described(HistoryKeys::kindProfileUnbound, of);
        return described(HistoryKeys::kindProfileBound, {{HistoryKeys::profile, of.value(HistoryKeys::profile)},
                                                         {HistoryKeys::application, application}});
    }
    return lightChange(profile, of);
}

bool isDelayOnly(const QVariant &before, const QVariant &after)
{
    QVariantMap earlier = before.toMap();
    QVariantMap later = after.toMap();
    earlier.remove(SettingsKeys::delay);
    later.remove(SettingsKeys::delay);
    return DocumentDifference::areIdentical(earlier, later);
}

QVariantMap eventsChange(const ChangedRecord &macro, QVariantMap of, ChangeSource source)
{
    const QVariantList before = MacroRecord::events(macro.before);
    const QVariantList after = MacroRecord::events(macro.after);
    const auto counted = [&of](Key kind, qsizetype count) {
        of.insert(HistoryKeys::count, static_cast<int>(count));
        return described(kind, of);
    };
    const qsizetype more = after.size() - before.size();
    if (source == ChangeSource::recording) {
        const bool isAppended = more > 0 && DocumentDifference::areIdentical(after.first(before.size()), before);
        return counted(HistoryKeys::kindMacroRecorded, isAppended ? more : after.size());
    }
    if (more != 0)
        return counted(more > 0 ? HistoryKeys::kindEventsAdded : HistoryKeys::kindEventsRemoved, std::abs(more));
    qsizetype changed = 0;
    bool areDelays = true;
    for (qsizetype index = 0; index < before.size(); ++index) {
        if (DocumentDifference::areIdentical(before.at(index), after.at(index)))
            continue;
        ++changed;
        areDelays = areDelays && isDelayOnly(before.at(index), after.at(index));
    }
    return counted(areDelays ? HistoryKeys::kindDelaysSet : HistoryKeys::kindEventsChanged, changed);
}

QVariantMap macroChange(const ChangedRecord &macro, ChangeSource source)
{
    const QVariantMap of{{HistoryKeys::macro, cut(MacroRecord::name(macro.after))}};
    if (macro.hasOnly({SettingsKeys::macroName}))
        return described(HistoryKeys::kindMacroRenamed, {{HistoryKeys::macro, cut(MacroRecord::name(macro.before))},
                                                         {HistoryKeys::name, cut(MacroRecord::name(macro.after))}});
    if (macro.hasOnly({SettingsKeys::sequence}))
        return eventsChange(macro, of, source);
    return described(HistoryKeys::kindMacroChanged, of);
}

/// The deletion of one record also changes the keys that led to it; an addition also activates a profile.
QVariantMap structuralChange(const Records &profiles, const Records &macros, ChangeSource source)
{
    const auto isOnly = [](const Records &records, const Records &others, qsizetype removed, qsizetype inserted) {
        return !others.isStructural() && records.removed.size() == removed && records.inserted.size() == inserted;
    };
    const auto profileName = [](const QVariantList &list) { return cut(ProfileRecord::name(list.first().toMap())); };
    const auto macroName = [](const QVariantList &list) { return cut(MacroRecord::name(list.first().toMap())); };
    if (isOnly(profiles, macros, 0, 1))
        return described(HistoryKeys::kindProfileAdded, {{HistoryKeys::profile, profileName(profiles.inserted)}});
    if (isOnly(profiles, macros, 1, 0))
        return described(HistoryKeys::kindProfileDeleted, {{HistoryKeys::profile, profileName(profiles.removed)}});
    if (isOnly(macros, profiles, 1, 0))
        return described(HistoryKeys::kindMacroDeleted, {{HistoryKeys::macro, macroName(macros.removed)}});
    if (isOnly(macros, profiles, 0, 1)) {
        QVariantMap added{{HistoryKeys::macro, macroName(macros.inserted)}};
        if (source != ChangeSource::recording)
            return described(HistoryKeys::kindMacroAdded, added);
        added.insert(HistoryKeys::count, static_cast<int>(MacroRecord::events(macros.inserted.first().toMap()).size()));
        return described(HistoryKeys::kindMacroRecorded, added);
    }
    const auto isIn = [](const QVariantList &list, const QVariant &record) {
        return std::ranges::any_of(
            list, [&record](const QVariant &other) { return DocumentDifference::areIdentical(record, other); });
    };
    if (!macros.isStructural() && profiles.removed.size() == profiles.inserted.size()
        && std::ranges::all_of(profiles.removed,
                               [&](const QVariant &profile) { return isIn(profiles.inserted, profile); }))
        return described(HistoryKeys::kindProfilesMoved);
    return described(HistoryKeys::kindSeveral,
                     {{HistoryKeys::count, static_cast<int>(profiles.count() + macros.count())}});
}

QVariantMap deviceChange(const QVariantMap &after, const QVariantMap &difference)
{
    const QVariantMap device =
        difference.value(SettingsKeys::deviceSettings).toMap().value(DifferenceKeys::dictionary).toMap();
    const Document document(after);
    if (device.contains(SettingsKeys::activeProfile))
        return described(HistoryKeys::kindProfileChosen,
                         {{HistoryKeys::profile, cut(ProfileRecord::name(document.activeProfile()))}});
    if (device.contains(SettingsKeys::gameMode))
        return described(HistoryKeys::kindGameMode, {{HistoryKeys::isOn, document.deviceSettings().isGameModeOn()}});
    return described(HistoryKeys::kindSeveral, {{HistoryKeys::count, static_cast<int>(difference.size())}});
}

} // namespace

QVariantMap describedChange(const QVariantMap &before, const QVariantMap &after, const QVariantMap &difference,
                            ChangeSource source)
{
    const Records profiles(difference.value(SettingsKeys::profiles).toMap());
    const Records macros(difference.value(SettingsKeys::macros).toMap());
    if (profiles.isStructural() || macros.isStructural())
        return structuralChange(profiles, macros, source);
    const Document earlier(before);
    const Document later(after);
    if (profiles.changed.size() == 1 && macros.changed.isEmpty())
        return profileChange(after, ChangedRecord(profiles.changed.first(), earlier.profiles(), later.profiles()));
    if (macros.changed.size() == 1 && profiles.changed.isEmpty())
        return macroChange(ChangedRecord(macros.changed.first(), earlier.macros(), later.macros()), source);
    if (profiles.count() + macros.count() == 0)
        return deviceChange(after, difference);
    return described(HistoryKeys::kindSeveral,
                     {{HistoryKeys::count, static_cast<int>(profiles.count() + macros.count())}});
}
