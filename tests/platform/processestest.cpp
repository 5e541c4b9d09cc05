// SPDX-License-Identifier: MIT
// Finding processes by name in a made-up process file system, and ending real ones in a PID namespace of their own: the
// machine's own processes are never looked at.
#include "platform/processes.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString daemonName = u"QuillKestraDaemon"_s; // 17 characters: longer than the name that the kernel keeps
constexpr const char *namespaceMark = "KESTRA_TEST_IN_PID_NAMESPACE";

/// The beginning of the name, which the kernel keeps with the process.
QByteArray keptName(const QString &path)
{
    return QFile::encodeName(path.section(u'/', -1)).left(15);
}

} // namespace

class ProcessesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void comparesTheFileNameOfTheExecutable_data();
    void comparesTheFileNameOfTheExecutable();
    void comparesTheNameOfTheLink_data();
    void comparesTheNameOfTheLink();
    void comparesTheNameOfTheScript_data();
    void comparesTheNameOfTheScript();
    void findsEveryProcessOfTheName();
    void ignoresOtherEntries();
    void emptyNameFindsNone();
    void missingFolderHasNone();
    void endsProcessesInASeparateNamespace();

private:
    /// Adds a process to the simulated process file system. `startedAs`: the path that the kernel received to start it.
    void addProcess(const QString &id, const QString &executable, const QString &startedAs = {},
                    const QByteArrayList &arguments = {});
    [[nodiscard]] std::vector<qint64> found(const QString &name = daemonName) const;

    std::unique_ptr<QTemporaryDir> mProc;
};

void ProcessesTest::init()
{
    mProc = std::make_unique<QTemporaryDir>();
    QVERIFY(mProc->isValid());
}

void ProcessesTest::addProcess(const QString &id, const QString &executable, const QString &startedAs,
                               const QByteArrayList &arguments)
{
    QDir folder(mProc->path());
    QVERIFY(folder.mkpath(id));
    if (!executable.isEmpty())
        QVERIFY(QFile::link(executable, mProc->filePath(id + u"/exe"_s)));
    QVERIFY(QFile::link(mProc->path(), mProc->filePath(id + u"/cwd"_s)));
    writeFile(mProc->filePath(id + u"/comm"_s), keptName(startedAs) + '\n');
    QByteArray commandLine;
    for (const QByteArray &argument : arguments)
        commandLine += argument + '\0';
    writeFile(mProc->filePath(id + u"/cmdline"_s), commandLine);
}

std::vector<qint64> ProcessesTest::found(const QString &name) const
{
    std::vector<qint64> ids = Processes::idsOfAllNamed(name, mProc->path());
    std::ranges::sort(ids);
    return ids;
}

void ProcessesTest::comparesTheFileNameOfTheExecutable_data()
{
    QTest::addColumn<QString>("executable");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("same") << u"/usr/bin/QuillKestraDaemon"_s << true;
    QTest::newRow("elsewhere") << u"/opt/a folder/QuillKestraDaemon"_s << true;
    QTest::newRow("replaced while it runs") << u"/usr/bin/QuillKestraDaemon (deleted)"_s << true;
    QTest::newRow("only the 15 characters the kernel keeps") << u"/usr/bin/QuillKestraDaem"_s << false;
    QTest::newRow("same 15 characters") << u"/usr/bin/QuillKestraDaemonTool"_s << false;
    QTest::newRow("other case") << u"/usr/bin/quillkestradaemon"_s << false;
    QTest::newRow("name at the end") << u"/usr/bin/NotQuillKestraDaemon"_s << false;
    QTest::newRow("name of the folder") << u"/usr/QuillKestraDaemon/other"_s << false;
}

void ProcessesTest::comparesTheFileNameOfTheExecutable()
{
    QFETCH(QString, executable);
    QFETCH(bool, isFound);
    addProcess(u"100"_s, executable, executable, {executable.toUtf8()});
    QCOMPARE(found(), isFound ? std::vector<qint64>{100} : std::vector<qint64>{});
}

