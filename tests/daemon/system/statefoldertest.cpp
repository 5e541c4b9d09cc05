// SPDX-License-Identifier: MIT
#include "daemon/system/statefolder.h"
#include "tests/support/filelockfailure.h"
#include "tests/support/filemode.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <latch>
#include <optional>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr uid_t anotherUser = 65534;

} // namespace

using Opened = Result<void, StateFolder::OpenError>;
using Cause = StateFolder::OpenError::Cause;

class StateFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void isCreatedForTheUserOnly();
    void reportsThatItCannotBeCreated();
    void isUsedByOneDaemonOnly();
    void isUsedByOneOfManyThatCreateIt();
    void impossibleLockIsReported();
    void interruptedLockIsTriedAgain();
    void removedLockDoesNotCount_data();
    void removedLockDoesNotCount();
    void distinguishesTheLockOfAnotherDaemon();
    void filesAreMadePrivate_data();
    void filesAreMadePrivate();
    void otherThanRegularFilesStayTheSame();
    void linksAreNotMadePrivate();
    void folderThatIsALinkIsUsed();
    void filesOfOthersAreNotMadePrivate();
    void folderOfAnotherUserIsUsed();
    void defaultPathFollowsTheEnvironment_data();
    void defaultPathFollowsTheEnvironment();

private:
    static bool hasFailed(const Opened &opened, Cause cause) { return !opened && opened.error().cause == cause; }

    std::optional<QTemporaryDir> mTemporary;
    QString mPath;
};

void StateFolderTest::init()
{
    mTemporary.emplace();
    mPath = mTemporary->filePath(u"state/quill-kestra"_s);
}

void StateFolderTest::isCreatedForTheUserOnly()
{
    const mode_t before = ::umask(0);
    StateFolder folder(mPath);
    const Opened opened = folder.open();
    ::umask(before);
    QVERIFY(opened);
    QVERIFY(folder.isLocked());
    QCOMPARE(modeOf(mPath), 0700);
    QCOMPARE(modeOf(folder.filePath(u"lock"_s)), 0600);
}

void StateFolderTest::reportsThatItCannotBeCreated()
{
    writeFile(mTemporary->filePath(u"file"_s), "in the way");
    for (const QString &name : {u"file"_s, u"file/below"_s}) {
        StateFolder folder(mTemporary->filePath(name));
        const Opened opened = folder.open();
        QVERIFY(hasFailed(opened, Cause::unusable));
        QVERIFY(opened.error().message.contains(folder.path()));
        QVERIFY(!folder.isLocked());
    }
}

void StateFolderTest::isUsedByOneDaemonOnly()
{
    {
        StateFolder first(mPath);
        QVERIFY(first.open());
        StateFolder second(mPath);
        const Opened opened = second.open();
        QVERIFY(hasFailed(opened, Cause::inUse));
        QVERIFY(opened.error().message.contains(mPath));
        QVERIFY(!second.isLocked());
        QVERIFY(first.isLocked());
    }
    StateFolder third(mPath);
    QVERIFY(third.open());
}

// A session may start the daemon twice at the same time.
void StateFolderTest::isUsedByOneOfManyThatCreateIt()
{
    constexpr int count = 4;
    for (int round = 0; round < 50; ++round) {
        const QString path = mTemporary->filePath(u"%1/state/quill-kestra"_s.arg(round));
        std::array<std::optional<StateFolder>, count> folders; // keep their locks until all have tried
        std::array<Opened, count> results;
        std::latch start(count);
        {
            std::vector<std::jthread> daemons;
            for (int index = 0; index < count; ++index) {
                daemons.emplace_back([&, index] {
                    folders.at(index).emplace(path);
                    start.arrive_and_wait();
                    results.at(index) = folders.at(index)->open();
                });
            }
        }
        QCOMPARE(std::ranges::count_if(results, &Opened::operator bool), 1);
        QCOMPARE(std::ranges::count_if(results, [](const Opened &result) { return hasFailed(result, Cause::inUse); }),
                 count - 1);
    }
}

void StateFolderTest::impossibleLockIsReported()
{
    StateFolder folder(mPath);
    Opened opened;
    {
        const FileLockFailure noLocks({ENOLCK});
        opened = folder.open();
        QCOMPARE(noLocks.left(), 0);
    }
    QVERIFY(hasFailed(opened, Cause::unusable));
    QVERIFY(opened.error().message.contains(folder.filePath(u"lock"_s)));
    QVERIFY(opened.error().message.contains(QString::fromLocal8Bit(std::strerror(ENOLCK))));
    QVERIFY(!folder.isLocked());
}

void StateFolderTest::interruptedLockIsTriedAgain()
{
    const FileLockFailure signal({EINTR, EINTR});
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QCOMPARE(signal.left(), 0);
}

void StateFolderTest::removedLockDoesNotCount_data()
{
    QTest::addColumn<QString>("removed");
    QTest::newRow("the lock") << u"state/quill-kestra/lock"_s;
    QTest::newRow("the folder") << u"state/quill-kestra"_s;
    QTest::newRow("the folder around it") << u"state"_s;
}

