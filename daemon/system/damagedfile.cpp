// SPDX-License-Identifier: MIT
#include "daemon/system/damagedfile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

QString unusedAsideName(const QString &base, QLatin1StringView mark)
{
    const QString time = QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    const QString first = u"%1.%2-%3"_s.arg(base, mark, time);
    QString target = first;
    for (int number = 2; QFileInfo::exists(target); ++number)
        target = u"%1-%2"_s.arg(first).arg(number);
    return target;
}

Result<QString> setDamagedFileAside(const QString &path, const QString &base)
{
    const QString target = unusedAsideName(base, "damaged"_L1);
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) != 0)
        return Error{QString::fromLocal8Bit(std::strerror(errno))};
    return target;
}
