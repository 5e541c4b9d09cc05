// SPDX-License-Identifier: MIT
// A full disk, as code that writes files sees it. The test's thread; it holds for the whole process.
#pragma once

#include <QtGlobal>

#include <sys/resource.h>

#include <csignal>

/// While it lives, no file of this process can grow beyond `bytes`.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        mOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &mOld);
        const rlimit limit{bytes, mOld.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &mOld);
        std::signal(SIGXFSZ, mOldHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit mOld{};
    void (*mOldHandler)(int) = SIG_DFL;
};
