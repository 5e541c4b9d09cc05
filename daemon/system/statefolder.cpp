// SPDX-License-Identifier: MIT
#include "daemon/system/statefolder.h"

#include "daemon/system/logging.h"
#include "daemon/system/privatefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir())
        return true;
    if (!QDir().mkpath(QFileInfo(path).path()))
        return false;
    if (::mkdir(QFile::encodeName(path).constData(), privateFolder) == 0)
        return true;
    return errno == EEXIST && QFileInfo(path).isDir(); // another daemon has made it meanwhile
}

/// Does not wait. Returns 0 or an errno value: EWOULDBLOCK when another process has the lock.
int lockExclusively(int file)
{
    int error = 0;
    do
        error = ::flock(file, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
    while (error == EINTR);
    return error;
}

void closeFile(int file)
{
    if (file >= 0)
        ::close(file);
}

} // namespace

StateFolder::~StateFolder()
{
    closeFile(mLock);
}

QString StateFolder::defaultPath()
{
    QString stateHome = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(stateHome)) // XDG base directories ignore relative paths
        stateHome = QDir::home().filePath(u".local/state"_s);
    return QDir(stateHome).filePath(u"quill-kestra"_s);
}

QString StateFolder::filePath(const QString &name) const
{
    return QDir(mPath).filePath(name);
}

Result<void, StateFolder::OpenError> StateFolder::open()
{
    if (!makeFolder(mPath))
        return OpenError{{u"cannot make the folder %1"_s.arg(mPath)}, OpenError::Cause::unusable};
    Result<void, OpenError> locked = lock();
    if (!locked)
        return locked;
    for (const QString &problem : makeFolderPrivate(mPath))
        qCWarning(lcSettings, "file: %s", qUtf8Printable(problem));
    return {};
}

Result<void, StateFolder::OpenError> StateFolder::lock()
{
    const QString lockPath = filePath(u"lock"_s);
    closeFile(std::exchange(mLock, -1));
    mLock = ::open(QFile::encodeName(lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, privateFile);
    if (mLock < 0)
        return OpenError{{u"cannot open %1: %2"_s.arg(lockPath, systemError(errno))}, OpenError::Cause::unusable};
    // The lock ends with the process, even if that is killed.
    const int error = lockExclusively(mLock);
    if (error == 0)
        return {};
    closeFile(std::exchange(mLock, -1)); // isLocked() must not find an unlocked file
    if (error == EWOULDBLOCK)
        return OpenError{{u"another daemon uses the settings in %1"_s.arg(mPath)}, OpenError::Cause::inUse};
    return OpenError{{u"cannot lock %1: %2"_s.arg(lockPath, systemError(error))}, OpenError::Cause::unusable};
}

bool StateFolder::isLocked() const
{
    struct stat own = {};
    struct stat present = {};
    return mLock >= 0 && ::fstat(mLock, &own) == 0
           && ::stat(QFile::encodeName(filePath(u"lock"_s)).constData(), &present) == 0 && own.st_dev == present.st_dev
           && own.st_ino == present.st_ino;
}
