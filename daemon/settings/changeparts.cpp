// SPDX-License-Identifier: MIT
#include "daemon/settings/changeparts.h"

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

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using DocumentDifference::areIdentical;
using HistoryKeys::Key;
using HistoryText::cut;

namespace {

using State = std::optional<QVariantMap>; // absent: the thing does not exist

/// One state of the documents that are compared.
struct Side
{
    explicit Side(const QVariantMap &document)
        : profiles(Document(document).profiles()), macros(Document(document).macros()),
          device(Document(document).deviceSettings().dictionary())
    {
    }

    QVariantList profiles;
    QVariantList macros;
    QVariantMap device;
};

class Parts
{
public:
    Parts(const QVariantMap &before, const QVariantMap &after) : mBefore(before), mAfter(after) {}

    void addRecords(const QVariantMap &difference);
    void addDevice(const QVariantMap &difference);
    [[nodiscard]] ChangeParts take() { return std::move(mParts); }

private:
    using Compare = void (Parts::*)(const QVariantMap &before, const QVariantMap &after);
    /// The functions for one of the two lists of records.
    struct RecordKind
    {
        SettingsKeys::Key list;
        std::function<QVariant(const QVariantMap &record)> identity;
        Compare compare;
        std::function<void(const QVariantMap &record, bool isAdded)> addWhole;
    };

    /// `of` names the thing. Without both states it is named alone.
    void add(Key kind, QVariantMap of, const State &before, const State &after);
    void addRecordsOf(const RecordKind &kind, const QVariantMap &difference, const QVariantList &before,
                      const QVariantList &after);
    void addOrder();
    void compareProfiles(const QVariantMap &before, const QVariantMap &after);
    void compareKeys(const QVariantMap &before, const QVariantMap &after);
    void compareLight(const QVariantMap &before, const QVariantMap &after);
    void compareMacros(const QVariantMap &before, const QVariantMap &after);
    void compareEvents(const QVariantMap &of, const QVariantList &before, const QVariantList &after);

    Side mBefore;
    Side mAfter;
    ChangeParts mParts;
};

QVariantMap single(Key key, const QVariant &value)
{
    return {{key, value}};
}

/// The keys under which the records differ.
QSet<QString> keysThatDiffer(const QVariantMap &before, const QVariantMap &after)
{
    QSet<QString> keys;
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        if (!after.contains(entry.key()) || !areIdentical(entry.value(), after.value(entry.key())))
            keys += entry.key();
    }
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        if (!before.contains(entry.key()))
            keys += entry.key();
    }
    return keys;
}

/// Removes `keys`, and returns whether one of them was there.
bool takeAny(QSet<QString> &names, std::initializer_list<SettingsKeys::Key> keys)
{
    bool isAny = false;
    for (const SettingsKeys::Key key : keys)
        isAny = names.remove(key) || isAny;
    return isAny;
}

QVariant profileIdentity(const QVariantMap &profile)
{
    return ProfileRecord::name(profile);
}

/// The macro or profile that the entry means; invalid if it means none.
QVariant meantRecord(const KeyMappings::Entry &entry, const Side &side)
{
    if (entry.is(KeyMappings::Assignment::playMacro))
        return MacroRecord::identity(side.macros.value(entry.param1).toMap());
    if (entry.is(KeyMappings::Assignment::switchProfile))
        return profileIdentity(side.profiles.value(entry.param1).toMap());
    return {};
}

QVariantMap keyState(const QVariantMap &keys, const QString &code, const Side &side)
{
    const KeyMappings::Entry entry = KeyMappings::readEntry(keys.value(code));
    QVariantMap state = single(HistoryKeys::assignment, HistoryText::shownAssignment(keys.value(code).toMap()));
    if (entry.is(KeyMappings::Assignment::playMacro))
        state.insert(HistoryKeys::name, cut(MacroRecord::name(side.macros.value(entry.param1).toMap())));
    else if (entry.is(KeyMappings::Assignment::switchProfile))
        state.insert(HistoryKeys::name, cut(ProfileRecord::name(side.profiles.value(entry.param1).toMap())));
    return state;
}

