// SPDX-License-Identifier: MIT
#include "cli/linewords.h"

#include "cli/console.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype namedRows = 10; // the words count the others

/// "row 3", "rows 1, 4 and 2 more".
QString rowWords(const QStringList &rows)
{
    QString words = rows.first(qMin(namedRows, rows.size())).join(u", "_s);
    if (rows.size() > namedRows)
        words += u" and %1 more"_s.arg(rows.size() - namedRows);
    return (rows.size() == 1 ? u"row "_s : u"rows "_s) + words;
}

} // namespace

QString numberedLine(int index, const QString &text)
{
    return QString::number(index + 1).rightJustified(3) + u"  "_s + text;
}

QString eventCount(qsizetype count)
{
    return count == 1 ? u"1 event"_s : u"%1 events"_s.arg(count);
}

QString unpairedWords(const QVariantList &events)
{
    const QList<int> unpaired = MacroPairs::of(events).unpaired;
    if (unpaired.isEmpty())
        return {};
    QStringList presses;
    QStringList releases;
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(events);
    auto row = eventsOfRows.cbegin();
    for (const int index : unpaired) {
        // The row of the pause, if there is one, precedes that of the event.
        row = std::upper_bound(row, eventsOfRows.cend(), index);
        const int command = MacroRecord::eventFields(events.at(index).toMap()).command;
        const bool isPress = static_cast<quint8>(command) == MacroRecord::keyDown;
        (isPress ? presses : releases) += QString::number(row - eventsOfRows.cbegin());
    }
    QStringList words;
    if (!presses.isEmpty())
        words += u"press without release: "_s + rowWords(presses);
    if (!releases.isEmpty())
        words += u"release without press: "_s + rowWords(releases);
    return words.join(u"; "_s);
}

void printStored(Console &console, const QString &line, const QVariantList &events)
{
    console.print(line);
    if (const QString words = unpairedWords(events); !words.isEmpty())
        console.print(words);
}
