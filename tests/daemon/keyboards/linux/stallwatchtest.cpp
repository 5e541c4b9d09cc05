// SPDX-License-Identifier: MIT
// A child process stalls, and must end. With an argument this program is that process.
#include "daemon/keyboards/linux/stallwatch.h"
#include "daemon/keyboards/linux/epolldispatcher.h"
#include "daemon/keyboards/linux/readnotifier.h"
#include "daemon/keyboards/linux/realtime.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QSocketNotifier>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/eventfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A thread that should continue hardly ever waits this long for a processor.
constexpr std::chrono::milliseconds limit{1000};
constexpr int wrongEnd = 99;

std::chrono::nanoseconds now()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::chrono::nanoseconds awakening; // the last that the child's event loop has reported

/// Reports to the parent when the thread left its event loop.
void tellStall()
{
    std::printf("stalls from %lld\n", static_cast<long long>(awakening.count()));
    std::fflush(stdout);
}

[[noreturn]] void spin()
{
    tellStall();
    volatile bool isForEver = true;
    while (isForEver) {
    }
    ::abort();
}

[[noreturn]] void waitForEver()
{
    tellStall();
    for (;;)
        ::pause();
}

class SpinningHandler : public ReadHandler
{
public:
    void fileReady() override { spin(); }
};

/// The child's behaviour on the watched thread.
void behave(const QString &way)
{
    QObject context;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context,
                     [] { awakening = now(); }); // runs before the watch's own slot
    StallWatch watch(limit);
    if (!watch.isUsable())
        ::_exit(wrongEnd);
    QEventLoop loop;
    const int file = ::eventfd(way == "file"_L1 ? 1 : 0, EFD_CLOEXEC);
    QSocketNotifier notifier(file, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [] { spin(); });
    SpinningHandler handler;
    const int directFile = ::eventfd(0, EFD_CLOEXEC);
    ReadNotifier directNotifier(directFile, handler, nullptr);
    directNotifier.setEnabled(true);
    QTimer timer;
    timer.setSingleShot(true);
    QObject target;
    if (way == "timer"_L1) {
        timer.callOnTimeout([] { spin(); });
        timer.start(1ms);
    } else if (way == "handler"_L1) {
        timer.callOnTimeout([directFile] { ::eventfd_write(directFile, 1); }); // the loop finds nothing else to do then
        timer.start(1ms);
    } else if (way == "blocked"_L1) {
        QMetaObject::invokeMethod(
            &target, [] { waitForEver(); }, Qt::QueuedConnection);
    } else if (way == "call"_L1) {
        QMetaObject::invokeMethod(
            &target, [] { spin(); }, Qt::QueuedConnection);
    } else if (way == "call after idling"_L1 || way == "call after a burst"_L1) {
        timer.callOnTimeout([] { spin(); });
        timer.start(2 * limit);
    } else { // "idle", "busy"
        timer.callOnTimeout(&loop, &QEventLoop::quit);
        timer.start(2 * limit);
    }
    QTimer work;
    work.callOnTimeout([] { QThread::usleep(500); });
    if (way == "busy"_L1 || way == "call after a burst"_L1)
        work.start(0ms);
    loop.exec();
    ::close(file);
    ::close(directFile);
}

int runChild(const QString &way)
{
    std::unique_ptr<QThread> thread(QThread::create([way] { behave(way); }));
    thread->setEventDispatcher(new EpollDispatcher);
    QObject::connect(thread.get(), &QThread::finished, QCoreApplication::instance(), &QCoreApplication::quit);
    thread->start();
    QTimer::singleShot(20s, [] { ::_exit(wrongEnd); }); // the test has failed; the child must not remain
    QCoreApplication::exec();
    thread->wait();
    return 0;
}

} // namespace

class StallWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsAProcessWhoseThreadStalls_data();
    void endsAProcessWhoseThreadStalls();
    void leavesOthersAlone_data();
    void leavesOthersAlone();
    void wakesAtMostOnceAfterTheLastEvent();
    void ignoresTheSignalOfAnotherProgram();
    void locksNoMoreMemoryThanAllowed();
};

void StallWatchTest::endsAProcessWhoseThreadStalls_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("in a queued call") << u"call"_s;
    QTest::newRow("after it was idle for longer than the limit") << u"call after idling"_s;
    QTest::newRow("after it was busy for longer than the limit") << u"call after a burst"_s;
    QTest::newRow("waiting for what never comes") << u"blocked"_s;
    QTest::newRow("while reading a file") << u"file"_s;
    QTest::newRow("in a handler that the event loop calls directly") << u"handler"_s;
    QTest::newRow("in a timer") << u"timer"_s;
}

void StallWatchTest::endsAProcessWhoseThreadStalls()
{
    QFETCH(QString, way);
    QProcess child;
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, way});
    QVERIFY(child.waitForFinished(20'000));
    const std::chrono::nanoseconds end = now(); // not before the end of the child
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), StallWatch::exitCode);
    const QByteArray output = child.readAll();
    QVERIFY2(output.contains("the key thread is stuck"), output.constData());
    static const QRegularExpression stall(u"stalls from (\\d+)"_s);
    const std::chrono::nanoseconds start(stall.match(QString::fromLatin1(output)).captured(1).toLongLong());
    QVERIFY(start.count() > 0);
    QVERIFY2(end - start >= limit, qPrintable(QString::number((end - start).count())));
}

void StallWatchTest::leavesOthersAlone_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("idle for longer than the limit") << u"idle"_s;
    QTest::newRow("busy for longer than the limit, in small pieces") << u"busy"_s;
}

void StallWatchTest::leavesOthersAlone()
{
    QFETCH(QString, way);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, way});
    QVERIFY(child.waitForFinished(20'000));
    QCOMPARE(child.exitCode(), 0);
}

void StallWatchTest::wakesAtMostOnceAfterTheLastEvent()
{
    StallWatch watch(limit);
    QEventLoop loop;
    int events = 0;
    QTimer work;
    work.callOnTimeout([&] {
        if (++events == 20)
            loop.quit();
    });
    work.start(5ms);
    loop.exec();
    work.stop();
    QTimer::singleShot(2 * limit, &loop, &QEventLoop::quit);
    const long before = timesWoken();
    loop.exec();
    QVERIFY2(timesWoken() - before <= 3, qPrintable(QString::number(timesWoken() - before))); // once by the timer
}

void StallWatchTest::ignoresTheSignalOfAnotherProgram()
{
    const StallWatch watch(limit);
    QCOMPARE(::raise(SIGALRM), 0);
}

void StallWatchTest::locksNoMoreMemoryThanAllowed()
{
    const auto lockedKiB = [] {
        QFile file(u"/proc/self/status"_s);
        if (!file.open(QIODevice::ReadOnly))
            return qint64(-1);
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("VmLck:"))
                return line.simplified().split(' ').value(1).toLongLong();
        }
        return qint64(-1);
    };
    constexpr std::size_t budget = 2 * 1024 * 1024;
    QCOMPARE(lockedKiB(), 0);
    QCOMPARE(Realtime::lockMostUsed(0), std::size_t(0));
    const std::size_t locked = Realtime::lockMostUsed(budget);
    if (locked == 0)
        QSKIP("this system lets nobody lock memory");
    QVERIFY(locked <= budget);
    QCOMPARE(lockedKiB() * 1024, qint64(locked));
}

int main(int argc, char *argv[])
{
    QCoreApplication::setEventDispatcher(new EpollDispatcher);
    QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArrayView(argv[1]) == "--child")
        return runChild(QString::fromLatin1(argv[2]));
    StallWatchTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "stallwatchtest.moc"
