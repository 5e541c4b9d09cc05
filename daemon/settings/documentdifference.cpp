// SPDX-License-Identifier: MIT
#include "daemon/settings/documentdifference.h"

#include "base/document.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "daemon/settings/differencekeys.h"
#include "macros/macrorecord.h"

#include <QVariantList>

#include <algorithm>
#include <bit>
#include <functional>
#include <vector>

using DocumentDifference::areIdentical;
using DocumentDifference::Direction;
using namespace DifferenceKeys;

namespace {

/// Two elements of the lists that are the same record; an index of -1 never occurs.
struct Pair
{
    qsizetype before = 0;
    qsizetype after = 0;
};

using Pairs = std::vector<Pair>;
using AreSame = std::function<bool(const QVariant &before, const QVariant &after)>;

QVariantMap changeBetween(const QVariant &before, const QVariant &after);

QVariantMap dictionaryDifference(const QVariantMap &before, const QVariantMap &after)
{
    QVariantMap difference;
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        const auto now = after.constFind(entry.key());
        if (now == after.cend())
            difference.insert(entry.key(), QVariantMap{{oldValue, entry.value()}});
        else if (!areIdentical(entry.value(), *now))
            difference.insert(entry.key(), changeBetween(entry.value(), *now));
    }
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        if (!before.contains(entry.key()))
            difference.insert(entry.key(), QVariantMap{{newValue, entry.value()}});
    }
    return difference;
}

/// The steps between two lists whose `pairs`, in ascending order, are changed or equal; all others are removed or
/// inserted.
QVariantList stepsBetween(const QVariantList &before, const QVariantList &after, const Pairs &pairs)
{
    QVariantList steps;
    Pair at;
    const auto skipTo = [&](const Pair &pair) {
        if (at.before < pair.before || at.after < pair.after)
            steps += QVariantMap{{indexBefore, at.before},
                                 {indexAfter, at.after},
                                 {oldValue, before.sliced(at.before, pair.before - at.before)},
                                 {newValue, after.sliced(at.after, pair.after - at.after)}};
    };
    for (const Pair &pair : pairs) {
        skipTo(pair);
        const QVariant &earlier = before.at(pair.before);
        const QVariant &later = after.at(pair.after);
        if (!areIdentical(earlier, later))
            steps += QVariantMap{
                {indexBefore, pair.before}, {indexAfter, pair.after}, {changed, changeBetween(earlier, later)}};
        at = {.before = pair.before + 1, .after = pair.after + 1};
    }
    skipTo({.before = before.size(), .after = after.size()});
    return steps;
}

/// The pairs of equal elements at both ends, and between them the pairs that `between` finds in the given parts.
Pairs pairsAround(const QVariantList &before, const QVariantList &after, const AreSame &areSame,
                  const std::function<void(Pairs &, Pair from, Pair to)> &between)
{
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype start = 0;
    while (start < shorter && areSame(before.at(start), after.at(start)))
        ++start;
    qsizetype end = 0;
    while (end < shorter - start && areSame(before.at(before.size() - 1 - end), after.at(after.size() - 1 - end)))
        ++end;
    Pairs pairs;
    for (qsizetype index = 0; index < start; ++index)
        pairs.push_back({index, index});
    between(pairs, {start, start}, {before.size() - end, after.size() - end});
    for (; end > 0; --end)
        pairs.push_back({before.size() - end, after.size() - end});
    return pairs;
}

/// For events and other lists without identities: as many elements in the middle are changed in place, or all of them
/// are replaced.
Pairs plainPairs(const QVariantList &before, const QVariantList &after)
{
    return pairsAround(before, after, areIdentical, [](Pairs &pairs, Pair from, Pair to) {
        if (to.before - from.before != to.after - from.after)
            return;
        for (; from.before < to.before; ++from.before, ++from.after)
            pairs.push_back(from);
    });
}

enum class Unlike { arePaired, areNotPaired };