void ProcessesTest::comparesTheNameOfTheLink_data()
{
    QTest::addColumn<QString>("executable");
    QTest::addColumn<QString>("startedAs");
    QTest::addColumn<QByteArrayList>("arguments");
    QTest::addColumn<bool>("isFound");
    const QString versioned = u"/opt/daemon-1.2"_s;
    const QString link = u"/usr/bin/QuillKestraDaemon"_s;
    const QByteArray name = "QuillKestraDaemon";
    QTest::newRow("link") << versioned << link << QByteArrayList{"/usr/bin/" + name} << true;
    QTest::newRow("found in the search path") << versioned << link << QByteArrayList{name, "--verbose"} << true;
    QTest::newRow("link to a longer name") << u"/opt/QuillKestraDaemon-1.2"_s << link << QByteArrayList{name} << true;
    QTest::newRow("executable that cannot be read") << QString() << link << QByteArrayList{name} << true;
    QTest::newRow("link of a longer name, same 15 characters")
        << versioned << u"/usr/bin/QuillKestraDaemonTool"_s << QByteArrayList{"QuillKestraDaemonTool"} << false;
    QTest::newRow("link of the 15 characters the kernel keeps")
        << versioned << u"/usr/bin/QuillKestraDaem"_s << QByteArrayList{"QuillKestraDaem"} << false;
    QTest::newRow("same 15 characters, name as an argument")
        << versioned << u"/usr/bin/QuillKestraDaemonTool"_s << QByteArrayList{"QuillKestraDaemonTool", name} << false;
    // The starting program chooses the first argument.
    QTest::newRow("first argument alone") << versioned << versioned << QByteArrayList{name} << false;
    QTest::newRow("kernel thread") << QString() << QString() << QByteArrayList() << false;
}

void ProcessesTest::comparesTheNameOfTheLink()
{
    QFETCH(QString, executable);
    QFETCH(QString, startedAs);
    QFETCH(QByteArrayList, arguments);
    QFETCH(bool, isFound);
    addProcess(u"100"_s, executable, startedAs, arguments);
    QCOMPARE(found(), isFound ? std::vector<qint64>{100} : std::vector<qint64>{});
}

void ProcessesTest::comparesTheNameOfTheScript_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("firstLine");
    QTest::addColumn<QByteArrayList>("arguments"); // those before the script; the script's path follows
    QTest::addColumn<bool>("isFound");
    const QString name = daemonName;
    QTest::newRow("script") << name << QByteArray("#!/bin/sh") << QByteArrayList{"/bin/sh"} << true;
    QTest::newRow("with a space") << name << QByteArray("#! /bin/sh") << QByteArrayList{"/bin/sh"} << true;
    QTest::newRow("with an option") << name << QByteArray("#!/bin/sh -e") << QByteArrayList{"/bin/sh", "-e"} << true;
    QTest::newRow("found by env") << name << QByteArray("#!/usr/bin/env python3") << QByteArrayList{"python3"} << true;
    QTest::newRow("found by env, with options")
        << name << QByteArray("#!/usr/bin/env -S python3 -B -u") << QByteArrayList{"python3", "-B", "-u"} << true;
    QTest::newRow("longer name") << u"QuillKestraDaemonTool"_s << QByteArray("#!/bin/sh") << QByteArrayList{"/bin/sh"}
                                 << false;
    QTest::newRow("only the 15 characters the kernel keeps")
        << u"QuillKestraDaem"_s << QByteArray("#!/bin/sh") << QByteArrayList{"/bin/sh"} << false;
    QTest::newRow("editor") << name << QByteArray("#!/bin/sh") << QByteArrayList{"vi"} << false;
    QTest::newRow("shell that starts it")
        << name << QByteArray("#!/bin/sh") << QByteArrayList{"/bin/sh", "-c"} << false;
    QTest::newRow("argument of another script")
        << name << QByteArray("#!/bin/sh") << QByteArrayList{"/bin/sh", "other"} << false;
    QTest::newRow("no script") << name
                               << QByteArray("\x7f"
                                             "ELF /bin/sh")
                               << QByteArrayList{"/bin/sh"} << false;
}

