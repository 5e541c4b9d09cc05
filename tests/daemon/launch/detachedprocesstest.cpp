// SPDX-License-Identifier: MIT
#include "daemon/launch/detachedprocess.h"
#include "daemon/keyboards/linux/realtime.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

class DetachedProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mFolder.emplace(); }
    void cleanup() { mFolder.reset(); }

    void getsItsArgumentsAndDirectory();
    void getsTheEnvironmentWithoutTheDaemonsOwnVariables();
    void sharesNothingWithItsStarter();
    void inheritsNothingOfTheKeyThread();
    void leavesNoChild();
    void reportsWhyItCannotStart_data();
    void reportsWhyItCannotStart();

private:
    /// Runs `script` by a shell; returns the output that it wrote to its first argument.
    QStringList linesOf(const QByteArray &script, const QStringList &arguments = {});

    std::optional<QTemporaryDir> mFolder;
};

QStringList DetachedProcessTest::linesOf(const QByteArray &script, const QStringList &arguments)
{
    const QString result = mFolder->filePath(u"result"_s);
    const QString path = mFolder->filePath(u"script"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    // Renamed when it is complete; a file that exists can be read at once.
    file.write("#!/bin/sh\nresult=$1; shift\n{\n" + script
               + "\n} > \"$result.part\" && mv \"$result.part\" \"$result\"\n");
    file.setPermissions(file.permissions() | QFile::ExeOwner);
    file.close();
    if (!DetachedProcess::start(QStringList{path, result} + arguments, mFolder->path()))
        return {};
    QFile output(result);
    if (!QTest::qWaitFor([&] { return output.exists(); }, 20'000) || !output.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(output.readAll()).trimmed().split(u'\n');
}

void DetachedProcessTest::getsItsArgumentsAndDirectory()
{
    const QStringList lines =
        linesOf("pwd -P; printf '<%s>\\n' \"$@\"", {u"two words"_s, QString(), u"$HOME;`x`"_s, u"naïve"_s});
    QCOMPARE(lines, QStringList({QFileInfo(mFolder->path()).canonicalFilePath(), u"<two words>"_s, u"<>"_s,
                                 u"<$HOME;`x`>"_s, u"<naïve>"_s}));
}

void DetachedProcessTest::getsTheEnvironmentWithoutTheDaemonsOwnVariables()
{
    qputenv("KESTRA_TEST_VARIABLE", "two words");
    qputenv(DetachedProcess::withheldVariable, "1");
    const QStringList lines = linesOf("env | grep -e KESTRA_TEST_VARIABLE -e QT_NO_GLIB");
    qunsetenv("KESTRA_TEST_VARIABLE");
    qunsetenv(DetachedProcess::withheldVariable);
    QCOMPARE(lines, QStringList({u"KESTRA_TEST_VARIABLE=two words"_s}));
}

void DetachedProcessTest::sharesNothingWithItsStarter()
{
    std::array<int, 2> inheritable{};
    QCOMPARE(::pipe2(inheritable.data(), 0), 0);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGUSR1);
    QCOMPARE(::sigprocmask(SIG_BLOCK, &blocked, &before), 0);
    const auto oldHandler = ::signal(SIGPIPE, SIG_IGN);
    // A pipeline of the shell would itself count as a pipe.
    const QStringList lines = linesOf("grep -E '^(SigBlk|SigIgn):' /proc/$$/status | tr '\\t' ' '\n"
                                      "readlink /proc/$$/fd/0\n"
                                      "readlink /proc/$$/fd/2\n"
                                      "ls -l /proc/$$/fd >descriptors\n"
                                      "grep -c pipe: descriptors\n"
                                      "cut -d' ' -f6 /proc/$$/stat");
    ::signal(SIGPIPE, oldHandler);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    ::close(inheritable[0]);
    ::close(inheritable[1]);
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.at(0), u"SigBlk: 0000000000000000"_s);
    QCOMPARE(lines.at(1), u"SigIgn: 0000000000000000"_s);
    QCOMPARE(lines.at(2), u"/dev/null"_s);
    QCOMPARE(lines.at(3), u"/dev/null"_s);
    QCOMPARE(lines.at(4), u"0"_s);
    QVERIFY(lines.at(5) != QString::number(::getsid(0)));
}

void DetachedProcessTest::inheritsNothingOfTheKeyThread()
{
    std::thread keyThread([] {
        Realtime::lockMemory();
        (void)Realtime::raiseCurrentThread(); // limits the process, whether priority is allowed or not
    });
    keyThread.join();
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_RTTIME, &limit), 0);
    QCOMPARE(limit.rlim_cur, rlim_t(1'000'000));
    const rlim_t hard = limit.rlim_max;
    const QStringList lines = linesOf("grep '^Max realtime timeout' /proc/$$/limits | tr -s ' '\n"
                                      "grep '^VmLck:' /proc/$$/status | tr -s ' \t' ' '\n"
                                      "cut -d' ' -f41 /proc/$$/stat");
    ::munlockall();
    limit.rlim_cur = hard;
    QCOMPARE(::setrlimit(RLIMIT_RTTIME, &limit), 0);
    const QString wanted = hard == RLIM_INFINITY ? u"unlimited"_s : QString::number(hard);
    QCOMPARE(lines, QStringList({u"Max realtime timeout %1 %1 us "_s.arg(wanted), u"VmLck: 0 kB"_s,
                                 QString::number(SCHED_OTHER)}));
}

void DetachedProcessTest::leavesNoChild()
{
    QVERIFY(!linesOf("echo done").isEmpty());
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
}

void DetachedProcessTest::reportsWhyItCannotStart_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<int>("error");
    QTest::newRow("no program") << u"/no/such/program"_s << u"/"_s << ENOENT;
    QTest::newRow("not executable") << u"/etc/passwd"_s << u"/"_s << EACCES;
    QTest::newRow("no directory") << u"/bin/true"_s << u"/no/such/directory"_s << ENOENT;
}

void DetachedProcessTest::reportsWhyItCannotStart()
{
    QFETCH(QString, program);
    QFETCH(QString, directory);
    QFETCH(int, error);
    const Result<void> started = DetachedProcess::start({program}, directory);
    QVERIFY(!started);
    QCOMPARE(started.error().message, QString::fromLocal8Bit(std::strerror(error)));
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
}

QTEST_GUILESS_MAIN(DetachedProcessTest)
#include "detachedprocesstest.moc"
