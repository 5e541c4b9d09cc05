// SPDX-License-Identifier: MIT
#include "cli/linewords.h"

using namespace Qt::StringLiterals;

QString numberedLine(int index, const QString &text)
{
    return QString::number(index + 1).rightJustified(3) + u"  "_s + text;
}

QString eventCount(qsizetype count)
{
    return count == 1 ? u"1 event"_s : u"%1 events"_s.arg(count);
}