void StateFolderTest::removedLockDoesNotCount()
{
    QFETCH(QString, removed);
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    const QString path = mTemporary->filePath(removed);
    QVERIFY(QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path));
    QVERIFY(!folder.isLocked());
    QVERIFY(folder.open());
    QVERIFY(folder.isLocked());
    StateFolder second(mPath);
    QVERIFY(hasFailed(second.open(), Cause::inUse));
}

void StateFolderTest::distinguishesTheLockOfAnotherDaemon()
{
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QVERIFY(QDir(mPath).removeRecursively());
    StateFolder second(mPath);
    QVERIFY(second.open());
    QVERIFY(!folder.isLocked());
    QVERIFY(hasFailed(folder.open(), Cause::inUse));
    QVERIFY(second.isLocked());
}

void StateFolderTest::filesAreMadePrivate_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {0644, 0666, 0755, 0400})
        QTest::addRow("%o", mode) << mode;
}

void StateFolderTest::filesAreMadePrivate()
{
    QFETCH(int, mode);
    const QStringList names{u"settings.plist"_s, u"settings.plist.damaged-20250101T000000Z"_s, u".hidden"_s, u"lock"_s};
    for (const QString &name : names)
        QVERIFY(setMode(writeFile(mPath + u'/' + name, "kept"), mode_t(mode)));
    QVERIFY(setMode(mPath, 0755));
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QCOMPARE(modeOf(mPath), 0700);
    for (const QString &name : names)
        QCOMPARE(modeOf(folder.filePath(name)), 0600);
}

void StateFolderTest::otherThanRegularFilesStayTheSame()
{
    const QString inner = mPath + u"/inner"_s;
    const QString pipe = mPath + u"/pipe"_s;
    QVERIFY(QDir().mkpath(inner) && setMode(inner, 0755));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(setMode(pipe, 0644));
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QCOMPARE(modeOf(inner), 0755);
    QCOMPARE(modeOf(pipe), 0644);
}

void StateFolderTest::linksAreNotMadePrivate()
{
    const QString outside = writeFile(mTemporary->filePath(u"outside"_s), "not the daemon's");
    QVERIFY(setMode(outside, 0644));
    QVERIFY(QDir().mkpath(mPath) && QFile::link(outside, mPath + u"/notes"_s));
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QCOMPARE(modeOf(outside), 0644);
}

void StateFolderTest::folderThatIsALinkIsUsed()
{
    const QString target = mTemporary->filePath(u"target"_s);
    QVERIFY(QDir().mkpath(target) && setMode(target, 0755));
    QVERIFY(QDir().mkpath(QFileInfo(mPath).path()) && QFile::link(target, mPath));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make .*quill-kestra private"_s));
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QVERIFY(folder.isLocked());
    QCOMPARE(modeOf(target), 0755);
}

void StateFolderTest::filesOfOthersAreNotMadePrivate()
{
    if (::geteuid() != 0)
        QSKIP("only root can give a file to another user");
    const QString path = writeFile(mPath + u"/notes"_s, "another user's");
    QVERIFY(setMode(path, 0644));
    QCOMPARE(::chown(QFile::encodeName(path).constData(), anotherUser, anotherUser), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make .*notes private: .*another user"_s));
    StateFolder folder(mPath);
    QVERIFY(folder.open());
    QCOMPARE(modeOf(path), 0644);
}

void StateFolderTest::folderOfAnotherUserIsUsed()
{
    if (::geteuid() != 0)
        QSKIP("the folder must be another user's");
    const QString path = writeFile(mPath + u"/settings.plist"_s, "root's");
    QVERIFY(setMode(mTemporary->path(), 0777) && setMode(QFileInfo(mPath).path(), 0777) && setMode(mPath, 0777)
            && setMode(path, 0644));
    const QString outcome = asOrdinaryUser([this] {
        StateFolder folder(mPath);
        const Opened opened = folder.open();
        return opened ? u"open"_s : opened.error().message;
    });
    QCOMPARE(outcome, u"open"_s);
    QCOMPARE(modeOf(mPath), 0777);
    QCOMPARE(modeOf(path), 0644);
}

void StateFolderTest::defaultPathFollowsTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("stateHome");
    QTest::addColumn<QString>("path");
    QTest::newRow("set") << QByteArray("/somewhere/state") << u"/somewhere/state/quill-kestra"_s;
    QTest::newRow("not set") << QByteArray() << QDir::home().filePath(u".local/state/quill-kestra"_s);
    QTest::newRow("relative") << QByteArray("state") << QDir::home().filePath(u".local/state/quill-kestra"_s);
}

void StateFolderTest::defaultPathFollowsTheEnvironment()
{
    QFETCH(QByteArray, stateHome);
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", stateHome);
    const QString path = StateFolder::defaultPath();
    qputenv("XDG_STATE_HOME", before);
    QTEST(path, "path");
}

QTEST_GUILESS_MAIN(StateFolderTest)
#include "statefoldertest.moc"
