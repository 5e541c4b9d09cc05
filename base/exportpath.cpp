// SPDX-License-Identifier: MIT
#include "base/exportpath.h"

#include <QFile>

QString exportFileName(QString name, const QString &suffix)
{
    constexpr qsizetype maximumBytes = 255;
    const qsizetype left = maximumBytes - 1 - QFile::encodeName(suffix).size();
    name.truncate(left); // every character has at least one byte
    while (!name.isEmpty() && (name.back().isHighSurrogate() || QFile::encodeName(name).size() > left))
        name.chop(1);
    return name;
}

QString exportPath(const QString &chosen, const QString &suffix)
{
    const qsizetype nameStart = chosen.lastIndexOf(u'/') + 1;
    return chosen.first(nameStart) + exportFileName(chosen.sliced(nameStart), suffix) + u'.' + suffix;
}
