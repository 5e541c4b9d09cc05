// SPDX-License-Identifier: MIT
#include "base/regularfile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Returns why the open file `descriptor` is not a regular file; empty when it is one.
QString problemOf(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return qt_error_string(errno);
    if (S_ISDIR(status.st_mode))
        return qt_error_string(EISDIR);
    return S_ISREG(status.st_mode) ? QString() : u"Not a regular file"_s;
}

} // namespace

QString openRegularFile(QFile &file)
{
    if (file.fileName().contains(QChar::Null)) // the system would see a different name
        return qt_error_string(ENOENT);
    // The file is opened before it is examined, because another one may replace it in between. Opening a pipe does not
    // wait for a writer.
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return qt_error_string(errno);
    QString problem = problemOf(descriptor);
    if (problem.isEmpty() && !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        problem = file.errorString();
    if (!problem.isEmpty())
        ::close(descriptor);
    return problem;
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