QVariantMap applicationState(const QVariantMap &profile)
{
    const bool isBound = ProfileRecord::autoSwitchValue(profile) != 0;
    return single(HistoryKeys::application, isBound ? HistoryText::applicationOf(profile) : QString());
}

QVariantMap eventState(const QVariant &event)
{
    const MacroRecord::Event fields = MacroRecord::eventFields(event.toMap());
    return single(HistoryKeys::event, MacroRecord::eventRecord(fields));
}

void Parts::add(Key kind, QVariantMap of, const State &before, const State &after)
{
    if (before && after && *before == *after)
        return;
    ++mParts.count;
    if (mParts.list.size() == ChangeParts::maximumListed)
        return;
    of.insert(HistoryKeys::kind, QString(kind));
    if (before)
        of.insert(HistoryKeys::before, *before);
    if (after)
        of.insert(HistoryKeys::after, *after);
    mParts.list += of;
}

void Parts::addRecords(const QVariantMap &difference)
{
    addRecordsOf({.list = SettingsKeys::profiles,
                  .identity = profileIdentity,
                  .compare = &Parts::compareProfiles,
                  .addWhole =
                      [this](const QVariantMap &profile, bool isAdded) {
                          const QString name = cut(ProfileRecord::name(profile));
                          const QVariantMap state = single(HistoryKeys::name, name);
                          add(isAdded ? HistoryKeys::kindProfileAdded : HistoryKeys::kindProfileDeleted,
                              single(HistoryKeys::profile, name), isAdded ? State() : state,
                              isAdded ? State(state) : State());
                      }},
                 difference, mBefore.profiles, mAfter.profiles);
    addOrder();
    addRecordsOf({.list = SettingsKeys::macros,
                  .identity = MacroRecord::identity,
                  .compare = &Parts::compareMacros,
                  .addWhole =
                      [this](const QVariantMap &macro, bool isAdded) {
                          const QString name = cut(MacroRecord::name(macro));
                          const QVariantMap state = single(HistoryKeys::name, name);
                          add(isAdded ? HistoryKeys::kindMacroAdded : HistoryKeys::kindMacroDeleted,
                              single(HistoryKeys::macro, name), isAdded ? State() : state,
                              isAdded ? State(state) : State());
                      }},
                 difference, mBefore.macros, mAfter.macros);
}

/// A record that only moved is removed at one place and inserted at another.
void Parts::addRecordsOf(const RecordKind &kind, const QVariantMap &difference, const QVariantList &before,
                         const QVariantList &after)
{
    QVariantList removed;
    QVariantList inserted;
    for (const QVariant &element : difference.value(kind.list).toMap().value(DifferenceKeys::steps).toList()) {
        const QVariantMap step = element.toMap();
        if (step.contains(DifferenceKeys::changed)) {
            const QVariantMap earlier = before.value(step.value(DifferenceKeys::indexBefore).toLongLong()).toMap();
            const QVariantMap later = after.value(step.value(DifferenceKeys::indexAfter).toLongLong()).toMap();
            (this->*kind.compare)(earlier, later);
        }
        removed += step.value(DifferenceKeys::oldValue).toList();
        inserted += step.value(DifferenceKeys::newValue).toList();
    }
    for (const QVariant &record : std::as_const(removed)) {
        const QVariantMap earlier = record.toMap();
        const auto moved = std::ranges::find_if(
            inserted, [&](const QVariant &other) { return kind.identity(other.toMap()) == kind.identity(earlier); });
        if (moved == inserted.end()) {
            kind.addWhole(earlier, false);
            continue;
        }
        if (!areIdentical(earlier, moved->toMap()))
            (this->*kind.compare)(earlier, moved->toMap());
        inserted.erase(moved);
    }
    for (const QVariant &record : std::as_const(inserted))
        kind.addWhole(record.toMap(), true);
}

