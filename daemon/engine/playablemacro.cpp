// SPDX-License-Identifier: MIT
#include "daemon/engine/playablemacro.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QHash>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

bool isPlayable(const QVariantMap &event, const MacroRecord::Event &fields)
{
    if (!eventParser::hasEventLine(event))
        return false;
    return (fields.page & 0xFF) != HidUsage::keyboardPage
           || (fields.argument >= HidUsage::firstKey && fields.argument <= HidUsage::lastKey);
}

PlayableMacro decoded(const QVariantMap &record, int macroId)
{
    PlayableMacro macro{
        .macroId = macroId, .sequence = MacroRecord::sequence(record), .steps = {}, .length = 0ms, .spacing = 0us};
    const QVariantList events = MacroRecord::events(record);
    for (int index = 0; index < events.size(); ++index) {
        const QVariantMap event = events.at(index).toMap();
        const MacroRecord::Event fields = MacroRecord::eventFields(event);
        macro.length += std::chrono::milliseconds(std::max(0, fields.delayMs));
        // The event list reads the lowest byte of page and command; playback must match it.
        if (isPlayable(event, fields))
            macro.steps.push_back(
                {.at = macro.length,
                 .usage = {static_cast<quint16>(fields.page & 0xFF), static_cast<quint16>(fields.argument)},
                 .isDown = (fields.command & 0xFF) == MacroRecord::keyDown,
                 .event = index});
    }
    macro.spacing = std::max<std::chrono::microseconds>(
        {macro.length, minimumRound, minimumSpacing * static_cast<qint64>(macro.steps.size())});
    return macro;
}

} // namespace

PlayableMacros playableMacros(const QVariantList &macros, const PlayableMacros &before)
{
    QHash<int, std::shared_ptr<const PlayableMacro>> known;
    for (const auto &macro : before)
        known.insert(macro->macroId, macro);
    PlayableMacros result;
    result.reserve(static_cast<std::size_t>(macros.size()));
    for (const QVariant &value : macros) {
        const QVariantMap record = value.toMap();
        const int macroId = MacroRecord::macroId(record);
        const std::shared_ptr<const PlayableMacro> same = known.value(macroId);
        // Fast because records are shared: equal dictionaries are usually the same object.
        if (same && same->sequence == MacroRecord::sequence(record))
            result.push_back(same);
        else
            result.push_back(std::make_shared<const PlayableMacro>(decoded(record, macroId)));
    }
    return result;
}
