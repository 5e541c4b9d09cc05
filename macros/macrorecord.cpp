// SPDX-License-Identifier: MIT
#include "macros/macrorecord.h"

#include "base/plistnumbers.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "macros/eventparser.h"

#include <QCryptographicHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView eventsKey{"Events"}; // in the sequence dictionary

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double: return true;
    default: return false;
    }
}

int rowsOfEvent(const QVariantList &events, qsizetype index)
{
    const int delayRows = index == 0 ? 0 : 1;
    return delayRows + (eventParser::hasEventLine(events.at(index).toMap()) ? 1 : 0);
}

void setDelay(QVariant &event, int delayMs)
{
    QVariantMap fields = event.toMap();
    fields.insert(SettingsKeys::delay, delayMs);
    event = fields;
}

} // namespace

MacroRecord::Event MacroRecord::eventFields(const QVariantMap &event)
{
    return {.command = PlistNumbers::integerValue(event.value(SettingsKeys::command)),
            .delayMs = PlistNumbers::integerValue(event.value(SettingsKeys::delay)),
            .page = PlistNumbers::integerValue(event.value(SettingsKeys::page)),
            .argument = static_cast<uint>(PlistNumbers::integerValue(event.value(SettingsKeys::argument)))};
}

QVariantMap MacroRecord::eventRecord(const Event &event)
{
    return {{SettingsKeys::command, event.command},
            {SettingsKeys::delay, event.delayMs},
            {SettingsKeys::page, event.page},
            {SettingsKeys::argument, static_cast<int>(event.argument)}};
}

QString MacroRecord::name(const QVariantMap &macro)
{
    const QVariant name = macro.value(SettingsKeys::macroName);
    return name.typeId() == QMetaType::QString ? name.toString() : QString();
}

QVariant MacroRecord::identity(const QVariantMap &macro)
{
    return macro.value(SettingsKeys::macroId);
}

int MacroRecord::macroId(const QVariantMap &macro)
{
    return PlistNumbers::integerValue(identity(macro));
}

std::optional<int> MacroRecord::indexOfMacroId(const QVariantList &macros, qint64 macroId)
{
    const auto isMeant = [macroId](const QVariant &macro) { return MacroRecord::macroId(macro.toMap()) == macroId; };
    const auto found = macroId > 0 ? std::ranges::find_if(macros, isMeant) : macros.end();
    return found == macros.end() ? std::nullopt : std::optional(static_cast<int>(found - macros.begin()));
}

int MacroRecord::delayMs(const QVariantMap &macro)
{
    return PlistNumbers::integerValue(macro.value(SettingsKeys::delay));
}

QVariant MacroRecord::sequence(const QVariantMap &macro)
{
    return macro.value(SettingsKeys::sequence);
}

QVariantList MacroRecord::events(const QVariantMap &macro)
{
    return sequence(macro).toMap().value(eventsKey).toList();
}

QVariantMap MacroRecord::withEvents(QVariantMap macro, const QVariantList &events)
{
    QVariantMap changed = sequence(macro).toMap();
    if (events.isEmpty())
        changed.remove(eventsKey);
    else
        changed.insert(eventsKey, events);
    macro.insert(SettingsKeys::sequence, changed);
    return macro;
}

QString MacroRecord::digest(const QVariantList &events)
{
    const std::optional<QByteArray> bytes = PropertyList::writeBinary(events);
    if (!bytes)
        return {};
    return QString::fromLatin1(QCryptographicHash::hash(*bytes, QCryptographicHash::Sha256).toHex());
}

int MacroRecord::capacity(const QVariantList &macros, qsizetype index)
{
    if (index >= maximumMacros)
        return 0;
    qsizetype ofOthers = 0;
    for (qsizetype other = 0; other < macros.size(); ++other)
        ofOthers += other == index ? 0 : events(macros.at(other).toMap()).size();
    return static_cast<int>(std::clamp<qsizetype>(maximumTotalEvents - ofOthers, 0, maximumEvents));
}

