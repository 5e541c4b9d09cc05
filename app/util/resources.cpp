// SPDX-License-Identifier: MIT
#include "app/util/resources.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

QString resourceFolder()
{
    const QString chosen = qEnvironmentVariable("QUILL_KESTRA_RESOURCES");
    if (!chosen.isEmpty())
        return chosen;
    const QDir executableFolder(QCoreApplication::applicationDirPath());
    if (executableFolder.exists(u"resources"_s))
        return executableFolder.filePath(u"resources"_s);
    return QDir::cleanPath(executableFolder.filePath(u"../share/quill-kestra"_s));
}

QString resourcePath(const QString &fileName)
{
    return QDir(resourceFolder()).filePath(fileName);
}

QString kestraPlistPath()
{
    const QString fileName = u"Kestra.plist"_s;
    const QString installed = resourcePath(fileName);
    // Saving replaces the file by a rename, so the folder must be writable too.
    if (QFileInfo(installed).isWritable() && QFileInfo(resourceFolder()).isWritable())
        return installed;
    const QDir userFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/quill-kestra"_s);
    const QString copy = userFolder.filePath(fileName);
    if (QFileInfo::exists(copy))
        return copy;
    if (!userFolder.mkpath(u"."_s) || !QFile::copy(installed, copy))
        return installed;
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    return copy;
}
