// SPDX-License-Identifier: MIT
#include "macros/macropairs.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QHash>

#include <algorithm>

namespace {

using KeyOrButton = std::pair<quint8, uint>; // page and argument

} // namespace

MacroPairs MacroPairs::of(const QVariantList &events)
{
    MacroPairs pairs;
    pairs.partners = QList<int>(events.size(), none);
    QHash<KeyOrButton, int> open; // to the press that waits for its release
    for (int index = 0; index < events.size(); ++index) {
        const QVariantMap record = events.at(index).toMap();
        if (!eventParser::hasEventLine(record))
            continue;
        const MacroRecord::Event event = MacroRecord::eventFields(record);
        const KeyOrButton key(static_cast<quint8>(event.page), event.argument);
        const auto press = open.constFind(key);
        if (static_cast<quint8>(event.command) == MacroRecord::keyDown) {
            if (press != open.constEnd())
                pairs.unpaired += *press;
            open.insert(key, index);
        } else if (press != open.constEnd()) {
            pairs.partners[index] = *press;
            pairs.partners[*press] = index;
            open.erase(press);
        } else {
            pairs.unpaired += index;
        }
    }
    pairs.leftDown = open.values();
    std::ranges::sort(pairs.leftDown);
    pairs.unpaired += pairs.leftDown;
    std::ranges::sort(pairs.unpaired);
    for (auto index = pairs.leftDown.crbegin(); index != pairs.leftDown.crend(); ++index) {
        const MacroRecord::Event press = MacroRecord::eventFields(events.at(*index).toMap());
        pairs.missingReleases += MacroRecord::eventRecord({.command = MacroRecord::keyUp,
                                                           .delayMs = 0,
                                                           .page = static_cast<quint8>(press.page),
                                                           .argument = press.argument});
    }
    return pairs;
}

QList<int> MacroPairs::withPartners(const QList<int> &indexes) const
{
    QList<int> all = indexes;
    for (const int index : indexes) {
        if (const int partner = partners.value(index, none); partner != none)
            all += partner;
    }
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end()); // clang 14 cannot compile std::ranges::unique()
    return all;
}
