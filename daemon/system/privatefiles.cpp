// SPDX-License-Identifier: MIT
#include "daemon/system/privatefiles.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t permissionBits = 0777;
constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;

Error systemError()
{
    return {QString::fromLocal8Bit(std::strerror(errno))};
}

class Descriptor
{
public:
    explicit Descriptor(int number) : mNumber(number) {}
    ~Descriptor()
    {
        if (mNumber >= 0)
            ::close(mNumber);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    [[nodiscard]] int number() const { return mNumber; }

private:
    int mNumber;
};

/// Works on an open file, which cannot be exchanged meanwhile.
Result<void> setMode(const Descriptor &file, mode_t mode)
{
    struct stat status = {};
    if (file.number() < 0 || ::fstat(file.number(), &status) != 0)
        return systemError();
    if (status.st_uid != ::geteuid())
        return Error{u"it belongs to another user"_s};
    if ((status.st_mode & permissionBits) == mode || ::fchmod(file.number(), mode) == 0)
        return {};
    return systemError();
}

Result<void> makePrivate(int folder, const char *name)
{
    // O_NONBLOCK: opening a pipe that has replaced the file would wait for a writer.
    const Descriptor file(::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return setMode(file, privateFile);
}

/// Whether `name` is a regular file with another mode.
bool isToBeMadePrivate(int folder, const char *name)
{
    struct stat status = {};
    return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode)
           && (status.st_mode & permissionBits) != privateFile;
}

QString problemLine(const QString &path, const Error &error)
{
    return u"cannot make %1 private: %2"_s.arg(path, error.message);
}

} // namespace

Result<void> makeFilePrivate(const QString &path)
{
    return makePrivate(AT_FDCWD, QFile::encodeName(path).constData());
}

QStringList makeFolderPrivate(const QString &path)
{
    const Descriptor folder(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    QStringList problems;
    if (const Result<void> changed = setMode(folder, privateFolder); !changed)
        problems += problemLine(path, changed.error());
    if (folder.number() < 0)
        return problems;
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::fdopendir(::fcntl(folder.number(), F_DUPFD_CLOEXEC, 0)),
                                                       ::closedir);
    while (const dirent *entry = entries ? ::readdir(entries.get()) : nullptr) {
        if (!isToBeMadePrivate(folder.number(), entry->d_name))
            continue;
        if (const Result<void> changed = makePrivate(folder.number(), entry->d_name); !changed)
            problems += problemLine(path + u'/' + QFile::decodeName(entry->d_name), changed.error());
    }
    return problems;
}