/// Adds the pairs of a longest common sequence. Between two of them, records that are `unlike` are paired in order, or
/// not at all.
void addRecordPairs(Pairs &pairs, const QVariantList &before, const QVariantList &after, Pair from, Pair to,
                    const AreSame &areSame, Unlike unlike)
{
    const qsizetype rows = to.before - from.before;
    const qsizetype columns = to.after - from.after;
    std::vector<qsizetype> lengths(std::size_t((rows + 1) * (columns + 1))); // of the sequence from row and column on
    const auto length = [&](qsizetype row, qsizetype column) -> qsizetype & {
        return lengths[std::size_t(row * (columns + 1) + column)];
    };
    const auto isMatch = [&](qsizetype row, qsizetype column) {
        return areSame(before.at(from.before + row), after.at(from.after + column));
    };
    for (qsizetype row = rows - 1; row >= 0; --row) {
        for (qsizetype column = columns - 1; column >= 0; --column)
            length(row, column) = isMatch(row, column) ? length(row + 1, column + 1) + 1
                                                       : std::max(length(row + 1, column), length(row, column + 1));
    }
    qsizetype row = 0;
    qsizetype column = 0;
    qsizetype pairedRow = 0; // the first that is not paired or passed
    qsizetype pairedColumn = 0;
    const auto pairUnlike = [&] {
        for (; unlike == Unlike::arePaired && pairedRow < row && pairedColumn < column; ++pairedRow, ++pairedColumn)
            pairs.push_back({from.before + pairedRow, from.after + pairedColumn});
    };
    while (row < rows && column < columns) {
        if (isMatch(row, column)) {
            pairUnlike();
            pairs.push_back({from.before + row, from.after + column});
            pairedRow = ++row;
            pairedColumn = ++column;
        } else if (length(row + 1, column) >= length(row, column + 1)) {
            ++row;
        } else {
            ++column;
        }
    }
    row = rows;
    column = columns;
    pairUnlike();
}

QVariantMap recordsDifference(const QVariantList &before, const QVariantList &after, const AreSame &areSame,
                              Unlike unlike)
{
    const Pairs pairs = pairsAround(before, after, areSame, [&](Pairs &found, Pair from, Pair to) {
        addRecordPairs(found, before, after, from, to, areSame, unlike);
    });
    return {{steps, stepsBetween(before, after, pairs)}};
}

QVariantMap changeBetween(const QVariant &before, const QVariant &after)
{
    if (before.typeId() == QMetaType::QVariantMap && after.typeId() == QMetaType::QVariantMap)
        return {{dictionary, dictionaryDifference(before.toMap(), after.toMap())}};
    if (before.typeId() == QMetaType::QVariantList && after.typeId() == QMetaType::QVariantList) {
        const QVariantList earlier = before.toList();
        const QVariantList later = after.toList();
        return {{steps, stepsBetween(earlier, later, plainPairs(earlier, later))}};
    }
    return {{oldValue, before}, {newValue, after}};
}

QVariantMap withoutLastMacroId(QVariantMap document)
{
    QVariantMap settings = Document(document).deviceSettings().dictionary();
    if (settings.remove(SettingsKeys::lastMacroId) > 0)
        document.insert(SettingsKeys::deviceSettings, settings);
    return document;
}

std::optional<QVariant> appliedChange(const QVariant &value, const QVariantMap &change, Direction direction);

std::optional<QVariantMap> appliedToDictionary(QVariantMap values, const QVariantMap &difference, Direction direction)
{
    for (auto entry = difference.cbegin(); entry != difference.cend(); ++entry) {
        const std::optional<QVariant> value =
            appliedChange(values.value(entry.key()), entry.value().toMap(), direction);
        if (!value)
            return {};
        if (value->isValid())
            values.insert(entry.key(), *value);
        else
            values.remove(entry.key());
    }
    return values;
}

std::optional<QVariantList> appliedToList(const QVariantList &values, const QVariantList &list, Direction direction)
{
    const bool isForward = direction == Direction::forward;
    QVariantList result;
    qsizetype taken = 0;
    for (const QVariant &element : list) {
        const QVariantMap step = element.toMap();
        const qsizetype from = step.value(isForward ? indexBefore : indexAfter).toLongLong();
        const qsizetype to = step.value(isForward ? indexAfter : indexBefore).toLongLong();
        if (from < taken || from > values.size() || to != result.size() + (from - taken))
            return {};
        result += values.sliced(taken, from - taken);
        taken = from;
        if (const auto inside = step.constFind(changed); inside != step.cend()) {
            const std::optional<QVariant> value =
                taken < values.size() ? appliedChange(values.at(taken), inside->toMap(), direction) : std::nullopt;
            if (!value || !value->isValid())
                return {};
            result += *value;
            ++taken;
            continue;
        }
        const QVariantList removed = step.value(isForward ? oldValue : newValue).toList();
        if (removed.size() > values.size() - taken || !areIdentical(values.sliced(taken, removed.size()), removed))
            return {};
        taken += removed.size();
        result += step.value(isForward ? newValue : oldValue).toList();
    }
    return result + values.sliced(taken);
}

