// SPDX-License-Identifier: MIT
// A full, read-only, broken or slow disk under the daemon of an open window and another client. The daemon refuses
// changes that it cannot write, and they change nothing. Once the disk recovers, everything works again without a
// restart.
#include "base/settingskeys.h"
#include "base/status.h"
#include "daemonlink/daemontransport.h"
#include "keys/keybutton.h"
#include "platform/popupbutton.h"
#include "tests/app/hubfixture.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/faultydisk.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DaemonProtocol::Command;

namespace {

constexpr int disablePosition = 5;
constexpr int defaultPosition = 0;
constexpr int disabledCommand = 20;
const QString keyA = u"4"_s;
const QString keyS = u"22"_s;
const QString keyD = u"7"_s;

} // namespace

class DiskFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void refusesChangesThatItCannotWrite_data();
    void refusesChangesThatItCannotWrite();
    void repliesOnlyWhenTheChangeIsOnTheDisk();
    void survivesAKillWhileTheDiskIsBusy();
    void sendsNoLateRepliesAfterASlowWrite();
    void endsWithAMessageOnAReadOnlyDisk();

private:
    /// Waits until the window shows the daemon's profiles. Otherwise it might still read from a daemon that can no
    /// longer reply, and wait for the reply.
    void awaitWindow();
    /// Chooses an assignment of the key in the window.
    void choose(const char *key, int position);
    void startRename(const QString &name);
    /// Renames the first profile as another client. Returns the status of the reply, -1 without a reply.
    int rename(const QString &name);
    [[nodiscard]] QVariantMap document();
    [[nodiscard]] QString name();
    [[nodiscard]] bool isDisabled(const QString &usage);
    /// The files of the state folder, with their contents.
    [[nodiscard]] QMap<QString, QByteArray> files() const;

    HubResources mResources;
    std::unique_ptr<FaultyDisk> mDisk;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void DiskFaultsTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDisk = std::make_unique<FaultyDisk>();
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mDisk->prepare(mDaemon->environment(), mDaemon->settingsFolder());
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    mHub->controller->initializeDevice();
}

void DiskFaultsTest::cleanup()
{
    mHub.reset();
    mDisk->recover();
    mDaemon.reset();
    mDisk.reset();
}

void DiskFaultsTest::awaitWindow()
{
    QTRY_COMPARE(mHub->controller->profilesArray(), document().value(SettingsKeys::profiles).toList());
}

void DiskFaultsTest::choose(const char *key, int position)
{
    QTest::mouseClick(mHub->find<QWidget>(key), Qt::LeftButton);
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(position)->trigger();
}

void DiskFaultsTest::startRename(const QString &name)
{
    const QVariantMap settings{{SettingsKeys::profileName, name}};
    mDaemon->send(Command::updateProfile,
                  {{DaemonProtocol::profileId, 0}, {DaemonProtocol::deviceSettingsDictionary, settings}});
}

int DiskFaultsTest::rename(const QString &name)
{
    mDaemon->replies().clear();
    startRename(name);
    if (!awaitEvents([this] { return !mDaemon->replies().isEmpty(); }))
        return -1;
    const DaemonProcessFixture::Reply reply = mDaemon->replies().takeFirst();
    return reply.command == static_cast<qint32>(Command::updateProfile)
               ? reply.values.value(DaemonProtocol::returnStatus).toInt()
               : -1;
}

QVariantMap DiskFaultsTest::document()
{
    const auto reply = mDaemon->request(Command::readSettings);
    return reply ? reply->values.value(DaemonProtocol::allDevSettings).toMap() : QVariantMap();
}

QString DiskFaultsTest::name()
{
    const QVariantList profiles = document().value(SettingsKeys::profiles).toList();
    return profiles.value(0).toMap().value(SettingsKeys::profileName).toString();
}

bool DiskFaultsTest::isDisabled(const QString &usage)
{
    const QVariantMap profile = document().value(SettingsKeys::profiles).toList().value(0).toMap();
    const QVariantMap entry = profile.value(SettingsKeys::keys).toMap().value(usage).toMap();
    return entry.value(u"command"_s).toInt() == disabledCommand;
}

