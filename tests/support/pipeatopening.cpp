// SPDX-License-Identifier: MIT
#include "tests/support/pipeatopening.h"

#include <QByteArray>
#include <QFile>

#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

QByteArray watchedPath; // empty for none
bool isOpened = false;
bool isWaiting = false;

int openFile(const char *path, int flags, unsigned mode)
{
    if (!watchedPath.isEmpty() && watchedPath == path) {
        watchedPath.clear();
        ::unlink(path);
        ::mkfifo(path, 0600);
        isOpened = true;
        isWaiting = (flags & O_NONBLOCK) == 0;
        flags |= O_NONBLOCK;
    }
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

unsigned modeOf(int flags, va_list arguments)
{
    const bool makesAFile = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return makesAFile ? va_arg(arguments, unsigned) : 0;
}

} // namespace

// These take precedence over the C library's functions in this executable.
extern "C" int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = modeOf(flags, arguments);
    va_end(arguments);
    return openFile(path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = modeOf(flags, arguments);
    va_end(arguments);
    return openFile(path, flags, mode);
}

PipeAtOpening::PipeAtOpening(const QString &path)
{
    watchedPath = QFile::encodeName(path);
    isOpened = false;
    isWaiting = false;
}

PipeAtOpening::~PipeAtOpening()
{
    watchedPath.clear();
}

bool PipeAtOpening::hasWaited() const
{
    return isWaiting;
}

bool PipeAtOpening::wasOpened() const
{
    return isOpened;
}
