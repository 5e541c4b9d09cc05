// SPDX-License-Identifier: MIT
// Finding processes by name in a made-up process file system, and ending real ones in a PID namespace of their own: the
// machine's own processes are never looked at.
#include "platform/processes.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString daemonName = u"QuillKestraDaemon"_s; // 17 characters: longer than the kernel keeps
constexpr const char *namespaceMark = "KESTRA_TEST_IN_PID_NAMESPACE";

} // namespace

class ProcessesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void comparesTheFileNameOfTheExecutable_data();
    void comparesTheFileNameOfTheExecutable();
    void comparesTheFirstArgumentWhereTheExecutableCannotBeRead_data();
    void comparesTheFirstArgumentWhereTheExecutableCannotBeRead();
    void findsEveryProcessOfTheName();
    void ignoresWhatIsNoProcess();
    void ignoresProcessesOfOtherUsers();
    void emptyNameFindsNone();
    void missingFolderHasNone();
    void endsProcessesInNamespaceOfTheirOwn();

private:
    /// A process in the made-up process file system.
    void addProcess(const QString &id, const QString &executable, const QByteArray &commandLine = {});
    [[nodiscard]] std::vector<qint64> found(const QString &name = daemonName) const;

    std::unique_ptr<QTemporaryDir> mProc;
};

void ProcessesTest::init()
{
    mProc = std::make_unique<QTemporaryDir>();
    QVERIFY(mProc->isValid());
}

void ProcessesTest::addProcess(const QString &id, const QString &executable, const QByteArray &commandLine)
{
    QDir folder(mProc->path());
    QVERIFY(folder.mkpath(id));
    if (!executable.isEmpty())
        QVERIFY(QFile::link(executable, mProc->filePath(id + u"/exe"_s)));
    QFile file(mProc->filePath(id + u"/cmdline"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(commandLine), commandLine.size());
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
    // The first argument is whatever the starter wanted; the executable counts.
    addProcess(u"100"_s, executable, QByteArray("QuillKestraDaemon\0", 18));
    QCOMPARE(found(), isFound ? std::vector<qint64>{100} : std::vector<qint64>{});
}

void ProcessesTest::comparesTheFirstArgumentWhereTheExecutableCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("commandLine");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("with folder") << QByteArray("/usr/bin/QuillKestraDaemon\0--verbose\0", 37) << true;
    QTest::newRow("without folder") << QByteArray("QuillKestraDaemon\0", 18) << true;
    QTest::newRow("second argument") << QByteArray("vi\0QuillKestraDaemon\0", 21) << false;
    QTest::newRow("none, as a kernel thread has") << QByteArray() << false;
}

void ProcessesTest::comparesTheFirstArgumentWhereTheExecutableCannotBeRead()
{
    QFETCH(QByteArray, commandLine);
    QFETCH(bool, isFound);
    addProcess(u"100"_s, QString(), commandLine);
    QCOMPARE(found(), isFound ? std::vector<qint64>{100} : std::vector<qint64>{});
}

void ProcessesTest::findsEveryProcessOfTheName()
{
    addProcess(u"7"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"12"_s, u"/usr/bin/kestra-configurator"_s);
    addProcess(u"4194303"_s, u"/opt/a/QuillKestraDaemon"_s);
    QCOMPARE(found(), (std::vector<qint64>{7, 4194303}));
}

void ProcessesTest::ignoresWhatIsNoProcess()
{
    addProcess(u"self"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"12a"_s, u"/usr/bin/QuillKestraDaemon"_s);
    // Signals to these numbers would go to whole groups of processes.
    addProcess(u"0"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"-1"_s, u"/usr/bin/QuillKestraDaemon"_s);
    QCOMPARE(found(), std::vector<qint64>{});
}

void ProcessesTest::ignoresProcessesOfOtherUsers()
{
    addProcess(u"7"_s, u"/usr/bin/QuillKestraDaemon"_s);
    addProcess(u"8"_s, u"/usr/bin/QuillKestraDaemon"_s);
    if (::chown(QFile::encodeName(mProc->filePath(u"8"_s)).constData(), ::geteuid() + 1, gid_t(-1)) != 0)
        QSKIP("only root can make a folder another user's");
    QCOMPARE(found(), std::vector<qint64>{7});
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

void ProcessesTest::endsProcessesInNamespaceOfTheirOwn()
{
    const QStringList own{u"--user"_s, u"--map-root-user"_s, u"--pid"_s, u"--fork"_s, u"--mount-proc"_s};
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
    void endsProcessWhoseExecutableIsGone();

private:
    /// Starts a copy of a program that does nothing, under `name`.
    [[nodiscard]] std::unique_ptr<QProcess> started(const QString &name) const;
    [[nodiscard]] static bool wasTerminated(QProcess &process);

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
    // After exec the process has the name; before, it is still a copy of this one.
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
    QVERIFY(wasTerminated(*daemon)); // so the other one's turn has passed
    QCOMPARE(other->state(), QProcess::Running);
    QCOMPARE(::kill(pid_t(other->processId()), 0), 0);
    other->kill();
    QVERIFY(other->waitForFinished());
    QVERIFY(other->exitCode() == SIGKILL); // ended by this test and nothing before
}

void ProcessesInNamespaceTest::endsProcessWhoseExecutableIsGone()
{
    const auto daemon = started(daemonName);
    QVERIFY(daemon);
    QVERIFY(QFile::remove(mFolder->filePath(daemonName)));
    Processes::endAllNamed(daemonName);
    QVERIFY(wasTerminated(*daemon));
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