QString MacroRecord::faultOfCount(const QVariantList &macros, qsizetype index, qsizetype count)
{
    if (count > maximumEvents)
        return u"%1 events; a macro has at most %2"_s.arg(count).arg(maximumEvents);
    const int room = capacity(macros, index);
    if (count <= room)
        return {};
    return u"%1 events; the other macros leave room for %2, as all together have at most %3"_s.arg(count).arg(room).arg(
        maximumTotalEvents);
}

bool MacroRecord::isWellFormedEvent(const QVariantMap &event)
{
    const auto isAbsentOrNumber = [&](QLatin1StringView key) {
        const auto found = event.constFind(key);
        return found == event.constEnd() || isNumber(*found);
    };
    return isAbsentOrNumber(SettingsKeys::command) && isAbsentOrNumber(SettingsKeys::delay)
           && isAbsentOrNumber(SettingsKeys::page) && isAbsentOrNumber(SettingsKeys::argument);
}

bool MacroRecord::isWellFormed(const QVariantMap &macro)
{
    if (macro.value(SettingsKeys::macroName).typeId() != QMetaType::QString)
        return false;
    if (macro.contains(SettingsKeys::delay) && !isNumber(macro.value(SettingsKeys::delay)))
        return false;
    const QVariant sequence = macro.value(SettingsKeys::sequence);
    if (!sequence.isValid())
        return true;
    if (sequence.typeId() != QMetaType::QVariantMap)
        return false;
    const QVariant list = sequence.toMap().value(eventsKey);
    if (!list.isValid())
        return true;
    return list.typeId() == QMetaType::QVariantList && list.toList().size() <= maximumEvents
           && std::ranges::all_of(list.toList(), [](const QVariant &event) {
                  return event.typeId() == QMetaType::QVariantMap && isWellFormedEvent(event.toMap());
              });
}

int MacroRecord::rowCount(const QVariantList &events)
{
    int rows = 0;
    for (qsizetype index = 0; index < events.size(); ++index)
        rows += rowsOfEvent(events, index);
    return rows;
}

std::optional<int> MacroRecord::eventIndexOfRow(const QVariantList &events, int row)
{
    if (row < 0)
        return {};
    int firstRow = 0;
    for (qsizetype index = 0; index < events.size(); ++index) {
        const int rows = rowsOfEvent(events, index);
        if (row < firstRow + rows)
            return static_cast<int>(index);
        firstRow += rows;
    }
    return {};
}

QList<int> MacroRecord::eventsOfRows(const QVariantList &events)
{
    QList<int> indexes;
    for (qsizetype index = 0; index < events.size(); ++index) {
        for (int rows = rowsOfEvent(events, index); rows > 0; --rows)
            indexes += static_cast<int>(index);
    }
    return indexes;
}

std::optional<QVariantList> MacroRecord::removingEventOfRow(const QVariantList &events, int row)
{
    const std::optional<int> index = eventIndexOfRow(events, row);
    if (!index)
        return {};
    QVariantList changed = events;
    changed.removeAt(*index);
    return changed;
}

std::optional<QVariantList> MacroRecord::replacingEventOfRow(const QVariantList &events, int row,
                                                             const QVariantMap &event)
{
    const std::optional<int> index = eventIndexOfRow(events, row);
    if (!index)
        return {};
    QVariantList changed = events;
    changed[*index] = event;
    return changed;
}

std::optional<QVariantList> MacroRecord::settingDelayOfRow(const QVariantList &events, int row, int delayMs)
{
    const std::optional<int> index = eventIndexOfRow(events, row);
    if (!index)
        return {};
    QVariantList changed = events;
    setDelay(changed[*index], delayMs);
    return changed;
}

std::optional<QVariantList> MacroRecord::copyingDelayOfRowToAll(const QVariantList &events, int row)
{
    const std::optional<int> index = eventIndexOfRow(events, row);
    if (!index)
        return {};
    return settingAllDelays(events, eventFields(events.at(*index).toMap()).delayMs);
}

QVariantList MacroRecord::settingAllDelays(const QVariantList &events, int delayMs)
{
    QVariantList changed = events;
    for (QVariant &event : changed)
        setDelay(event, delayMs);
    return changed;
}