void ProcessesTest::comparesTheNameOfTheScript()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, firstLine);
    QFETCH(QByteArrayList, arguments);
    QFETCH(bool, isFound);
    const QString script = mProc->filePath(file);
    writeFile(script, firstLine + "\necho\n");
    addProcess(u"100"_s, u"/usr/bin/interpreter"_s, u"/usr/bin/interpreter"_s,
               arguments + QByteArrayList{script.toUtf8()});
    // Relative to the process's current folder.
    addProcess(u"101"_s, u"/usr/bin/interpreter"_s, u"/usr/bin/interpreter"_s,
               arguments + QByteArrayList{file.toUtf8()});
    QCOMPARE(found(), (isFound ? std::vector<qint64>{100, 101} : std::vector<qint64>{}));
}

void ProcessesTest::findsEveryProcessOfTheName()
{
    addProcess(u"7"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"12"_s, u"/usr/bin/kestra-configurator"_s);
    addProcess(u"4194303"_s, u"/opt/a/QuillKestraDaemon"_s);
    QCOMPARE(found(), (std::vector<qint64>{7, 4194303}));
}

void ProcessesTest::ignoresOtherEntries()
{
    addProcess(u"self"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"12a"_s, u"/usr/bin/QuillKestraDaemon"_s);
    // Signals to these numbers would reach whole groups of processes.
    addProcess(u"0"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"-1"_s, u"/usr/bin/QuillKestraDaemon"_s);
    QCOMPARE(found(), std::vector<qint64>{});
}

void ProcessesTest::emptyNameFindsNone()
{
    addProcess(u"7"_s, QString()); // a kernel thread: no executable, no arguments
    QCOMPARE(found(QString()), std::vector<qint64>{});
}

void ProcessesTest::missingFolderHasNone()
{
    QVERIFY(Processes::idsOfAllNamed(daemonName, mProc->filePath(u"none"_s)).empty());
}

void ProcessesTest::endsProcessesInASeparateNamespace()
{
    QStringList own{u"--pid"_s, u"--fork"_s, u"--mount-proc"_s, u"--kill-child"_s};
    // The superuser needs no user namespace, and without one the test can have processes of other users.
    if (::geteuid() != 0)
        own += {u"--user"_s, u"--map-root-user"_s};
    if (QProcess::execute(u"unshare"_s, own + QStringList{u"true"_s}) != 0)
        QSKIP("this machine lets no one make a PID namespace");
    QProcess inside;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(namespaceMark), u"1"_s);
    inside.setProcessEnvironment(environment);
    inside.setProcessChannelMode(QProcess::MergedChannels);
    inside.start(u"unshare"_s, own + QStringList{QCoreApplication::applicationFilePath()});
    QVERIFY(inside.waitForFinished(60'000));
    QVERIFY2(inside.exitStatus() == QProcess::NormalExit && inside.exitCode() == 0, inside.readAll().constData());
}

/// Runs as the first process of a PID namespace, where there are no other processes than those that it starts.
class ProcessesInNamespaceTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void endsEveryProcessOfTheName();
    void leavesProcessesOfOtherNames_data();
    void leavesProcessesOfOtherNames();
    void endsProcessWithoutItsExecutable();
    void endsProcessThatWasStartedByALink();
    void endsScripts_data();
    void endsScripts();
    void keepsProcessesOfOtherUsers();
    void endsOtherUsersProcessesAsRoot();

private:
    /// Starts a copy of a program that does nothing, under `name`.
    [[nodiscard]] std::unique_ptr<QProcess> started(const QString &name) const;
    /// Starts the file at `path`, and waits until its process is named `keptName`.
    [[nodiscard]] static std::unique_ptr<QProcess> startedFile(const QString &path, const QByteArray &keptName);
    [[nodiscard]] static bool wasTerminated(QProcess &process);
    /// Starts the executable at `path` without Qt and returns the ID of its process; null when it cannot be started.
    [[nodiscard]] static QString spawned(const QString &path);
    /// Returns the signal that ended the process; SIGKILL when this function had to end it.
    [[nodiscard]] static QString endingSignal(const QString &id);

    std::unique_ptr<QTemporaryDir> mFolder;
};

