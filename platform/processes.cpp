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
    if (name.isEmpty()) // which is what processes without an executable, such as the kernel's, have
        return {};
    std::vector<qint64> ids;
    const QDir proc(procFolder);
    for (const QString &entry : proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const qint64 id = entry.toLongLong(); // 0 for what is not a number; 0 and less are no processes but groups
        const QString folder = proc.filePath(entry);
        if (id > 0 && QFileInfo(folder).ownerId() == ::geteuid() && executableName(QDir(folder)) == name)
            ids.push_back(id);
    }
    return ids;
}

void Processes::endAllNamed(const QString &name)
{
    for (const qint64 id : idsOfAllNamed(name))
        ::kill(pid_t(id), SIGTERM);
}
