// SPDX-License-Identifier: MIT
// The event loops of this program and of a second thread use the dispatcher under test.
#include "daemon/keyboards/linux/epolldispatcher.h"
#include "daemon/keyboards/linux/readnotifier.h"
#include "daemon/system/handover.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QSocketNotifier>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

/// A pipe whose read end a notifier watches.
class Pipe
{
public:
    Pipe()
    {
        if (::pipe2(mEnds, O_NONBLOCK | O_CLOEXEC) != 0)
            qFatal("no pipe");
        notifier = std::make_unique<QSocketNotifier>(mEnds[0], QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] {
            ++told;
            if (isEmptying)
                read();
            if (whenTold)
                whenTold();
        });
    }
    ~Pipe()
    {
        notifier.reset();
        ::close(mEnds[0]);
        closeWriteEnd();
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    void write() const { QCOMPARE(::write(mEnds[1], "x", 1), 1); }
    void read() const
    {
        char bytes[64];
        while (::read(mEnds[0], bytes, sizeof bytes) > 0) {
        }
    }
    void closeWriteEnd()
    {
        if (mEnds[1] >= 0)
            ::close(std::exchange(mEnds[1], -1));
    }

    std::unique_ptr<QSocketNotifier> notifier;
    std::function<void()> whenTold;
    int told = 0;
    bool isEmptying = true;

private:
    int mEnds[2] = {-1, -1};
};

/// A pipe whose read end calls a handler directly.
class DirectPipe : public ReadHandler
{
public:
    DirectPipe()
    {
        if (::pipe2(mEnds, O_NONBLOCK | O_CLOEXEC) != 0)
            qFatal("no pipe");
        notifier = std::make_unique<ReadNotifier>(mEnds[0], *this, nullptr);
        notifier->setEnabled(true);
    }
    ~DirectPipe() override
    {
        notifier.reset();
        ::close(mEnds[0]);
        ::close(mEnds[1]);
    }
    DirectPipe(const DirectPipe &) = delete;
    DirectPipe &operator=(const DirectPipe &) = delete;

    void write() const { QCOMPARE(::write(mEnds[1], "x", 1), 1); }

    std::unique_ptr<ReadNotifier> notifier;
    std::function<void()> whenCalled;
    int bytes = 0;

private:
    void fileReady() override
    {
        char byte = 0;
        while (::read(mEnds[0], &byte, 1) == 1)
            ++bytes;
        if (whenCalled)
            whenCalled();
    }

    int mEnds[2] = {-1, -1};
};

} // namespace

class EpollDispatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsAReadableFile();
    void reportsRemainingDataAgain();
    void disabledNotifierIsNotCalled();
    void notifierDestroyedByAnotherIsNotCalled();
    void reportsTheEndOfAFile();
    void servesReaderAndWriterOfOneFile();
    void servesManyFiles();
    void callsHandlersAsLongAsDataArrive();
    void handlerDisabledByAnotherIsNotCalledUntilEnabled();
    void callsTimersAndFilesThatAHandlerStartsRun();
    void interruptedLoopCallsAHandlerLater();
    void timersExpireInTheOrderOfTheirTimes();
    void repeatingTimerContinuesUntilItIsStopped();
    void timerWithoutIntervalStarvesNoFile();
    void reportsTheRemainingTimeOfATimer();
    void callsOfOtherThreadsRunInTheirOrder();
    void callsPostedBeforeTheThreadStartsRun();
    void deletesLater();
    void threadQuits();
    void sleepsWhileIdle();
    void signalDoesNotWakeIt();
    void reportsItsAwakeningBeforeAnyOtherWork();
};

void EpollDispatcherTest::reportsAReadableFile()
{
    Pipe pipe;
    QCoreApplication::processEvents();
    QCOMPARE(pipe.told, 0);
    pipe.write();
    QTRY_COMPARE(pipe.told, 1);
    QCoreApplication::processEvents();
    QCOMPARE(pipe.told, 1);
    pipe.write();
    QTRY_COMPARE(pipe.told, 2);
}