/// The order of the profiles that exist before and after the change.
void Parts::addOrder()
{
    const auto names = [](const QVariantList &profiles) {
        QStringList list;
        for (const QVariant &profile : profiles)
            list += ProfileRecord::name(profile.toMap());
        return list;
    };
    const auto common = [](QStringList list, const QStringList &others) {
        list.removeIf([&others](const QString &name) { return !others.contains(name); });
        return list;
    };
    const QStringList earlier = names(mBefore.profiles);
    const QStringList later = names(mAfter.profiles);
    const QStringList before = common(earlier, later);
    const QStringList after = common(later, earlier);
    const auto state = [](const QStringList &list) {
        return single(HistoryKeys::name, cut(list.join(", "_L1), HistoryText::longestList));
    };
    if (before != after)
        add(HistoryKeys::kindProfilesMoved, {}, state(before), state(after));
}

void Parts::compareProfiles(const QVariantMap &before, const QVariantMap &after)
{
    QSet<QString> names = keysThatDiffer(before, after);
    const bool isMoreThanKeys = names != QSet<QString>{SettingsKeys::keys};
    const qsizetype countBefore = mParts.count;
    const QVariantMap of = single(HistoryKeys::profile, cut(ProfileRecord::name(after)));
    if (takeAny(names, {SettingsKeys::profileName}))
        add(HistoryKeys::kindProfileRenamed, of, single(HistoryKeys::name, cut(ProfileRecord::name(before))),
            single(HistoryKeys::name, cut(ProfileRecord::name(after))));
    if (takeAny(names, {SettingsKeys::keys}))
        compareKeys(before, after);
    if (takeAny(names, {SettingsKeys::appInfo, SettingsKeys::autoSwitchOn}))
        add(HistoryKeys::kindProfileBound, of, applicationState(before), applicationState(after));
    const auto isShown = [](const QVariantMap &profile) {
        return single(HistoryKeys::isOn, profile.value(SettingsKeys::profileOsdOn).toInt() != 0);
    };
    if (takeAny(names, {SettingsKeys::profileOsdOn}))
        add(HistoryKeys::kindProfileDisplay, of, isShown(before), isShown(after));
    compareLight(before, after);
    (void)takeAny(names, {SettingsKeys::backlightLed, SettingsKeys::brightnessKbNormal, SettingsKeys::ledKbColors,
                          SettingsKeys::ledKbEffects});
    const bool isNothingShown = mParts.count == countBefore && isMoreThanKeys;
    if (!names.isEmpty() || isNothingShown)
        add(HistoryKeys::kindProfileChanged, of, {}, {});
}

void Parts::compareKeys(const QVariantMap &before, const QVariantMap &after)
{
    const QVariantMap earlier = ProfileRecord::keys(before);
    const QVariantMap later = ProfileRecord::keys(after);
    QList<int> codes;
    for (const QString &code : keysThatDiffer(earlier, later))
        codes += code.toInt();
    std::ranges::sort(codes);
    for (const int number : std::as_const(codes)) {
        const QString code = QString::number(number);
        const KeyMappings::Entry from = KeyMappings::readEntry(earlier.value(code));
        const KeyMappings::Entry to = KeyMappings::readEntry(later.value(code));
        const QVariant meant = meantRecord(from, mBefore);
        if (meant.isValid() && from.command == to.command && from.param2 == to.param2
            && meant == meantRecord(to, mAfter))
            continue;
        add(HistoryKeys::kindKey, {{HistoryKeys::profile, cut(ProfileRecord::name(after))}, {HistoryKeys::key, number}},
            keyState(earlier, code, mBefore), keyState(later, code, mAfter));
    }
}

void Parts::compareLight(const QVariantMap &before, const QVariantMap &after)
{
    const QVariantMap of = single(HistoryKeys::profile, cut(ProfileRecord::name(after)));
    const Backlight::Settings earlier = Backlight::settingsOf(before);
    const Backlight::Settings later = Backlight::settingsOf(after);
    add(HistoryKeys::kindLight, of, single(HistoryKeys::isOn, earlier.isOn), single(HistoryKeys::isOn, later.isOn));
    add(HistoryKeys::kindBrightness, of, single(HistoryKeys::value, earlier.brightness),
        single(HistoryKeys::value, later.brightness));
    add(HistoryKeys::kindColor, of, single(HistoryKeys::color, Backlight::colorText(earlier.color)),
        single(HistoryKeys::color, Backlight::colorText(later.color)));
    add(HistoryKeys::kindEffect, of, single(HistoryKeys::value, earlier.effect),
        single(HistoryKeys::value, later.effect));
}

