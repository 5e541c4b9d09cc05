// SPDX-License-Identifier: MIT
#include "macros/macrotimeline.h"

#include "macros/eventline.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QHash>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using KeyOrButton = std::pair<quint8, uint>; // page and argument
constexpr int none = -1;

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

/// Makes a timeline with a lane for each key from the rows of an event list.
class LineReader
{
public:
    explicit LineReader(const QVariantList &events) : mEvents(events) {}

    void read(const QStringList &lines)
    {
        mLines = &lines;
        bool hasDelay = false; // the row before was the delay of the next event
        for (int row = 0; row < lines.size(); ++row) {
            const QStringView line = lines.at(row);
            if (eventLineKind(line) == EventLineKind::delay) {
                if (row == 0)
                    beginEvent(0); // a first event without a line has no row
                beginEvent(delayMsOfLine(line).value_or(0));
                mTimeline.rows.last().delay = row;
                hasDelay = true;
                continue;
            }
            if (!hasDelay)
                beginEvent(0);
            hasDelay = false;
            mTimeline.rows.last().event = row;
            addEvent(line);
        }
    }

    MacroTimeline finished()
    {
        const int count = mTimeline.eventCount();
        for (const int bar : std::as_const(mOpenBars)) {
            if (bar != none)
                mTimeline.bars[bar].last = count;
        }
        mTimeline.lanes = static_cast<int>(mTimeline.laneNames.size());
        return std::move(mTimeline);
    }

private:
    void beginEvent(int delayMs)
    {
        const int pauseMs = mTimeline.delaysMs.isEmpty() ? 0 : std::max(0, delayMs);
        mTimeline.durationMs += pauseMs;
        mTimeline.delaysMs += pauseMs;
        mTimeline.timesMs += mTimeline.durationMs;
        mTimeline.rows.append(MacroTimeline::Rows());
        mTimeline.eventLanes += none;
    }

    void addEvent(QStringView line)
    {
        const QStringView name = nameInEventLine(line);
        if (name.isNull())
            return; // not a line of the daemon
        const int index = mTimeline.eventCount() - 1;
        const int lane = laneOf(name, index);
        const bool isPress = eventLineKind(line) == EventLineKind::press;
        mTimeline.eventLanes.last() = lane;
        int &open = mOpenBars[lane];
        if (open != none) {
            MacroTimeline::Bar &bar = mTimeline.bars[open];
            bar.last = index; // a second press also ends the first
            if (isPress)
                mTimeline.unpairedPresses += bar.first;
        } else if (!isPress) {
            mTimeline.unpairedReleases +=
                {.name = mTimeline.laneNames.at(lane), .first = index, .last = index, .lane = lane};
        }
        open = none;
        if (!isPress)
            return;
        open = static_cast<int>(mTimeline.bars.size());
        mTimeline.laneBars[lane] += open;
        mTimeline.bars += {.name = mTimeline.laneNames.at(lane), .first = index, .last = index, .lane = lane};
    }

    int laneOf(QStringView name, int index)
    {
        // Two keys are named "Delete", and many have no name.
        const bool isAmbiguous = name.isEmpty() || name == "Delete"_L1;
        mTimeline.hasSharedNames |= isAmbiguous;
        const uint argument = isAmbiguous ? argumentOf(name, index) : 0;
        const std::pair key(name, argument);
        if (const auto known = mLanes.constFind(key); known != mLanes.constEnd())
            return *known;
        const auto lane = static_cast<int>(mTimeline.laneNames.size());
        mLanes.insert(key, lane);
        mTimeline.laneNames += name.toString();
        mTimeline.laneBars.append(QList<int>());
        mOpenBars += none;
        return lane;
    }

    /// Returns the key code of the event at `index`; 0 if its dictionary is not known.
    uint argumentOf(QStringView name, int index)
    {
        if (!mAreEventsOfLines)
            mAreEventsOfLines = MacroRecord::rowCount(mEvents) == mLines->size();
        if (!*mAreEventsOfLines)
            return 0;
        const QVariantMap event = mEvents.value(index).toMap();
        const bool isThisEvent = eventParser::hasEventLine(event) && eventParser::nameOfKeyOrButton(event) == name;
        return isThisEvent ? MacroRecord::eventFields(event).argument : 0;
    }

    const QVariantList &mEvents;
    const QStringList *mLines = nullptr;
    std::optional<bool> mAreEventsOfLines;
    MacroTimeline mTimeline;
    QHash<std::pair<QStringView, uint>, int> mLanes; // by name and key code
    QList<int> mOpenBars;                            // of each lane
};

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

MacroTimeline MacroTimeline::ofLines(const QStringList &lines, const QVariantList &events)
{
    LineReader reader(events);
    reader.read(lines);
    return reader.finished();
}

int MacroTimeline::eventOfRow(int row) const
{
    const auto isBefore = [row](const Rows &one) { return std::max(one.delay, one.event) < row; };
    const auto found = std::ranges::partition_point(rows, isBefore);
    return row < 0 || found == rows.end() ? none : static_cast<int>(found - rows.begin());
}

QList<int> MacroTimeline::barsLeftDown() const
{
    QList<int> open;
    for (const QList<int> &lane : laneBars) {
        if (!lane.isEmpty() && bars.at(lane.last()).last == eventCount())
            open += lane.last();
    }
    std::ranges::sort(open);
    return open;
}

QList<int> MacroTimeline::unpairedRows() const
{
    QList<int> unpaired;
    for (const int event : unpairedPresses)
        unpaired += rows.at(event).event;
    for (const Bar &release : unpairedReleases)
        unpaired += rows.at(release.first).event;
    for (const int bar : barsLeftDown())
        unpaired += rows.at(bars.at(bar).first).event;
    std::ranges::sort(unpaired);
    return unpaired;
}
