// SPDX-License-Identifier: MIT
// The daemon, the window, or both are stopped (SIGSTOP), as in a suspended session, while the window and another client
// make changes. Afterwards, every change that was sent is stored once, no client takes a late reply for another, and
// the window shows the stored settings. Meanwhile, hours may pass by the daemon's clock.
#include "base/settingskeys.h"
#include "platform/distributednotificationcenter.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/faultydisk.h"
#include "tests/chaos/windowfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

enum Who { daemonAlone = 1, windowAlone = 2, both = 3 };

const QByteArray disable = " 5";
const QByteArray shortPatience = "patience 500";
const QByteArray usualPatience = "patience 6000";
constexpr int disabledCommand = 20;

struct Key
{
    const char *name;
    const char *usage;
};

constexpr std::array keys{Key{"A", "4"}, Key{"S", "22"}, Key{"D", "7"}, Key{"F", "9"}};

} // namespace

class StandstillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void losesNothing_data();
    void losesNothing();
    void windowReadsAgainAfterALateReading();
    void daemonIsKilledWhileTheWindowIsStopped();

private:
    /// Adds a macro as another client; does not wait.
    void sendMacro();
    void checkMacros(const QVariantMap &document) const;
    /// Continues the daemon and waits until it treats messages as new. Until the bus answers its call, it treats them
    /// as old.
    void resumeDaemon();
    [[nodiscard]] QVariantMap document();
    [[nodiscard]] static bool isDisabled(const QVariantMap &document, const Key &key);
    /// Waits until the window shows the daemon's document.
    void awaitWindow();

    std::unique_ptr<FaultyDisk> mDisk; // for its clock
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<WindowFixture> mWindow;
    QStringList mSent; // the names of the macros
};

void StandstillTest::init()
{
    mSent.clear();
    mDisk = std::make_unique<FaultyDisk>();
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mDisk->prepare(mDaemon->environment(), mDaemon->settingsFolder());
    QVERIFY(mDaemon->start());
    mWindow = std::make_unique<WindowFixture>();
    QVERIFY(mWindow->start(QProcessEnvironment::systemEnvironment()));
}

void StandstillTest::cleanup()
{
    mWindow.reset();
    mDaemon.reset();
    mDisk.reset();
}

void StandstillTest::sendMacro()
{
    mSent += u"macro %1"_s.arg(mSent.size());
    const QVariantMap macro{{SettingsKeys::macroName, mSent.constLast()},
                            {SettingsKeys::delay, 0},
                            {SettingsKeys::sequence, QVariantMap()}};
    mDaemon->send(Command::addMacro, {{DaemonProtocol::macroContents, macro}});
}

void StandstillTest::resumeDaemon()
{
    mDaemon->resume();
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    const auto limit = std::chrono::seconds(20);
    QVERIFY(port->sendRequest(static_cast<qint32>(Command::readSettings), {}, limit, limit));
}

QVariantMap StandstillTest::document()
{
    const auto reply = mDaemon->request(Command::readSettings);
    return reply ? reply->values.value(DaemonProtocol::allDevSettings).toMap() : QVariantMap();
}

bool StandstillTest::isDisabled(const QVariantMap &document, const Key &key)
{
    const QVariantMap profile = document.value(SettingsKeys::profiles).toList().value(0).toMap();
    const QVariantMap entry = profile.value(SettingsKeys::keys).toMap().value(QString::fromLatin1(key.usage)).toMap();
    return entry.value(u"command"_s).toInt() == disabledCommand;
}

void StandstillTest::checkMacros(const QVariantMap &document) const
{
    QStringList stored;
    for (const QVariant &macro : document.value(SettingsKeys::macros).toList())
        stored += macro.toMap().value(SettingsKeys::macroName).toString();
    QCOMPARE(stored, mSent);
}

void StandstillTest::awaitWindow()
{
    QVERIFY(awaitEvents([this] { return mWindow->shows(document()); }));
}

void StandstillTest::losesNothing_data()
{
    QTest::addColumn<int>("who");
    QTest::addColumn<int>("hours");
    QTest::addColumn<bool>("isDaemonFirst"); // to continue
    QTest::addColumn<int>("changes");
    QTest::addColumn<bool>("isWindowChanging"); // before the other client does
    QTest::newRow("daemon") << int(daemonAlone) << 0 << true << 3 << true;
    QTest::newRow("window") << int(windowAlone) << 0 << true << 3 << false;
    QTest::newRow("both, the daemon first") << int(both) << 8 << true << 3 << true;
    QTest::newRow("both, the window first") << int(both) << 8 << false << 3 << true;
    const int rounds = numberFromEnvironment("KESTRA_CHAOS_ROUNDS", 8);
    QRandomGenerator random(chaosSeed());
    for (int round = 0; round < rounds; ++round) {
        const int who = random.bounded(1, 4);
        const int hours = random.bounded(3);
        const bool isDaemonFirst = random.bounded(2) == 0;
        const int changes = random.bounded(6);
        const bool isWindowChanging = random.bounded(2) == 0;
        QTest::addRow("seed %u, round %d", chaosSeed(), round)
            << who << hours << isDaemonFirst << changes << isWindowChanging;
    }
}