QMap<QString, QByteArray> DiskFaultsTest::files() const
{
    QMap<QString, QByteArray> result;
    const QDir folder(mDaemon->settingsFolder());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        QFile file(folder.filePath(name));
        result.insert(name, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable"));
    }
    return result;
}

void DiskFaultsTest::refusesChangesThatItCannotWrite_data()
{
    constexpr quint32 everyChange = maskOf(DiskCall::open) | maskOf(DiskCall::write) | maskOf(DiskCall::link)
                                    | maskOf(DiskCall::rename) | maskOf(DiskCall::remove);
    QTest::addColumn<quint32>("calls");
    QTest::addColumn<int>("failure");
    QTest::addColumn<int>("room"); // bytes; -1: unlimited
    QTest::addColumn<bool>("isOnlyForFolders");
    QTest::newRow("full disk") << 0U << 0 << 0 << false;
    QTest::newRow("disk that fills up in the middle") << 0U << 0 << 1000 << false;
    QTest::newRow("read-only disk") << everyChange << EROFS << -1 << false;
    QTest::newRow("no right to write") << maskOf(DiskCall::open) << EACCES << -1 << false;
    QTest::newRow("writing fails") << maskOf(DiskCall::write) << EIO << -1 << false;
    QTest::newRow("fsync of the file fails") << maskOf(DiskCall::flush) << EIO << -1 << false;
    QTest::newRow("fsync reports a full disk") << maskOf(DiskCall::flush) << ENOSPC << -1 << false;
    QTest::newRow("fsync of the folder fails") << maskOf(DiskCall::flush) << EIO << -1 << true;
    QTest::newRow("renaming fails") << maskOf(DiskCall::rename) << EIO << -1 << false;
    QTest::newRow("linking fails") << maskOf(DiskCall::link) << EDQUOT << -1 << false;
}

void DiskFaultsTest::refusesChangesThatItCannotWrite()
{
    QFETCH(quint32, calls);
    QFETCH(int, failure);
    QFETCH(int, room);
    QFETCH(bool, isOnlyForFolders);
    for (const QString &name : {u"one"_s, u"two"_s, u"three"_s})
        QCOMPARE(rename(name), static_cast<int>(Status::ok));
    choose("mA", disablePosition);
    awaitWindow();
    const QVariantMap before = document();
    const QMap<QString, QByteArray> filesBefore = files();

    FaultyDisk &disk = *mDisk;
    disk->failure = failure;
    disk->failsForFolders = isOnlyForFolders;
    disk->room = room;
    disk->isFull = room >= 0;
    disk->failingCalls = calls;
    for (int attempt = 0; attempt < 3; ++attempt)
        QCOMPARE(rename(u"lost"_s), static_cast<int>(Status::notSaved));
    choose("mA", defaultPosition);
    QCOMPARE(mHub->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), disablePosition); // undone
    QCOMPARE(document(), before);
    QCOMPARE(mHub->controller->profilesArray(), before.value(SettingsKeys::profiles).toList());
    const QMap<QString, QByteArray> filesNow = files();
    QCOMPARE(filesNow.value(u"settings.plist"_s), filesBefore.value(u"settings.plist"_s));
    for (const auto &[name, content] : filesBefore.asKeyValueRange())
        QVERIFY2(filesNow.values().contains(content), qPrintable(name)); // the old documents remain as well

    disk.recover();
    QCOMPARE(rename(u"four"_s), static_cast<int>(Status::ok));
    choose("mS", disablePosition);
    QCOMPARE(mHub->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), disablePosition);
    awaitWindow();
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    QCOMPARE(name(), u"four"_s);
    QVERIFY(isDisabled(keyA));
    QVERIFY(isDisabled(keyS));
    awaitWindow();
    QVERIFY(mHub->find<QWidget>("mA")->isEnabled());
    QCOMPARE(QDir(mDaemon->settingsFolder()).entryList({u"*.damaged-*"_s, u"*.replaced-*"_s}), QStringList());
}

