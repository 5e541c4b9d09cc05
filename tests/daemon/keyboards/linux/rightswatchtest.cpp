// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/rightswatch.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class RightsWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reportsTheNodesOfTheDaemonAlone_data();
    void reportsTheNodesOfTheDaemonAlone();
    void reportsAnOutputNodeThatAppears();
    void watchesAFolderThatAppears();
    void watchesAFolderThatIsMadeAgain();
    void reportsAMissingFolder();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    void makeNode(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    void changeRights(const QString &name) const
    {
        // One of the two is a change.
        QVERIFY(QFile::setPermissions(path(name), QFile::ReadOwner));
        QVERIFY(QFile::setPermissions(path(name), {}));
    }

    std::unique_ptr<QTemporaryDir> mFolder;
};

void RightsWatchTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
}

void RightsWatchTest::reportsTheNodesOfTheDaemonAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isReported");
    QTest::newRow("event device") << u"input/event3"_s << true;
    QTest::newRow("output device") << u"uinput"_s << true;
    QTest::newRow("mouse") << u"input/mouse0"_s << false;
    QTest::newRow("terminal") << u"tty1"_s << false;
}

void RightsWatchTest::reportsTheNodesOfTheDaemonAlone()
{
    QFETCH(QString, name);
    QFETCH(bool, isReported);
    QVERIFY(QDir(mFolder->path()).mkdir(u"input"_s));
    makeNode(name);
    makeNode(u"input/event9"_s);
    const RightsWatch watch(mFolder->path());
    QSignalSpy changed(&watch, &RightsWatch::changed);
    changeRights(name);
    if (isReported) {
        QTRY_COMPARE(changed.size(), 1); // the changes have arrived together
        return;
    }
    changeRights(u"input/event9"_s);
    QTRY_COMPARE(changed.size(), 1);
    changed.clear();
    changeRights(name);
    QCoreApplication::processEvents(); // inotify events are available at once
    QCOMPARE(changed.size(), 0);
}

void RightsWatchTest::reportsAnOutputNodeThatAppears()
{
    const RightsWatch watch(mFolder->path());
    QSignalSpy changed(&watch, &RightsWatch::changed);
    makeNode(u"uinput"_s);
    QTRY_COMPARE(changed.size(), 1);
}

void RightsWatchTest::watchesAFolderThatAppears()
{
    const RightsWatch watch(mFolder->path());
    QSignalSpy changed(&watch, &RightsWatch::changed);
    QVERIFY(QDir(mFolder->path()).mkdir(u"input"_s));
    QTRY_COMPARE(changed.size(), 1);
    makeNode(u"input/event3"_s);
    changeRights(u"input/event3"_s);
    QTRY_COMPARE(changed.size(), 2);
}

void RightsWatchTest::watchesAFolderThatIsMadeAgain()
{
    QVERIFY(QDir(mFolder->path()).mkdir(u"input"_s));
    const RightsWatch watch(mFolder->path());
    QSignalSpy changed(&watch, &RightsWatch::changed);
    QVERIFY(QDir(path(u"input"_s)).removeRecursively());
    QVERIFY(QDir(mFolder->path()).mkdir(u"input"_s));
    QTRY_COMPARE(changed.size(), 1);
    makeNode(u"input/event3"_s);
    changeRights(u"input/event3"_s);
    QTRY_COMPARE(changed.size(), 2);
}

void RightsWatchTest::reportsAMissingFolder()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot watch .*not noticed"_s));
    const RightsWatch watch(path(u"none"_s));
}

QTEST_GUILESS_MAIN(RightsWatchTest)
#include "rightswatchtest.moc"