void StandstillTest::losesNothing()
{
    QFETCH(int, who);
    QFETCH(int, hours);
    QFETCH(bool, isDaemonFirst);
    QFETCH(int, changes);
    QFETCH(bool, isWindowChanging);
    const bool isDaemonStopped = who & daemonAlone;
    awaitWindow();
    // The patience is short only for requests without a reply: the daemon relies on clients that wait for 6 s.
    if (isDaemonStopped)
        QCOMPARE(mWindow->ask(shortPatience), "done");
    if (isDaemonStopped)
        mDaemon->stop();
    if (isWindowChanging)
        mWindow->send("choose A" + disable);
    // A window that waits for the stopped daemon is itself stopped meanwhile, or gives up.
    if (isWindowChanging && who == daemonAlone)
        QCOMPARE(mWindow->answer(), "done");
    if (who == daemonAlone)
        QCOMPARE(mWindow->ask(usualPatience), "done");
    if (who & windowAlone)
        mWindow->stop();
    mDaemon->replies().clear();
    for (int change = 0; change < changes; ++change)
        sendMacro();
    QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName)); // the bus has delivered them
    if (who == windowAlone)
        QVERIFY(awaitEvents([&] { return mDaemon->replies().size() == changes; }));
    (*mDisk)->clockAheadMs += std::int64_t(hours) * 3'600'000;

    if (isDaemonFirst)
        mDaemon->resume();
    mWindow->resume();
    resumeDaemon();
    if (isWindowChanging && who != daemonAlone)
        QCOMPARE(mWindow->answer(), "done");
    QCOMPARE(mWindow->ask(usualPatience), "done");
    // The daemon carries out the requests that waited during its standstill, and replies to none.
    const QVariantMap after = document();
    checkMacros(after);
    if (isDaemonStopped)
        QVERIFY(mDaemon->replies().isEmpty());
    if (isWindowChanging && who == daemonAlone)
        QVERIFY(isDisabled(after, keys[0]));
    awaitWindow();
    // From now on, each reply belongs to the latest request.
    for (const Key &key : keys) {
        QCOMPARE(mWindow->ask(QByteArray("choose ") + key.name + disable), "done");
        QVERIFY(isDisabled(document(), key));
    }
    sendMacro();
    QVERIFY(awaitEvents([this] { return !mDaemon->replies().isEmpty(); }));
    QCOMPARE(mDaemon->replies().constLast().values.value(DaemonProtocol::returnStatus), QVariant(0));
    awaitWindow();
    const QVariantMap last = document();
    checkMacros(last);
    for (const Key &key : keys)
        QVERIFY(isDisabled(last, key));
}

// The window receives a notification of a change. The daemon is stopped before it replies to the reading that follows.
void StandstillTest::windowReadsAgainAfterALateReading()
{
    awaitWindow();
    QCOMPARE(mWindow->ask(shortPatience), "done");
    QObject observer;
    bool isTold = false;
    DistributedNotificationCenter::defaultCenter().addObserver(&observer, DaemonProtocol::profileUpdated,
                                                               [&](const DistributedNotification &) { isTold = true; });
    mWindow->stop();
    sendMacro();
    QVERIFY(awaitEvents([&] { return isTold; }));
    mDaemon->stop();
    mWindow->resume();
    QVERIFY(awaitEvents([this] { return mWindow->show().value(u"updates"_s).toInt() > 0; })); // it has stopped waiting
    QCOMPARE(mWindow->ask(usualPatience), "done");
    resumeDaemon();
    QVERIFY(awaitEvents([this] {
        return mDaemon->log().contains("too late for a reply to request 4 of \"KeyboardConfiguratorReplyPort\"");
    }));
    awaitWindow();
    checkMacros(document());
}

void StandstillTest::daemonIsKilledWhileTheWindowIsStopped()
{
    mWindow->stop();
    sendMacro();
    QVERIFY(awaitEvents([this] { return !mDaemon->replies().isEmpty(); }));
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    sendMacro();
    QVERIFY(awaitEvents([this] { return mDaemon->replies().size() == 2; }));
    mWindow->resume();
    awaitWindow();
    checkMacros(document());
    QCOMPARE(mWindow->ask("choose A" + disable), "done");
    QVERIFY(isDisabled(document(), keys[0]));
}

QTEST_GUILESS_MAIN(StandstillTest)
#include "standstilltest.moc"