void ProcessesInNamespaceTest::initTestCase()
{
    // Nothing may be ended unless the process file system shows this namespace.
    const QStringList processes = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    QCOMPARE(QCoreApplication::applicationPid(), qint64(1));
    QCOMPARE(processes, QStringList{u"1"_s});
}

void ProcessesInNamespaceTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QCOMPARE(::chmod(QFile::encodeName(mFolder->path()).constData(), 0755), 0); // other users run programs there
}

void ProcessesInNamespaceTest::cleanup()
{
    mFolder.reset();
}

std::unique_ptr<QProcess> ProcessesInNamespaceTest::started(const QString &name) const
{
    const QString path = mFolder->filePath(name);
    if (!QFile::exists(path) && !QFile::copy(u"/bin/sleep"_s, path))
        return nullptr;
    auto process = std::make_unique<QProcess>();
    process->start(path, {u"600"_s});
    // After exec the process has the name. Before, it is a copy of this process.
    const QString exe = u"/proc/%1/exe"_s.arg(process->processId());
    if (!process->waitForStarted() || !QTest::qWaitFor([&] { return QFile::symLinkTarget(exe) == path; }))
        return nullptr;
    return process;
}

bool ProcessesInNamespaceTest::wasTerminated(QProcess &process)
{
    return process.waitForFinished(10'000) && process.exitStatus() == QProcess::CrashExit
           && process.exitCode() == SIGTERM;
}

void ProcessesInNamespaceTest::endsEveryProcessOfTheName()
{
    const auto first = started(daemonName);
    const auto second = started(daemonName);
    QVERIFY(first && second);
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*first));
    QVERIFY(wasTerminated(*second));
}

void ProcessesInNamespaceTest::leavesProcessesOfOtherNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("longer") << u"QuillKestraDaemon2"_s;
    QTest::newRow("what the kernel keeps") << u"QuillKestraDaem"_s;
    QTest::newRow("other case") << u"quillkestradaemon"_s;
    QTest::newRow("unrelated") << u"kestra-configurator"_s;
}

void ProcessesInNamespaceTest::leavesProcessesOfOtherNames()
{
    QFETCH(QString, name);
    const auto other = started(name);
    const auto daemon = started(daemonName);
    QVERIFY(other && daemon);
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*daemon)); // by then the other process has had its turn
    QCOMPARE(other->state(), QProcess::Running);
    QCOMPARE(::kill(pid_t(other->processId()), 0), 0);
    other->kill();
    QVERIFY(other->waitForFinished());
    QVERIFY(other->exitCode() == SIGKILL); // this test ended it, and nothing before
}

void ProcessesInNamespaceTest::endsProcessWithoutItsExecutable()
{
    const auto daemon = started(daemonName);
    QVERIFY(daemon);
    QVERIFY(QFile::remove(mFolder->filePath(daemonName)));
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*daemon));
}

std::unique_ptr<QProcess> ProcessesInNamespaceTest::startedFile(const QString &path, const QByteArray &keptName)
{
    auto process = std::make_unique<QProcess>();
    process->start(path, {u"600"_s});
    const QString comm = u"/proc/%1/comm"_s.arg(process->processId());
    const auto hasName = [&] {
        QFile file(comm);
        return file.open(QIODevice::ReadOnly) && file.readAll() == keptName + '\n';
    };
    return process->waitForStarted() && QTest::qWaitFor(hasName) ? std::move(process) : nullptr;
}

void ProcessesInNamespaceTest::endsProcessThatWasStartedByALink()
{
    const QString link = mFolder->filePath(daemonName);
    QVERIFY(QFile::link(u"/bin/sleep"_s, link));
    const auto daemon = startedFile(link, keptName(link));
    QVERIFY(daemon);
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*daemon));
}