/// `value` and the result are invalid if there is no such entry.
std::optional<QVariant> appliedChange(const QVariant &value, const QVariantMap &change, Direction direction)
{
    if (const auto inside = change.constFind(dictionary); inside != change.cend()) {
        if (value.typeId() != QMetaType::QVariantMap)
            return {};
        return appliedToDictionary(value.toMap(), inside->toMap(), direction);
    }
    if (const auto inside = change.constFind(steps); inside != change.cend()) {
        if (value.typeId() != QMetaType::QVariantList)
            return {};
        const std::optional<QVariantList> list = appliedToList(value.toList(), inside->toList(), direction);
        return list ? std::optional<QVariant>(*list) : std::nullopt;
    }
    const bool isForward = direction == Direction::forward;
    if (!areIdentical(value, change.value(isForward ? oldValue : newValue)))
        return {};
    return change.value(isForward ? newValue : oldValue);
}

QVariantMap reversedChange(const QVariantMap &change);

QVariantList reversedSteps(QVariantList list)
{
    for (QVariant &element : list) {
        const QVariantMap step = element.toMap();
        QVariantMap back{{indexBefore, step.value(indexAfter)}, {indexAfter, step.value(indexBefore)}};
        if (step.contains(changed)) {
            back.insert(changed, reversedChange(step.value(changed).toMap()));
        } else {
            back.insert(oldValue, step.value(newValue));
            back.insert(newValue, step.value(oldValue));
        }
        element = back;
    }
    return list;
}

QVariantMap reversedChange(const QVariantMap &change)
{
    if (change.contains(dictionary))
        return {{dictionary, DocumentDifference::reversed(change.value(dictionary).toMap())}};
    if (change.contains(steps))
        return {{steps, reversedSteps(change.value(steps).toList())}};
    QVariantMap back;
    if (change.contains(oldValue))
        back.insert(newValue, change.value(oldValue));
    if (change.contains(newValue))
        back.insert(oldValue, change.value(newValue));
    return back;
}

} // namespace

// Documents come from the codec, so the recursions are bounded. Parts that two documents share are not compared.
bool DocumentDifference::areIdentical(const QVariant &a, const QVariant &b)
{
    if (a.typeId() != b.typeId())
        return false;
    switch (a.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap earlier = a.toMap();
        const QVariantMap later = b.toMap();
        return earlier.isSharedWith(later)
               || (earlier.size() == later.size()
                   && std::equal(earlier.constKeyValueBegin(), earlier.constKeyValueEnd(), later.constKeyValueBegin(),
                                 [](const auto &one, const auto &other) {
                                     return one.first == other.first && areIdentical(one.second, other.second);
                                 }));
    }
    case QMetaType::QVariantList: {
        const QVariantList earlier = a.toList();
        const QVariantList later = b.toList();
        return earlier.isSharedWith(later) || std::ranges::equal(earlier, later, areIdentical);
    }
    case QMetaType::Double: return std::bit_cast<quint64>(a.toDouble()) == std::bit_cast<quint64>(b.toDouble());
    default: return a == b;
    }
}

QVariantMap DocumentDifference::between(const QVariantMap &before, const QVariantMap &after)
{
    QVariantMap earlier = withoutLastMacroId(before);
    QVariantMap later = withoutLastMacroId(after);
    QVariantMap difference;
    const auto addRecords = [&](SettingsKeys::Key key, const AreSame &areSame, Unlike unlike) {
        const QVariant from = earlier.value(key);
        const QVariant to = later.value(key);
        if (from.typeId() != QMetaType::QVariantList || to.typeId() != QMetaType::QVariantList)
            return;
        if (!areIdentical(from, to))
            difference.insert(key, recordsDifference(from.toList(), to.toList(), areSame, unlike));
        earlier.remove(key);
        later.remove(key);
    };
    addRecords(
        SettingsKeys::profiles,
        [](const QVariant &a, const QVariant &b) {
            return ProfileRecord::name(a.toMap()) == ProfileRecord::name(b.toMap());
        },
        Unlike::arePaired); // a renamed profile
    addRecords(
        SettingsKeys::macros,
        [](const QVariant &a, const QVariant &b) {
            return MacroRecord::identity(a.toMap()) == MacroRecord::identity(b.toMap());
        },
        Unlike::areNotPaired);
    difference.insert(dictionaryDifference(earlier, later));
    return difference;
}

std::optional<QVariantMap> DocumentDifference::applied(const QVariantMap &document, const QVariantMap &difference,
                                                       Direction direction)
{
    return appliedToDictionary(document, difference, direction);
}

QVariantMap DocumentDifference::reversed(const QVariantMap &difference)
{
    QVariantMap back;
    for (auto entry = difference.cbegin(); entry != difference.cend(); ++entry)
        back.insert(entry.key(), reversedChange(entry.value().toMap()));
    return back;
}
