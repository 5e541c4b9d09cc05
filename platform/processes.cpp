// SPDX-License-Identifier: MIT
#include "platform/processes.h"

#include "base/regularfile.h"

#include <QDir>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

// The kernel appends this to the path of an executable that was replaced while it runs, for example by an update.
constexpr QLatin1StringView deletedSuffix{" (deleted)"};
// Bytes of its name that the kernel keeps for a process.
constexpr qsizetype keptNameBytes = 15;
// The kernel reads at most this much of the first line of a script.
constexpr qint64 maximumFirstLineBytes = 256;

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray fileName(const QByteArray &path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

QString executableName(const QDir &processFolder)
{
    QString target = QFile::symLinkTarget(processFolder.filePath(u"exe"_s));
    if (target.endsWith(deletedSuffix))
        target.chop(deletedSuffix.size());
    return target.section(u'/', -1);
}

/// Whether the process was started by a link named `name`. The first argument has the whole name, but the caller of
/// exec chooses it. The kernel keeps the beginning of the name that was really started. Both must match.
bool wasStartedByLink(const QDir &processFolder, const QByteArrayList &arguments, const QByteArray &name)
{
    return fileName(arguments.constFirst()) == name
           && content(processFolder.filePath(u"comm"_s)) == name.left(keptNameBytes) + '\n';
}

/// Whether the process is an interpreter that runs a script named `name`. The first line of the script must have that
/// interpreter and the options before the script.
bool runsScript(const QDir &processFolder, const QByteArrayList &arguments, const QByteArray &name)
{
    const auto first = arguments.cbegin() + 1;
    const auto script = std::find_if(first, arguments.cend(), [](const auto &each) { return !each.startsWith('-'); });
    if (script == arguments.cend() || fileName(*script) != name)
        return false;
    const QDir workingFolder(processFolder.filePath(u"cwd"_s));
    QFile file(workingFolder.filePath(QFile::decodeName(*script)));
    if (!openRegularFile(file))
        return false;
    const QByteArray line = file.readLine(maximumFirstLineBytes).simplified();
    if (!line.startsWith("#!"))
        return false;
    const QByteArrayList words = line.sliced(2).split(' ');
    const auto isInterpreter = [&arguments](const QByteArray &word) {
        return fileName(word) == fileName(arguments.constFirst());
    };
    return std::any_of(words.cbegin(), words.cend(), isInterpreter)
           && std::all_of(first, script, [&line](const QByteArray &option) { return line.contains(option); });
}

bool isNamed(const QDir &processFolder, const QString &name)
{
    if (executableName(processFolder) == name)
        return true;
    const QByteArrayList arguments = content(processFolder.filePath(u"cmdline"_s)).split('\0');
    const QByteArray encodedName = QFile::encodeName(name);
    return wasStartedByLink(processFolder, arguments, encodedName) || runsScript(processFolder, arguments, encodedName);
}

} // namespace

std::vector<qint64> Processes::idsOfAllNamed(const QString &name, const QString &procFolder)
{
    if (name.isEmpty()) // the name of processes without an executable, such as the kernel's
        return {};
    std::vector<qint64> ids;
    const QDir proc(procFolder);
    for (const QString &entry : proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const qint64 id = entry.toLongLong(); // 0 if not a number; 0 and below address groups
        if (id > 0 && isNamed(QDir(proc.filePath(entry)), name))
            ids.push_back(id);
    }
    return ids;
}

void Processes::endAllNamed(const QString &name)
{
    // The kernel rejects signals to processes that this user may not signal.
    for (const qint64 id : idsOfAllNamed(name))
        ::kill(pid_t(id), SIGTERM);
}
