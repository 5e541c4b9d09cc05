// SPDX-License-Identifier: MIT
// A macro's events as bars over time: which key or button is down from which event to which. Pure; any thread but for
// the names, which eventParser makes: main thread only.
#pragma once

#include <QList>
#include <QString>
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

    QList<Bar> bars;     ///< in the order of the presses
    QList<int> delaysMs; ///< the pause before each event; that of the first event is 0
    int lanes = 0;
    qint64 durationMs = 0;

    /// Returns the first `maximumEvents` of `events` (event dictionaries). Only the duration is that of all events. An
    /// event that is neither of a key nor of a named button has no bar.
    [[nodiscard]] static MacroTimeline of(const QVariantList &events, int maximumEvents);
};