void DiskFaultsTest::repliesOnlyWhenTheChangeIsOnTheDisk()
{
    FaultyDisk &disk = *mDisk;
    QCOMPARE(rename(u"one"_s), static_cast<int>(Status::ok));
    // A change has two flushes: one of the file, one of the folder.
    for (const bool isFolder : {false, true}) {
        const QString name = isFolder ? u"three"_s : u"two"_s;
        awaitWindow();
        mDaemon->replies().clear();
        disk->failsForFolders = isFolder; // no flush fails; those of files are then not held
        disk->holdsFlush = true;
        startRename(name);
        QVERIFY(awaitEvents([&] { return disk->heldFlushes == 1; }));
        // Once the bus has answered, everything that the daemon sent before the flush has arrived.
        QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName));
        QCoreApplication::processEvents();
        QVERIFY(mDaemon->replies().isEmpty());
        disk.recover();
        QVERIFY(awaitEvents([&] { return !mDaemon->replies().isEmpty(); }));
        QCOMPARE(mDaemon->replies().first().values.value(DaemonProtocol::returnStatus), QVariant(0));
        awaitWindow();
        mDaemon->kill();
        QVERIFY(mDaemon->start());
        QCOMPARE(this->name(), name);
    }
}

void DiskFaultsTest::survivesAKillWhileTheDiskIsBusy()
{
    FaultyDisk &disk = *mDisk;
    QCOMPARE(rename(u"acknowledged"_s), static_cast<int>(Status::ok));
    awaitWindow();
    mDaemon->replies().clear();
    disk->holdsFlush = true;
    startRename(u"on its way"_s);
    QVERIFY(awaitEvents([&] { return disk->heldFlushes == 1; }));
    mDaemon->kill();
    disk.recover();
    QVERIFY(mDaemon->start());
    QVERIFY(mDaemon->replies().isEmpty());
    QCOMPARE(name(), u"acknowledged"_s);
    awaitWindow();
    choose("mA", disablePosition);
    QVERIFY(isDisabled(keyA));
}

// The clients stop waiting. The daemon sends them nothing that they would take for the reply to their next request, and
// makes the window read the outcome of its change.
void DiskFaultsTest::sendsNoLateRepliesAfterASlowWrite()
{
    constexpr std::int64_t longTimeMs = 8000;
    FaultyDisk &disk = *mDisk;
    QCOMPARE(rename(u"one"_s), static_cast<int>(Status::ok));
    awaitWindow();
    mDaemon->replies().clear();
    setReplyPollInterval(1ms);
    disk->holdsFlush = true;
    choose("mA", disablePosition); // returns when the window stops waiting
    QCOMPARE(disk->heldFlushes, 1);
    startRename(u"obeyed late"_s);
    QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName)); // the bus has delivered it
    setReplyPollInterval(replyPollInterval);
    disk->clockAheadMs = longTimeMs;
    // The request port takes the leap of the clock for a standstill. Messages are new again after its answer to this
    // one.
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    QVERIFY(port->sendRequest(static_cast<qint32>(Command::readSettings), {}, 20s, 20s));
    disk.recover();
    QTRY_VERIFY(mDaemon->log().contains("too late for a reply to request 6 of \"KeyboardConfiguratorReplyPort\""));
    QCOMPARE(name(), u"obeyed late"_s);
    QVERIFY(mDaemon->replies().isEmpty());
    awaitWindow();
    QVERIFY(isDisabled(keyA));
    // From now on, each reply belongs to the latest request.
    choose("mS", disablePosition);
    choose("mD", disablePosition);
    for (const QString &key : {keyA, keyS, keyD})
        QVERIFY2(isDisabled(key), qPrintable(key));
    QCOMPARE(rename(u"in time"_s), static_cast<int>(Status::ok));
}

void DiskFaultsTest::endsWithAMessageOnAReadOnlyDisk()
{
    FaultyDisk &disk = *mDisk;
    QCOMPARE(rename(u"kept"_s), static_cast<int>(Status::ok));
    awaitWindow();
    mDaemon->kill();
    disk->failure = EROFS;
    disk->failingCalls = maskOf(DiskCall::open);
    QVERIFY(!mDaemon->start());
    QVERIFY2(mDaemon->log().contains("quill-kestra"), mDaemon->log().constData());
    disk.recover();
    QVERIFY(mDaemon->start());
    QCOMPARE(name(), u"kept"_s);
    QTRY_VERIFY(mHub->find<QWidget>("mA")->isEnabled());
    awaitWindow();
}

QTEST_MAIN(DiskFaultsTest)
#include "diskfaultstest.moc"