void EpollDispatcherTest::reportsRemainingDataAgain()
{
    Pipe pipe;
    pipe.isEmptying = false;
    pipe.write();
    QTRY_VERIFY(pipe.told >= 3);
}

void EpollDispatcherTest::disabledNotifierIsNotCalled()
{
    Pipe pipe;
    pipe.notifier->setEnabled(false);
    pipe.write();
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    QCOMPARE(pipe.told, 0);
    pipe.notifier->setEnabled(true);
    QTRY_COMPARE(pipe.told, 1);
}

void EpollDispatcherTest::notifierDestroyedByAnotherIsNotCalled()
{
    Pipe first;
    Pipe second;
    first.whenTold = [&] { second.notifier.reset(); };
    second.whenTold = [&] { first.notifier.reset(); };
    first.write();
    second.write();
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    QCOMPARE(first.told + second.told, 1); // the first to run destroys the other
}

void EpollDispatcherTest::reportsTheEndOfAFile()
{
    Pipe pipe;
    pipe.whenTold = [&] { pipe.notifier->setEnabled(false); };
    pipe.closeWriteEnd();
    QTRY_COMPARE(pipe.told, 1);
}

void EpollDispatcherTest::servesReaderAndWriterOfOneFile()
{
    int ends[2] = {-1, -1};
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
    QSocketNotifier reader(ends[0], QSocketNotifier::Read);
    QSocketNotifier writer(ends[0], QSocketNotifier::Write);
    int reads = 0;
    int writes = 0;
    connect(&reader, &QSocketNotifier::activated, this, [&] {
        ++reads;
        reader.setEnabled(false);
    });
    connect(&writer, &QSocketNotifier::activated, this, [&] {
        ++writes;
        writer.setEnabled(false);
    });
    QTRY_COMPARE(writes, 1);
    QCOMPARE(reads, 0);
    QCOMPARE(::write(ends[1], "x", 1), 1);
    QTRY_COMPARE(reads, 1);
    QCOMPARE(writes, 1);
    ::close(ends[0]);
    ::close(ends[1]);
}

void EpollDispatcherTest::servesManyFiles()
{
    std::vector<std::unique_ptr<Pipe>> pipes(100);
    for (std::unique_ptr<Pipe> &pipe : pipes) {
        pipe = std::make_unique<Pipe>();
        pipe->write();
    }
    QTRY_VERIFY(std::ranges::all_of(pipes, [](const std::unique_ptr<Pipe> &pipe) { return pipe->told == 1; }));
}

void EpollDispatcherTest::callsHandlersAsLongAsDataArrive()
{
    constexpr int rounds = 1000;
    DirectPipe first;
    DirectPipe second;
    QEventLoop loop;
    // They wake each other: nothing but handlers has anything to do meanwhile.
    first.whenCalled = [&] { second.write(); };
    second.whenCalled = [&] { second.bytes < rounds ? first.write() : loop.quit(); };
    first.write();
    loop.exec();
    QCOMPARE(first.bytes, rounds);
    QCOMPARE(second.bytes, rounds);
}

void EpollDispatcherTest::handlerDisabledByAnotherIsNotCalledUntilEnabled()
{
    DirectPipe first;
    DirectPipe second;
    first.whenCalled = [&] { second.notifier->setEnabled(false); };
    second.whenCalled = [&] { first.notifier->setEnabled(false); };
    first.write();
    second.write();
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    QCOMPARE(first.bytes + second.bytes, 1); // the first to run disables the other
    first.whenCalled = {};
    second.whenCalled = {};
    first.notifier->setEnabled(true);
    second.notifier->setEnabled(true);
    QTRY_COMPARE(first.bytes + second.bytes, 2);
}

