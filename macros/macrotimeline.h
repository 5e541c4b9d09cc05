// SPDX-License-Identifier: MIT
// A macro's events as bars over time: which key or button is down from which event to which. Pure; any thread but for
// the names, which eventParser makes: main thread only.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

struct MacroTimeline
{
    /// A key or button that is held.
    struct Bar
    {
        QString name;
        int first = 0; ///< the index of the event that presses it
        int last = 0;  ///< the index of the event that releases it; the number of events if none does
        int lane = 0;  ///< bars of one lane do not overlap; the first lane is 0

        bool operator==(const Bar &) const = default;
    };

    /// The rows of an event in the event list; -1 for a row that it does not have. The first event may have none at
    /// all.
    struct Rows
    {
        int delay = -1; ///< the first event has none
        int event = -1; ///< an event that is neither of a key nor of a named button has none

        bool operator==(const Rows &) const = default;
    };

    QList<Bar> bars;     ///< in the order of the presses
    QList<int> delaysMs; ///< the pause before each event; that of the first event is 0
    int lanes = 0;
    qint64 durationMs = 0;

    // Only of ofLines()
    QStringList laneNames;       ///< of the key or button of each lane
    QList<QList<int>> laneBars;  ///< the indexes of the bars of each lane
    QList<qint64> timesMs;       ///< when each event occurs, from the first event on
    QList<Rows> rows;            ///< of each event
    QList<int> eventLanes;       ///< the lane of each event; -1 for an event without one
    QList<Bar> unpairedReleases; ///< for each release of a key that is not down; `first` and `last` are its index
    bool hasSharedNames = false; ///< a name belongs to several keys, which only their events distinguish
    QList<int> unpairedPresses; ///< the indexes of the events that press a key that is pressed again before its release

    /// Returns the first `maximumEvents` of `events` (event dictionaries), in as few lanes as possible. Only the
    /// duration is that of all events. An event that is neither of a key nor of a named button has no bar.
    [[nodiscard]] static MacroTimeline of(const QVariantList &events, int maximumEvents);

    /// Returns the events of the rows of an event list, with a lane for each key and button, in the order in which they
    /// appear. `events` are the event dictionaries of the rows, as far as they are known: they distinguish keys of
    /// the same name. Without them, or if they are others, such keys share a lane.
    [[nodiscard]] static MacroTimeline ofLines(const QStringList &lines, const QVariantList &events);

    [[nodiscard]] int eventCount() const { return static_cast<int>(delaysMs.size()); }
    /// Returns the index of the event of a row of the event list; -1 if there is no such row.
    [[nodiscard]] int eventOfRow(int row) const;
    /// Returns the lane of a press or release; -1 for an event without one.
    [[nodiscard]] int laneOfEvent(int event) const { return eventLanes.value(event, -1); }
    /// Returns the indexes of the bars that no event ends, by the order of their presses.
    [[nodiscard]] QList<int> barsLeftDown() const;
    /// Returns the rows of the presses without a release and of the releases without a press, ascending.
    [[nodiscard]] QList<int> unpairedRows() const;
};
