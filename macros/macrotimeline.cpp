// SPDX-License-Identifier: MIT
#include "macros/macrotimeline.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QHash>

#include <algorithm>

namespace {

using KeyOrButton = std::pair<quint8, uint>; // page and argument

/// Returns the first lane whose bars have all ended before the event at `index`; -1 in `ends` marks a bar that is open.
int freeLane(QList<int> &ends, int index)
{
    for (qsizetype lane = 0; lane < ends.size(); ++lane) {
        if (ends[lane] >= 0 && ends[lane] <= index)
            return static_cast<int>(lane);
    }
    ends.append(-1);
    return static_cast<int>(ends.size()) - 1;
}

} // namespace

MacroTimeline MacroTimeline::of(const QVariantList &events, int maximumEvents)
{
    MacroTimeline timeline;
    const auto count = static_cast<int>(std::min<qsizetype>(events.size(), maximumEvents));
    QHash<KeyOrButton, qsizetype> held; // to the index of the bar
    QList<int> laneEnds;                // the event that ends the latest bar of each lane
    for (int index = 0; index < events.size(); ++index) {
        const QVariantMap record = events[index].toMap();
        const MacroRecord::Event event = MacroRecord::eventFields(record);
        const int delayMs = index == 0 ? 0 : std::max(0, event.delayMs);
        timeline.durationMs += delayMs;
        if (index >= count)
            continue;
        timeline.delaysMs += delayMs;
        if (!eventParser::hasEventLine(record))
            continue;
        // As in the event list, only the low 8 bits count.
        const KeyOrButton key(static_cast<quint8>(event.page), event.argument);
        if (const auto open = held.find(key); open != held.end()) {
            Bar &bar = timeline.bars[*open]; // a second press also ends the first
            bar.last = index;
            laneEnds[bar.lane] = index;
            held.erase(open);
        }
        if (static_cast<quint8>(event.command) != MacroRecord::keyDown)
            continue;
        const int lane = freeLane(laneEnds, index);
        laneEnds[lane] = -1;
        held.insert(key, timeline.bars.size());
        timeline.bars += {.name = eventParser::nameOfKeyOrButton(record), .first = index, .last = count, .lane = lane};
    }
    timeline.lanes = static_cast<int>(laneEnds.size());
    return timeline;
}