void EpollDispatcherTest::callsTimersAndFilesThatAHandlerStartsRun()
{
    DirectPipe direct;
    Pipe file;
    QStringList happened;
    QEventLoop loop;
    const auto note = [&](const QString &what) {
        happened += what;
        if (happened.size() == 3)
            loop.quit();
    };
    file.whenTold = [&] { note(QStringLiteral("file")); };
    direct.whenCalled = [&] {
        file.write();
        QTimer::singleShot(1ms, &loop, [&] { note(QStringLiteral("timer")); });
        QMetaObject::invokeMethod(
            &loop, [&] { note(QStringLiteral("call")); }, Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(
        &loop, [&direct] { direct.write(); }, Qt::QueuedConnection);
    loop.exec();
    happened.sort();
    QCOMPARE(happened, (QStringList{QStringLiteral("call"), QStringLiteral("file"), QStringLiteral("timer")}));
}

void EpollDispatcherTest::interruptedLoopCallsAHandlerLater()
{
    QEventLoop loop;
    DirectPipe first;
    DirectPipe second;
    // Both are ready in the same round, and the call makes it a round of the event loop.
    first.whenCalled = [&] { loop.quit(); };
    second.whenCalled = [&] { loop.quit(); };
    first.write();
    second.write();
    QMetaObject::invokeMethod(
        &loop, [] {}, Qt::QueuedConnection);
    loop.exec();
    loop.processEvents();
    QTRY_COMPARE(first.bytes + second.bytes, 2);
}

void EpollDispatcherTest::timersExpireInTheOrderOfTheirTimes()
{
    QList<int> order;
    QElapsedTimer clock;
    clock.start();
    for (const int ms : {30, 10, 20, 0}) {
        QTimer::singleShot(ms, Qt::PreciseTimer, this, [&order, &clock, ms] {
            QVERIFY(clock.elapsed() >= ms);
            order += ms;
        });
    }
    QTRY_COMPARE(order.size(), 4);
    QCOMPARE(order, (QList<int>{0, 10, 20, 30}));
}

void EpollDispatcherTest::repeatingTimerContinuesUntilItIsStopped()
{
    QTimer timer;
    int count = 0;
    timer.callOnTimeout([&] {
        if (++count == 5)
            timer.stop();
    });
    QElapsedTimer clock;
    clock.start();
    timer.start(2ms);
    QTRY_COMPARE(count, 5);
    QVERIFY(clock.elapsed() >= 10);
    QTimer later;
    QSignalSpy spy(&later, &QTimer::timeout);
    later.setSingleShot(true);
    later.start(10ms);
    QVERIFY(spy.wait());
    QCOMPARE(count, 5);
}

void EpollDispatcherTest::timerWithoutIntervalStarvesNoFile()
{
    QTimer timer;
    int count = 0;
    timer.callOnTimeout([&] { ++count; });
    timer.start(0ms);
    Pipe pipe;
    pipe.write();
    QTRY_COMPARE(pipe.told, 1);
    QTRY_VERIFY(count > 3);
}

void EpollDispatcherTest::reportsTheRemainingTimeOfATimer()
{
    auto *dispatcher = QAbstractEventDispatcher::instance();
    const int id = startTimer(1000s);
    QCOMPARE(dispatcher->registeredTimers(this).size(), 1);
    const int left = dispatcher->remainingTime(id);
    QVERIFY2(left > 990'000 && left <= 1'000'000, qPrintable(QString::number(left)));
    killTimer(id);
    QCOMPARE(dispatcher->remainingTime(id), -1);
    QCOMPARE(dispatcher->registeredTimers(this).size(), 0);
}

void EpollDispatcherTest::callsOfOtherThreadsRunInTheirOrder()
{
    constexpr int calls = 10'000;
    QThread thread;
    thread.setEventDispatcher(new EpollDispatcher);
    QObject target;
    target.moveToThread(&thread);
    thread.start();
    std::atomic<int> done = 0;
    std::atomic<int> wrong = 0;
    for (int call = 0; call < calls; ++call) {
        QMetaObject::invokeMethod(&target, HandOver::Call{[&done, &wrong, call] {
            if (done++ != call)
                ++wrong;
        }},
                                  call % 100 == 99 ? Qt::BlockingQueuedConnection : Qt::QueuedConnection);
    }
    QTRY_COMPARE(done.load(), calls);
    QCOMPARE(wrong.load(), 0);
    thread.quit();
    QVERIFY(thread.wait(20'000));
}

void EpollDispatcherTest::callsPostedBeforeTheThreadStartsRun()
{
    QThread thread;
    QObject target;
    target.moveToThread(&thread);
    std::atomic<bool> isDone = false;
    QMetaObject::invokeMethod(&target, HandOver::Call{[&isDone] { isDone = true; }}, Qt::QueuedConnection);
    thread.setEventDispatcher(new EpollDispatcher);
    thread.start();
    QTRY_VERIFY(isDone);
    thread.quit();
    QVERIFY(thread.wait(20'000));
}

void EpollDispatcherTest::deletesLater()
{
    const QPointer<QObject> object = new QObject;
    object->deleteLater();
    QTRY_VERIFY(!object);
}

void EpollDispatcherTest::threadQuits()
{
    for (int round = 0; round < 200; ++round) { // in any state that it has reached by then
        QThread thread;
        thread.setEventDispatcher(new EpollDispatcher);
        thread.start();
        thread.quit();
        QVERIFY(thread.wait(20'000));
    }
}

void EpollDispatcherTest::sleepsWhileIdle()
{
    const Pipe pipe;
    QEventLoop loop;
    QTimer::singleShot(200ms, &loop, &QEventLoop::quit);
    const long before = timesWoken();
    loop.exec();
    QVERIFY2(timesWoken() - before <= 2, qPrintable(QString::number(timesWoken() - before))); // woken by the timer
}

void EpollDispatcherTest::signalDoesNotWakeIt()
{
    static std::atomic<int> signalsSeen = 0;
    const auto before = std::signal(SIGUSR1, [](int) { ++signalsSeen; });
    const auto self = static_cast<pid_t>(::syscall(SYS_gettid));
    // A private loop, because QTRY would run another one.
    QEventLoop loop;
    QSignalSpy awakenings(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake);
    const std::unique_ptr<QThread> other(QThread::create([self] {
        const QDeadlineTimer patience(20s);
        for (int count = 0; count < 20; ++count) {
            ::syscall(SYS_tgkill, ::getpid(), self, SIGUSR1);
            // Signals do not queue, so the next is sent when this one was seen.
            do {
                QThread::msleep(5);
            } while (signalsSeen <= count && !patience.hasExpired());
        }
    }));
    connect(other.get(), &QThread::finished, &loop, &QEventLoop::quit);
    other->start();
    loop.exec();
    QVERIFY(other->wait(20'000));
    std::signal(SIGUSR1, before);
    QCOMPARE(signalsSeen.load(), 20);
    // Woken by its start and by the end of the thread.
    QVERIFY2(awakenings.count() <= 5, qPrintable(QString::number(awakenings.count())));
}

void EpollDispatcherTest::reportsItsAwakeningBeforeAnyOtherWork()
{
    auto *dispatcher = QAbstractEventDispatcher::instance();
    QStringList happened;
    QObject context;
    connect(dispatcher, &QAbstractEventDispatcher::awake, &context, [&] { happened += QStringLiteral("awake"); });
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context,
            [&] { happened += QStringLiteral("waits"); });
    QEventLoop loop;
    Pipe pipe;
    pipe.whenTold = [&] { happened += QStringLiteral("file"); };
    pipe.write();
    QTimer::singleShot(0ms, &context, [&] { happened += QStringLiteral("timer"); });
    QMetaObject::invokeMethod(
        &context, [&] { happened += QStringLiteral("call"); }, Qt::QueuedConnection);
    QTimer::singleShot(20ms, &loop, &QEventLoop::quit);
    loop.exec();
    QVERIFY(happened.contains(QStringLiteral("call")));
    bool isAwake = false;
    QStringList told;
    for (const QString &what : std::as_const(happened)) {
        if (what == QStringLiteral("waits"))
            isAwake = false;
        else if (what == QStringLiteral("awake"))
            isAwake = true;
        else
            told += isAwake ? what : QStringLiteral("asleep: ") + what;
    }
    told.sort();
    QCOMPARE(told, (QStringList{QStringLiteral("call"), QStringLiteral("file"), QStringLiteral("timer")}));
}

int main(int argc, char *argv[])
{
    QCoreApplication::setEventDispatcher(new EpollDispatcher);
    QCoreApplication application(argc, argv);
    EpollDispatcherTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "epolldispatchertest.moc"
