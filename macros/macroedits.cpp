// SPDX-License-Identifier: MIT
#include "macros/macroedits.h"

#include "base/settingskeys.h"
#include "macros/macrorecord.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

QVariantMap eventOf(int command, HidUsage key, int delayMs)
{
    return MacroRecord::eventRecord({.command = command, .delayMs = delayMs, .page = key.page, .argument = key.usage});
}

bool isDelay(qint64 delayMs)
{
    return delayMs >= 0 && delayMs <= MacroRecord::maximumDelayMs;
}

bool isPlace(const QVariantList &events, int index)
{
    return index >= 0 && index <= events.size();
}

/// Which events `indexes` has; absent if one does not exist.
std::optional<std::vector<bool>> chosenIn(const QVariantList &events, const QList<int> &indexes)
{
    std::vector<bool> chosen(static_cast<std::size_t>(events.size()));
    for (const int index : indexes) {
        if (index < 0 || index >= events.size())
            return {};
        chosen[static_cast<std::size_t>(index)] = true;
    }
    return chosen;
}

int delayOf(const QVariant &event)
{
    return MacroRecord::eventFields(event.toMap()).delayMs;
}

QVariant withDelay(const QVariant &event, int delayMs)
{
    QVariantMap fields = event.toMap();
    fields.insert(SettingsKeys::delay, delayMs);
    return fields;
}

/// `events` with the delay that `newDelay` makes of the old one, at `indexes`.
template <typename Function>
std::optional<QVariantList> changingDelays(const QVariantList &events, const QList<int> &indexes,
                                           const Function &newDelay)
{
    const std::optional<std::vector<bool>> chosen = chosenIn(events, indexes);
    if (!chosen)
        return {};
    QVariantList changed = events;
    for (qsizetype index = 0; index < changed.size(); ++index) {
        if ((*chosen)[static_cast<std::size_t>(index)])
            changed[index] = withDelay(changed.at(index), newDelay(delayOf(changed.at(index))));
    }
    return changed;
}

} // namespace

QVariantMap MacroEdits::press(HidUsage key, int delayMs)
{
    return eventOf(MacroRecord::keyDown, key, delayMs);
}

QVariantMap MacroEdits::release(HidUsage key, int delayMs)
{
    return eventOf(MacroRecord::keyUp, key, delayMs);
}

QVariantList MacroEdits::tap(HidUsage key, int delayMs, int holdMs)
{
    return {press(key, delayMs), release(key, holdMs)};
}

QVariantList MacroEdits::click(int button, int delayMs, int holdMs)
{
    return tap({.page = HidUsage::buttonPage, .usage = static_cast<quint16>(button)}, delayMs, holdMs);
}

// No page has the number 0: programs that know only keys and buttons ignore the event, and keep its delay.
QVariantMap MacroEdits::pause(int delayMs)
{
    return eventOf(MacroRecord::keyUp, {.page = 0, .usage = 0}, delayMs);
}

bool MacroEdits::isPause(const QVariantMap &event)
{
    const int delayMs = MacroRecord::eventFields(event).delayMs;
    const bool areWhole = std::ranges::all_of(event, [](const QVariant &value) {
        return value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong;
    });
    return isDelay(delayMs) && areWhole && event == pause(delayMs);
}

std::optional<QVariantList> MacroEdits::inserting(const QVariantList &events, int index, const QVariantList &inserted)
{
    if (!isPlace(events, index) || events.size() + inserted.size() > MacroRecord::maximumEvents)
        return {};
    return events.first(index) + inserted + events.sliced(index);
}

std::optional<QVariantList> MacroEdits::insertingPause(const QVariantList &events, int index, int delayMs)
{
    if (!isPlace(events, index) || !isDelay(delayMs))
        return {};
    if (index == events.size())
        return inserting(events, index, {pause(delayMs)});
    const qint64 sum = std::max(0, delayOf(events.at(index))) + qint64(delayMs);
    return isDelay(sum) ? settingDelays(events, {index}, static_cast<int>(sum)) : std::nullopt;
}

std::optional<QVariantList> MacroEdits::removing(const QVariantList &events, const QList<int> &indexes)
{
    const std::optional<std::vector<bool>> chosen = chosenIn(events, indexes);
    if (!chosen)
        return {};
    QVariantList kept;
    for (qsizetype index = 0; index < events.size(); ++index) {
        if (!(*chosen)[static_cast<std::size_t>(index)])
            kept += events.at(index);
    }
    return kept;
}

std::optional<QVariantList> MacroEdits::moving(const QVariantList &events, const QList<int> &indexes, int before)
{
    const std::optional<std::vector<bool>> chosen = chosenIn(events, indexes);
    if (!chosen || !isPlace(events, before))
        return {};
    QVariantList above;
    QVariantList moved;
    QVariantList below;
    for (qsizetype index = 0; index < events.size(); ++index) {
        const bool isMoved = (*chosen)[static_cast<std::size_t>(index)];
        (isMoved ? moved : index < before ? above : below) += events.at(index);
    }
    return above + moved + below;
}

std::optional<QVariantList> MacroEdits::settingDelays(const QVariantList &events, const QList<int> &indexes,
                                                      int delayMs)
{
    if (!isDelay(delayMs))
        return {};
    return changingDelays(events, indexes, [delayMs](int) { return delayMs; });
}

std::optional<QVariantList> MacroEdits::scalingDelays(const QVariantList &events, const QList<int> &indexes,
                                                      double factor)
{
    if (!std::isfinite(factor) || factor < 0)
        return {};
    return changingDelays(events, indexes, [factor](int delayMs) {
        return static_cast<int>(
            std::clamp(std::round(delayMs * factor), 0.0, static_cast<double>(MacroRecord::maximumDelayMs)));
    });
}

std::optional<QVariantList> MacroEdits::copied(const QVariantList &events, const QList<int> &indexes)
{
    const std::optional<std::vector<bool>> chosen = chosenIn(events, indexes);
    if (!chosen)
        return {};
    QVariantList copies;
    for (qsizetype index = 0; index < events.size(); ++index) {
        if ((*chosen)[static_cast<std::size_t>(index)])
            copies += events.at(index);
    }
    return copies;
}