void Parts::compareMacros(const QVariantMap &before, const QVariantMap &after)
{
    QSet<QString> names = keysThatDiffer(before, after);
    const qsizetype countBefore = mParts.count;
    const QVariantMap of = single(HistoryKeys::macro, cut(MacroRecord::name(after)));
    if (takeAny(names, {SettingsKeys::macroName}))
        add(HistoryKeys::kindMacroRenamed, of, single(HistoryKeys::name, cut(MacroRecord::name(before))),
            single(HistoryKeys::name, cut(MacroRecord::name(after))));
    if (takeAny(names, {SettingsKeys::sequence}))
        compareEvents(of, MacroRecord::events(before), MacroRecord::events(after));
    if (!names.isEmpty() || mParts.count == countBefore)
        add(HistoryKeys::kindMacroChanged, of, {}, {});
}

/// The events that are equal at both ends are not parts. Those between them are compared in order.
void Parts::compareEvents(const QVariantMap &of, const QVariantList &before, const QVariantList &after)
{
    const auto count = [](const QVariantList &events) {
        return single(HistoryKeys::count, static_cast<int>(events.size()));
    };
    add(HistoryKeys::kindEvents, of, count(before), count(after));
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype start = 0;
    while (start < shorter && areIdentical(before.at(start), after.at(start)))
        ++start;
    qsizetype end = 0;
    while (end < shorter - start && areIdentical(before.at(before.size() - 1 - end), after.at(after.size() - 1 - end)))
        ++end;
    const qsizetype longer = std::max(before.size(), after.size()) - end;
    for (qsizetype index = start; index < longer; ++index) {
        QVariantMap event = of;
        event.insert(HistoryKeys::index, static_cast<int>(index + 1));
        add(HistoryKeys::kindEvent, event, index < before.size() - end ? State(eventState(before.at(index))) : State(),
            index < after.size() - end ? State(eventState(after.at(index))) : State());
    }
}

void Parts::addDevice(const QVariantMap &difference)
{
    QSet<QString> names = keysThatDiffer(mBefore.device, mAfter.device);
    (void)takeAny(names, {SettingsKeys::lastMacroId});
    const auto activeProfile = [](const Side &side) {
        const int index = DeviceSettings(side.device).activeProfileIndex();
        return single(HistoryKeys::profile, cut(ProfileRecord::name(side.profiles.value(index).toMap())));
    };
    // The index also changes when profiles before it come or go. Its name also changes when it is renamed.
    if (takeAny(names, {SettingsKeys::activeProfile}))
        add(HistoryKeys::kindProfileChosen, {}, activeProfile(mBefore), activeProfile(mAfter));
    const auto isGameMode = [](const Side &side) {
        return single(HistoryKeys::isOn, DeviceSettings(side.device).isGameModeOn());
    };
    if (takeAny(names, {SettingsKeys::gameMode}))
        add(HistoryKeys::kindGameMode, {}, isGameMode(mBefore), isGameMode(mAfter));
    (void)takeAny(names, {SettingsKeys::profileOsdOn}); // that of the active profile
    QStringList others = difference.keys();
    others.removeIf([](const QString &key) {
        return key == SettingsKeys::profiles || key == SettingsKeys::macros || key == SettingsKeys::deviceSettings;
    });
    if (!names.isEmpty() || !others.isEmpty())
        add(HistoryKeys::kindSeveral, {}, {}, {});
}

} // namespace

ChangeParts changeParts(const QVariantMap &before, const QVariantMap &after, const QVariantMap &difference)
{
    Parts parts(before, after);
    parts.addRecords(difference);
    parts.addDevice(difference);
    return parts.take();
}
