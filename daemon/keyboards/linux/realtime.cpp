// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/realtime.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QList>

#include <linux/capability.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int priority = 5;                           // above all ordinary programs, below sound
constexpr rlim_t longestRunUs = 1'000'000;            // without a pause
constexpr rlim_t longestRunOfRealtimeKitUs = 200'000; // RealtimeKit refuses a process that may run longer
constexpr std::size_t stackPart = 64 * 1024;          // of the calling thread's stack; more than it uses

/// Follows the kernel's rule: only a process with this right can lock all its future memory.
bool mayLockAll()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_MEMLOCK, &limit) == 0 && limit.rlim_cur == RLIM_INFINITY)
        return true;
    __user_cap_header_struct header = {.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
    return ::syscall(SYS_capget, &header, data) == 0
           && (data[CAP_TO_INDEX(CAP_IPC_LOCK)].effective & CAP_TO_MASK(CAP_IPC_LOCK));
}

struct Mapping
{
    quintptr begin = 0;
    std::size_t size = 0;
    int rank = 0; // lower ranks are locked first; 0: not locked
};

/// The memory on the path of a key: our own code and data and the heap, then the libraries below.
int rankOf(const QByteArray &permissions, const QByteArray &file, const QByteArray &executable)
{
    const bool isCode = permissions.contains('x');
    const bool isData = permissions.contains('w');
    if (!isCode && !isData)
        return 0;
    if (file == executable || file == "[heap]")
        return 1;
    for (const char *library : {"/libevdev.", "/libc.so", "/libQt6Core.", "/libstdc++."}) {
        if (file.contains(library))
            return 2;
    }
    return 0;
}

QList<Mapping> mappings()
{
    QList<Mapping> result;
    const QByteArray executable = QFile::symLinkTarget(u"/proc/self/exe"_s).toLocal8Bit();
    QFile file(u"/proc/self/maps"_s);
    if (!file.open(QIODevice::ReadOnly))
        return result;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' '); // range permissions offset device inode file
        const QList<QByteArray> range = words.constFirst().split('-');
        const int rank = words.size() < 6 || range.size() != 2 ? 0 : rankOf(words.at(1), words.at(5), executable);
        if (rank == 0)
            continue;
        const auto begin = static_cast<quintptr>(range.at(0).toULongLong(nullptr, 16));
        const auto end = static_cast<quintptr>(range.at(1).toULongLong(nullptr, 16));
        result += {.begin = begin, .size = end - begin, .rank = rank};
    }
    std::ranges::stable_sort(result, {}, &Mapping::rank);
    return result;
}

/// Lowers only: a limit that is already lower stays.
bool limitRun(rlim_t us, bool isForGood)
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_RTTIME, &limit) != 0)
        return false;
    limit.rlim_cur = std::min(limit.rlim_cur, us);
    if (isForGood)
        limit.rlim_max = std::min(limit.rlim_max, us);
    return ::setrlimit(RLIMIT_RTTIME, &limit) == 0;
}

} // namespace

pid_t Realtime::currentThread()
{
    return static_cast<pid_t>(::syscall(SYS_gettid));
}

bool Realtime::raiseCurrentThread()
{
    const sched_param parameter = {.sched_priority = priority};
    return limitRun(longestRunUs, false) && ::sched_setscheduler(0, SCHED_FIFO | SCHED_RESET_ON_FORK, &parameter) == 0;
}

void Realtime::askRealtimeKit(pid_t thread, QObject *context, const std::function<void(bool isRealTime)> &done)
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected() || !limitRun(longestRunOfRealtimeKitUs, true)) {
        done(false);
        return;
    }
    QDBusMessage message =
        QDBusMessage::createMethodCall(u"org.freedesktop.RealtimeKit1"_s, u"/org/freedesktop/RealtimeKit1"_s,
                                       u"org.freedesktop.RealtimeKit1"_s, u"MakeThreadRealtime"_s);
    message << static_cast<qulonglong>(thread) << static_cast<uint>(priority);
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [done](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        done(!QDBusPendingReply<>(*call).isError());
    });
}

std::size_t Realtime::lockMemory()
{
    if (mayLockAll()) {
        if (::mlockall(MCL_CURRENT | MCL_FUTURE | MCL_ONFAULT) != 0)
            return 0;
        return std::numeric_limits<std::size_t>::max();
    }
    // Not mlockall: with a limit, every later mapping beyond it would fail.
    rlimit limit = {};
    return ::getrlimit(RLIMIT_MEMLOCK, &limit) == 0 ? lockMostUsed(limit.rlim_cur) : 0;
}

std::size_t Realtime::lockMostUsed(std::size_t budget)
{
    std::size_t locked = 0;
    const auto lock = [&](quintptr begin, std::size_t size) {
        if (size <= budget - locked && ::mlock2(reinterpret_cast<void *>(begin), size, MLOCK_ONFAULT) == 0)
            locked += size;
    };
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const quintptr top = reinterpret_cast<quintptr>(&locked) / page * page;
    lock(top - stackPart + page, stackPart);
    for (const Mapping &mapping : mappings())
        lock(mapping.begin, mapping.size);
    return locked;
}
