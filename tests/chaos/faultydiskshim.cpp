// SPDX-License-Identifier: MIT
// A disk with faults, for one process: a library for LD_PRELOAD, whose functions replace those of the C library. A
// DiskControl describes the faults. Calls on files outside the folder have none. The library calls the kernel directly.
// It is built without sanitizers, because it is loaded before their run-time library.
#include "tests/chaos/diskcontrol.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

DiskControl noFaults{};

struct Disk
{
    Disk()
    {
        const char *file = std::getenv(DiskControl::fileVariable);
        const char *path = std::getenv(DiskControl::folderVariable);
        if (!file || !path)
            return;
        const int descriptor = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, file, O_RDWR | O_CLOEXEC, 0));
        void *memory = descriptor < 0
                           ? MAP_FAILED
                           : ::mmap(nullptr, sizeof(DiskControl), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        if (memory == MAP_FAILED)
            std::abort(); // a test with a disk that never fails would prove nothing
        ::close(descriptor);
        folder = path;
        folderLength = std::strlen(path);
        control = static_cast<DiskControl *>(memory);
    }

    DiskControl *control = &noFaults;
    const char *folder = nullptr;
    std::size_t folderLength = 0;
};

Disk &disk()
{
    static Disk instance;
    return instance;
}

bool isInFolder(const char *path)
{
    const Disk &own = disk();
    return own.folder && path && std::strncmp(path, own.folder, own.folderLength) == 0;
}

bool isInFolder(int descriptor)
{
    struct stat status = {};
    if (!disk().folder || ::fstat(descriptor, &status) != 0 || !(S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)))
        return false;
    char link[64];
    char *end = std::copy_n("/proc/self/fd/", 14, link);
    char digits[16];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + descriptor % 10);
        descriptor /= 10;
    } while (descriptor > 0);
    while (count > 0)
        *end++ = digits[--count];
    *end = '\0';
    char path[PATH_MAX + 1] = {};
    return ::readlink(link, path, PATH_MAX) > 0 && isInFolder(path);
}

/// The file with unflushed writes, -1 without one. The daemon writes one file at a time, on one thread.
int unflushed = -1;

void forgetUnflushed()
{
    if (unflushed >= 0)
        ::close(unflushed);
    unflushed = -1;
}

void pass(DiskCall call, DeathPlace place)
{
    DiskControl &control = *disk().control;
    if (control.placesToLive == 0 || --control.placesToLive != 0)
        return;
    if (control.losesUnflushed && unflushed >= 0)
        (void)!::ftruncate(unflushed, 0);
    ++control.deaths[static_cast<std::size_t>(call)][static_cast<std::size_t>(place)];
    ::syscall(SYS_kill, ::getpid(), SIGKILL);
    ::pause();
}

bool fails(DiskCall call)
{
    const DiskControl &control = *disk().control;
    if (!(control.failingCalls & maskOf(call)))
        return false;
    errno = control.failure;
    return true;
}

/// Makes the system call `work`, which changes the folder, with the faults for `call`.
template <typename Work> auto inFolder(DiskCall call, Work work) -> decltype(work())
{
    ++disk().control->calls[static_cast<std::size_t>(call)];
    pass(call, DeathPlace::before);
    if (fails(call))
        return -1;
    const auto result = work();
    const int error = errno;
    pass(call, DeathPlace::after);
    errno = error;
    return result;
}

int openFile(int folder, const char *path, int flags, mode_t mode)
{
    const auto work = [=] { return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode)); };
    const bool isForWriting = (flags & O_ACCMODE) != O_RDONLY;
    return isForWriting && isInFolder(path) ? inFolder(DiskCall::open, work) : work();
}

ssize_t writeWithRoom(int descriptor, const void *data, std::size_t size)
{
    DiskControl &control = *disk().control;
    if (control.isFull) {
        size = std::min(size, static_cast<std::size_t>(control.room.load()));
        if (size == 0) {
            errno = ENOSPC;
            return -1;
        }
        control.room -= static_cast<std::int64_t>(size);
    }
    const std::size_t half = size / 2;
    const auto *bytes = static_cast<const char *>(data);
    const ssize_t first = ::syscall(SYS_write, descriptor, bytes, half);
    if (first != static_cast<ssize_t>(half))
        return first;
    if (unflushed < 0)
        unflushed = static_cast<int>(::syscall(SYS_fcntl, descriptor, F_DUPFD_CLOEXEC, 0));
    pass(DiskCall::write, DeathPlace::within);
    const ssize_t second = ::syscall(SYS_write, descriptor, bytes + half, size - half);
    return second < 0 ? first : first + second;
}

int flush(int descriptor, long number)
{
    DiskControl &control = *disk().control;
    struct stat status = {};
    const bool isFolder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    if (control.failsForFolders && !isFolder)
        return static_cast<int>(::syscall(number, descriptor));
    return inFolder(DiskCall::flush, [&] {
        ++control.heldFlushes;
        while (control.holdsFlush) {
            constexpr timespec pause{.tv_sec = 0, .tv_nsec = 1'000'000};
            ::syscall(SYS_nanosleep, &pause, nullptr);
        }
        --control.heldFlushes;
        const int result = static_cast<int>(::syscall(number, descriptor));
        if (result == 0 && !isFolder)
            forgetUnflushed();
        return result;
    });
}

} // namespace

#define READ_MODE(last)                                                                                                \
    mode_t mode = 0;                                                                                                   \
    if (last & (O_CREAT | O_TMPFILE)) {                                                                                \
        va_list arguments;                                                                                             \
        va_start(arguments, last);                                                                                     \
        mode = va_arg(arguments, mode_t);                                                                              \
        va_end(arguments);                                                                                             \
    }

extern "C" {

int open(const char *path, int flags, ...)
{
    READ_MODE(flags)
    return openFile(AT_FDCWD, path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    READ_MODE(flags)
    return openFile(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    READ_MODE(flags)
    return openFile(folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    READ_MODE(flags)
    return openFile(folder, path, flags, mode);
}

ssize_t write(int descriptor, const void *data, size_t size)
{
    if (!isInFolder(descriptor))
        return ::syscall(SYS_write, descriptor, data, size);
    return inFolder(DiskCall::write, [=] { return writeWithRoom(descriptor, data, size); });
}

int fsync(int descriptor)
{
    return isInFolder(descriptor) ? flush(descriptor, SYS_fsync) : static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int fdatasync(int descriptor)
{
    return isInFolder(descriptor) ? flush(descriptor, SYS_fdatasync)
                                  : static_cast<int>(::syscall(SYS_fdatasync, descriptor));
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    const auto work = [=] { return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags)); };
    return isInFolder(to) ? inFolder(DiskCall::link, work) : work();
}

int link(const char *from, const char *to)
{
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int rename(const char *from, const char *to)
{
    const auto work = [=] { return static_cast<int>(::syscall(SYS_rename, from, to)); };
    return isInFolder(to) ? inFolder(DiskCall::rename, work) : work();
}

int unlink(const char *path)
{
    const auto work = [=] { return static_cast<int>(::syscall(SYS_unlink, path)); };
    return isInFolder(path) ? inFolder(DiskCall::remove, work) : work();
}

int clock_gettime(clockid_t clock, timespec *time)
{
    const int result = static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
    const bool isForward = clock == CLOCK_MONOTONIC || clock == CLOCK_BOOTTIME || clock == CLOCK_MONOTONIC_COARSE;
    if (result == 0 && isForward)
        time->tv_sec += disk().control->clockAheadMs / 1000;
    return result;
}
}
