// SPDX-License-Identifier: MIT
#include "daemon/settings/recordtouch.h"

#include "base/settingskeys.h"
#include "daemon/settings/differencekeys.h"
#include "keys/keymapping.h"

#include <QVariantList>

#include <algorithm>
#include <array>

using namespace DifferenceKeys;
using KeyMappings::Assignment;
using SettingsKeys::Key;

namespace {

constexpr std::array recordLists{SettingsKeys::profiles, SettingsKeys::macros};

QVariantList stepsOf(const QVariantMap &difference, Key list)
{
    return difference.value(list).toMap().value(steps).toList();
}

bool isStructural(const QVariantMap &difference, Key list)
{
    const QVariantList all = stepsOf(difference, list);
    return std::ranges::any_of(all, [](const QVariant &step) { return !step.toMap().contains(changed); });
}

/// Whether the change of a key's entry may involve the index of another record.
bool mayRefer(const QVariantMap &entryChange, Assignment assignment)
{
    const auto refers = [assignment](const QVariant &command) {
        return command.toInt() == static_cast<int>(assignment);
    };
    if (!entryChange.contains(dictionary))
        return refers(entryChange.value(oldValue).toMap().value(SettingsKeys::command))
               || refers(entryChange.value(newValue).toMap().value(SettingsKeys::command));
    const QVariant command = entryChange.value(dictionary).toMap().value(SettingsKeys::command);
    if (!command.isValid()) // the difference does not have the unchanged assignment
        return true;
    return refers(command.toMap().value(oldValue)) || refers(command.toMap().value(newValue));
}

bool changesReference(const QVariantMap &difference, Assignment assignment)
{
    if (isStructural(difference, SettingsKeys::profiles))
        return true; // the keys of the profile itself
    const QVariantList profiles = stepsOf(difference, SettingsKeys::profiles);
    return std::ranges::any_of(profiles, [assignment](const QVariant &step) {
        const QVariantMap profile = step.toMap().value(changed).toMap().value(dictionary).toMap();
        if (!profile.contains(SettingsKeys::keys))
            return false;
        const QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
        if (!keys.contains(dictionary))
            return true;
        const QVariantMap entries = keys.value(dictionary).toMap();
        return std::ranges::any_of(
            entries, [assignment](const QVariant &change) { return mayRefer(change.toMap(), assignment); });
    });
}

bool changesActiveProfile(const QVariantMap &difference)
{
    const QVariantMap device = difference.value(SettingsKeys::deviceSettings).toMap().value(dictionary).toMap();
    return device.contains(SettingsKeys::activeProfile);
}

/// Whether one of them reorders records that the other refers to, or both reorder the same list.
bool collideInOrder(const QVariantMap &one, const QVariantMap &other)
{
    const auto refersToProfiles = [](const QVariantMap &difference) {
        return changesReference(difference, Assignment::switchProfile) || changesActiveProfile(difference);
    };
    const auto collide = [](const QVariantMap &a, const QVariantMap &b, Key list, bool refersA, bool refersB) {
        return (isStructural(a, list) && (isStructural(b, list) || refersB)) || (isStructural(b, list) && refersA);
    };
    return collide(one, other, SettingsKeys::profiles, refersToProfiles(one), refersToProfiles(other))
           || collide(one, other, SettingsKeys::macros, changesReference(one, Assignment::playMacro),
                      changesReference(other, Assignment::playMacro));
}

/// Where the element at `index` is after `later`; absent if `later` touches it.
std::optional<qlonglong> movedIndex(qlonglong index, const QVariantList &later)
{
    qlonglong moved = index;
    for (const QVariant &element : later) {
        const QVariantMap step = element.toMap();
        const qlonglong at = step.value(indexBefore).toLongLong();
        const qsizetype removed = step.contains(changed) ? 1 : step.value(oldValue).toList().size();
        if (at > index)
            break;
        if (index < at + removed)
            return {};
        if (!step.contains(changed))
            moved += step.value(newValue).toList().size() - removed;
    }
    return moved;
}

std::optional<QVariantList> movedSteps(const QVariantList &list, const QVariantList &later)
{
    QVariantList moved;
    for (const QVariant &element : list) {
        QVariantMap step = element.toMap();
        if (!step.contains(changed)) { // `later` then has no such step
            // Steps of `later` at other records leave the indexes.
            moved += step;
            for (qlonglong index = step.value(indexAfter).toLongLong(),
                           end = index + step.value(newValue).toList().size();
                 index < end; ++index) {
                if (!movedIndex(index, later))
                    return {};
            }
            continue;
        }
        const std::optional<qlonglong> index = movedIndex(step.value(indexAfter).toLongLong(), later);
        if (!index)
            return {};
        step.insert(indexAfter, *index);
        moved += step;
    }
    const bool isContentOnly =
        std::ranges::all_of(moved, [](const QVariant &step) { return step.toMap().contains(changed); });
    for (QVariant &element : moved) {
        QVariantMap step = element.toMap();
        if (isContentOnly)
            step.insert(indexBefore, step.value(indexAfter));
        element = step;
    }
    return moved;
}

/// Whether both change the same entry outside the records.
bool shareSetting(const QVariantMap &one, const QVariantMap &other)
{
    const auto isShared = [](const QVariantMap &a, const QVariantMap &b) {
        const QStringList keys = a.keys();
        return std::ranges::any_of(keys, [&b](const QString &key) { return b.contains(key); });
    };
    QVariantMap outside = one;
    for (const Key list : recordLists)
        outside.remove(list);
    const QVariantMap device = outside.take(SettingsKeys::deviceSettings).toMap();
    const QVariantMap otherDevice = other.value(SettingsKeys::deviceSettings).toMap();
    return isShared(outside, other)
           || isShared(device.value(dictionary).toMap(), otherDevice.value(dictionary).toMap());
}

} // namespace

std::optional<QVariantMap> RecordTouch::movedAcross(const QVariantMap &difference, const QVariantMap &later)
{
    if (shareSetting(difference, later) || collideInOrder(difference, later))
        return {};
    QVariantMap moved = difference;
    for (const Key list : recordLists) {
        if (!difference.contains(list))
            continue;
        const std::optional<QVariantList> across = movedSteps(stepsOf(difference, list), stepsOf(later, list));
        if (!across)
            return {};
        moved.insert(list, QVariantMap{{steps, *across}});
    }
    return moved;
}
