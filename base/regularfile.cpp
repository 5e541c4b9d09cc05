// SPDX-License-Identifier: MIT
#include "base/regularfile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Succeeds if the open file `descriptor` is a regular file.
Result<void> requireRegularFile(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return Error{qt_error_string(errno)};
    if (S_ISDIR(status.st_mode))
        return Error{qt_error_string(EISDIR)};
    if (!S_ISREG(status.st_mode))
        return Error{u"Not a regular file"_s};
    return {};
}

} // namespace

Result<void> openRegularFile(QFile &file)
{
    if (file.fileName().contains(QChar::Null)) // the system would see a different name
        return Error{qt_error_string(ENOENT)};
    // The file is opened before it is examined, because another one may replace it in between. Opening a pipe does not
    // wait for a writer.
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return Error{qt_error_string(errno)};
    Result<void> opened = requireRegularFile(descriptor);
    if (opened && !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        opened = Error{file.errorString()};
    if (!opened)
        ::close(descriptor);
    return opened;
}

QByteArray readUpTo(QFile &file, qint64 maximumBytes)
{
    constexpr qint64 pieceBytes = 64 * 1024;
    QByteArray data;
    QByteArray piece;
    do {
        piece = file.read(std::min(pieceBytes, maximumBytes - data.size()));
        data += piece;
    } while (!piece.isEmpty());
    return data;
}
