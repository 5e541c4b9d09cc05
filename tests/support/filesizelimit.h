// SPDX-License-Identifier: MIT
// Simulates a full disk for code that writes files. The test's thread; affects the whole process.
#pragma once

#include <QtGlobal>

#include <sys/resource.h>

#include <csignal>

/// During its lifetime, no file of this process can grow beyond `bytes`.
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
