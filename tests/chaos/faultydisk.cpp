// SPDX-License-Identifier: MIT
#include "tests/chaos/faultydisk.h"

#include <QFile>
#include <QProcessEnvironment>

#include <sys/mman.h>

#include <new>

using namespace Qt::StringLiterals;

FaultyDisk::FaultyDisk()
{
    QFile file(mFolder.filePath(u"control"_s));
    void *memory = nullptr;
    if (file.open(QIODevice::ReadWrite) && file.resize(sizeof(DiskControl)))
        memory = ::mmap(nullptr, sizeof(DiskControl), PROT_READ | PROT_WRITE, MAP_SHARED, file.handle(), 0);
    if (!memory || memory == MAP_FAILED)
        qFatal("no memory to share with the daemon");
    mControl = new (memory) DiskControl{};
}

FaultyDisk::~FaultyDisk()
{
    recover(); // a daemon may still wait in a held flush
    ::munmap(mControl, sizeof(DiskControl));
}

void FaultyDisk::prepare(QProcessEnvironment &environment, const QString &folder) const
{
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(KESTRA_DISK_SHIM));
    environment.insert(QString::fromLatin1(DiskControl::fileVariable), mFolder.filePath(u"control"_s));
    environment.insert(QString::fromLatin1(DiskControl::folderVariable), folder);
    // The run-time library of AddressSanitizer would refuse to be loaded after the disk.
    const QString options = environment.value(u"ASAN_OPTIONS"_s);
    environment.insert(u"ASAN_OPTIONS"_s,
                       options + (options.isEmpty() ? u""_s : u":"_s) + u"verify_asan_link_order=0"_s);
}

void FaultyDisk::recover()
{
    mControl->placesToLive = 0;
    mControl->losesUnflushed = false;
    mControl->failingCalls = 0;
    mControl->failsForFolders = false;
    mControl->isFull = false;
    mControl->holdsFlush = false;
}

int FaultyDisk::deathCount(DiskCall call, DeathPlace place) const
{
    return static_cast<int>(mControl->deaths[static_cast<std::size_t>(call)][static_cast<std::size_t>(place)]);
}

int FaultyDisk::deathCount() const
{
    int sum = 0;
    for (const auto &places : mControl->deaths) {
        for (const auto &count : places)
            sum += static_cast<int>(count);
    }
    return sum;
}
