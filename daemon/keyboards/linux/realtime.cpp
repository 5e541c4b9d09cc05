// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/realtime.h"

#include "daemon/system/startmemory.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QList>
#include <QProcess>

#include <csignal>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int priority = 5;                  // above all ordinary programs, below sound
constexpr rlim_t longestRunUs = 1'000'000;   // without a pause
constexpr std::size_t stackPart = 64 * 1024; // of the calling thread's stack; more than it uses
constexpr QLatin1StringView realtimeKit{"org.freedesktop.RealtimeKit1"}; // the service and the interface
constexpr QLatin1StringView realtimeKitPath{"/org/freedesktop/RealtimeKit1"};

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

/// One request to RealtimeKit, in three steps. Deletes itself at its end.
class RealtimeKitRequest : public QObject
{
public:
    RealtimeKitRequest(const QDBusConnection &bus, pid_t thread, QObject *context,
                       const std::function<void(bool isGranted)> &done)
        : QObject(context), mBus(bus), mThread(thread), mDone(done)
    {
    }

    void start()
    {
        QDBusMessage message = QDBusMessage::createMethodCall(realtimeKit, realtimeKitPath,
                                                              u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        message << QString(realtimeKit) << u"RTTimeUSecMax"_s;
        call(message, [this](const QDBusMessage &reply) {
            const qlonglong us = reply.arguments().value(0).value<QDBusVariant>().variant().toLongLong();
            mLongestRunUs = static_cast<rlim_t>(us);
            if (reply.type() != QDBusMessage::ReplyMessage || us <= 0)
                return finish(false);
            rlimit limit = {};
            const bool isLow = ::getrlimit(RLIMIT_RTTIME, &limit) == 0 && limit.rlim_max <= mLongestRunUs;
            isLow ? request() : tryInAnotherProcess();
        });
    }

private:
    void tryInAnotherProcess()
    {
        mTrial.setChildProcessModifier([us = mLongestRunUs] {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            (void)limitRun(us, true);
        });
        connect(&mTrial, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                finish(false);
        });
        connect(&mTrial, &QProcess::started, this, [this] {
            const auto process = static_cast<qulonglong>(mTrial.processId());
            QDBusMessage message = QDBusMessage::createMethodCall(realtimeKit, realtimeKitPath, realtimeKit,
                                                                  u"MakeThreadRealtimeWithPID"_s);
            message << process << process << static_cast<uint>(priority);
            call(message, [this](const QDBusMessage &reply) {
                mTrial.disconnect(this);
                mTrial.kill();
                reply.type() == QDBusMessage::ReplyMessage ? request() : finish(false);
            });
        });
        mTrial.start(u"sleep"_s, {u"60"_s}); // longer than a call may take
    }

    void request()
    {
        if (!limitRun(mLongestRunUs, true))
            return finish(false);
        QDBusMessage message =
            QDBusMessage::createMethodCall(realtimeKit, realtimeKitPath, realtimeKit, u"MakeThreadRealtime"_s);
        message << static_cast<qulonglong>(mThread) << static_cast<uint>(priority);
        call(message, [this](const QDBusMessage &reply) { finish(reply.type() == QDBusMessage::ReplyMessage); });
    }

    void finish(bool isGranted)
    {
        deleteLater(); // and with it the other process
        mDone(isGranted);
    }

    void call(const QDBusMessage &message, std::function<void(const QDBusMessage &reply)> take)
    {
        auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [take = std::move(take)](QDBusPendingCallWatcher *finished) {
                    finished->deleteLater();
                    take(finished->reply());
                });
    }

    QDBusConnection mBus;
    pid_t mThread;
    std::function<void(bool isGranted)> mDone;
    rlim_t mLongestRunUs = 0;
    QProcess mTrial;
};

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

bool Realtime::isRealTime(pid_t thread)
{
    const int policy = ::sched_getscheduler(thread) & ~SCHED_RESET_ON_FORK;
    return policy == SCHED_FIFO || policy == SCHED_RR;
}

void Realtime::askRealtimeKit(const QDBusConnection &bus, pid_t thread, QObject *context,
                              const std::function<void(bool isGranted)> &done)
{
    if (bus.isConnected())
        (new RealtimeKitRequest(bus, thread, context, done))->start();
    else
        done(false);
}

std::size_t Realtime::lockMemory()
{
    StartMemory::release();
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
