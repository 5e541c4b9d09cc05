// SPDX-License-Identifier: MIT
// Which release belongs to which press in a macro, and what has no partner. Pure; any thread.
#pragma once

#include <QList>
#include <QVariantList>

/// The release of a key or button belongs to its latest press: a second press of a key that is down ends the first one,
/// which then has no release. Pages and commands read as in the event list, by their low 8 bits. An event without an
/// event line (eventParser::hasEventLine()) is neither a press nor a release.
struct MacroPairs
{
    static constexpr int none = -1;

    QList<int> partners;          ///< for each event, the index of the other half of its pair; `none` without one
    QList<int> unpaired;          ///< the indexes of presses without a release and the reverse, ascending
    QList<int> leftDown;          ///< those of `unpaired` that press a key which is still down at the end
    QVariantList missingReleases; ///< to append for `leftDown`: events without a pause, the latest press first

    [[nodiscard]] static MacroPairs of(const QVariantList &events);

    /// Returns `indexes` and the partners of those events, ascending, each once.
    [[nodiscard]] QList<int> withPartners(const QList<int> &indexes) const;
};
