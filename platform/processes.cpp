// SPDX-License-Identifier: MIT
#include "platform/processes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// An executable that was replaced while it runs, as an update does, is listed with this behind its path.
constexpr QLatin1StringView deletedSuffix{" (deleted)"};

QString executableName(const QDir &processFolder)
{
    QString target = QFile::symLinkTarget(processFolder.filePath(u"exe"_s));
    if (target.isEmpty()) {
        QFile commandLine(processFolder.filePath(u"cmdline"_s));
        if (!commandLine.open(QIODevice::ReadOnly))
            return {};
        target = QString::fromLocal8Bit(commandLine.readAll().split('\0').constFirst());
    }
    if (target.endsWith(deletedSuffix))
        target.chop(deletedSuffix.size());
    return target.section(u'/', -1);
}

} // namespace

std::vector<qint64> Processes::idsOfAllNamed(const QString &name, const QString &procFolder)
{
    std::vector<qint64> ids;
    const QDir proc(procFolder);
    for (const QString &entry : proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isProcess = false;
        const qint64 id = entry.toLongLong(&isProcess);
        const QString folder = proc.filePath(entry);
        if (isProcess && QFileInfo(folder).ownerId() == ::geteuid() && executableName(QDir(folder)) == name)
            ids.push_back(id);
    }
    return ids;
}

void Processes::endAllNamed(const QString &name)
{
    for (const qint64 id : idsOfAllNamed(name))
        ::kill(pid_t(id), SIGTERM);
}