void ProcessesInNamespaceTest::endsScripts_data()
{
    QTest::addColumn<QByteArray>("firstLine");
    QTest::addColumn<QString>("runningAs");
    QTest::newRow("interpreter") << QByteArray("#!/bin/sh") << daemonName;
    QTest::newRow("found by env") << QByteArray("#!/usr/bin/env sh") << u"sh"_s;
}

void ProcessesInNamespaceTest::endsScripts()
{
    QFETCH(QByteArray, firstLine);
    QFETCH(QString, runningAs);
    const QString script = mFolder->filePath(daemonName);
    const QString longer = script + u"Tool"_s;
    // The script waits without starting another process.
    const QByteArray content = firstLine + "\nread line <>" + QFile::encodeName(mFolder->filePath(u"pipe"_s)) + '\n';
    QCOMPARE(::mkfifo(QFile::encodeName(mFolder->filePath(u"pipe"_s)).constData(), 0600), 0);
    for (const QString &path : {script, longer}) {
        writeFile(path, content);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
    }
    const auto daemon = startedFile(script, keptName(runningAs));
    const auto other = startedFile(longer, keptName(runningAs));
    QVERIFY(daemon && other);
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*daemon));
    QCOMPARE(other->state(), QProcess::Running);
    other->kill();
    QVERIFY(other->waitForFinished());
    QCOMPARE(other->exitCode(), SIGKILL);
}

QString ProcessesInNamespaceTest::spawned(const QString &path)
{
    const QByteArray file = QFile::encodeName(path);
    const char *const arguments[] = {file.constData(), "600", nullptr};
    pid_t id = 0;
    // Returns when the process has its name.
    const int error = ::posix_spawn(&id, file.constData(), nullptr, nullptr, const_cast<char **>(arguments), environ);
    return error == 0 ? QString::number(id) : QString();
}

QString ProcessesInNamespaceTest::endingSignal(const QString &id)
{
    const pid_t process = id.toInt();
    int status = 0;
    const auto hasEnded = [&] { return ::waitpid(process, &status, WNOHANG) == process; };
    if (process > 0 && !QTest::qWaitFor(hasEnded, 10'000)) {
        ::kill(process, SIGKILL);
        ::waitpid(process, &status, 0);
    }
    return QString::number(WIFSIGNALED(status) ? WTERMSIG(status) : 0);
}

void ProcessesInNamespaceTest::keepsProcessesOfOtherUsers()
{
    const auto roots = started(daemonName);
    QVERIFY(roots);
    const QString path = mFolder->filePath(daemonName);
    const QString signalOfOwn = asOrdinaryUser([&path] {
        const QString own = spawned(path);
        Processes::endAllNamed(daemonName);
        return endingSignal(own);
    });
    if (signalOfOwn.isNull())
        QSKIP("only the machine's root has processes of several users");
    QCOMPARE(signalOfOwn, QString::number(SIGTERM));
    QCOMPARE(roots->state(), QProcess::Running);
    roots->kill();
    QVERIFY(roots->waitForFinished());
    QCOMPARE(roots->exitCode(), SIGKILL);
}

void ProcessesInNamespaceTest::endsOtherUsersProcessesAsRoot()
{
    const QString path = mFolder->filePath(daemonName);
    QVERIFY(QFile::copy(u"/bin/sleep"_s, path));
    const QString other = asOrdinaryUser([&path] { return spawned(path); });
    if (other.isNull())
        QSKIP("only the machine's root has processes of several users");
    Processes::endAllNamed(daemonName);
    // The first process of a namespace is the parent of those that have lost theirs.
    QCOMPARE(endingSignal(other), QString::number(SIGTERM));
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet(namespaceMark)) {
        ProcessesInNamespaceTest test;
        return QTest::qExec(&test, QStringList{application.applicationFilePath()});
    }
    ProcessesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "processestest.moc"
