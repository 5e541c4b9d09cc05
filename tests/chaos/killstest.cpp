// SPDX-License-Identifier: MIT
// Kills the daemon at random moments of random changes: before, during and after the calls that change its folder, and
// from outside at any other moment. Half of the kills by the disk are power cuts, which lose unflushed writes. A seed
// makes the run reproducible, because each round has random numbers of its own.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "tests/chaos/changesequence.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/faultydisk.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

class KillsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNothingAcknowledged();

private:
    static constexpr int longestLife = 110;  // places that the disk counts; a change passes about 20
    static constexpr int changesLimit = 500; // in one life; the daemon must be dead before

    void startDaemon(QRandomGenerator &random);
    void checkStoredSettings();
    void checkOldCopies() const;
    void changeUntilKilled(QRandomGenerator &random);
    void sendChange(QRandomGenerator &random);
    void takeReplies();
    void bury();
    [[nodiscard]] qsizetype sentCount() const { return mChanges.size(); }

    FaultyDisk mDisk;
    DaemonProcessFixture mDaemon;
    QList<SettingsOutline> mStates;  // at the start of this life, then after each change that was sent
    QList<RandomChange> mChanges;    // of this life
    QList<Status> mStatuses;         // that the replies must have
    QList<SettingsOutline> mHistory; // the states before this life
    qsizetype mAcknowledged = 0;     // of this life
    std::optional<QVariantMap> mAcknowledgedDocument;
    int mRepliesUntilKill = 0; // by a kill from outside; 0: the disk kills
    int mNumber = 0;           // in the names of changes
    struct
    {
        int kills, fromOutside, atStart, sent, acknowledged, unacknowledgedKept;
    } mFigures{};
};

void KillsTest::startDaemon(QRandomGenerator &random)
{
    mDisk.recover();
    mRepliesUntilKill = 0;
    if (random.bounded(5) == 0) {
        mRepliesUntilKill = random.bounded(1, 12);
    } else {
        mDisk->losesUnflushed = random.bounded(2) == 0;
        mDisk->placesToLive = random.bounded(1, longestLife);
    }
    if (mDaemon.start())
        return;
    // A daemon can die at its start, because it changes the folder when it removes what the one before has left.
    QCOMPARE(mDisk->placesToLive, 0);
    ++mFigures.atStart;
    ++mFigures.kills;
    mDisk.recover();
    QVERIFY(mDaemon.start());
    mRepliesUntilKill = 1;
}

/// Requires that the daemon has started with whole, undamaged settings: those after the last acknowledged change, or
/// after one that was sent later.
void KillsTest::checkStoredSettings()
{
    const QDir folder(mDaemon.settingsFolder());
    QCOMPARE(folder.entryList({u"*.damaged-*"_s, u"*.replaced-*"_s}), QStringList());
    const auto reply = mDaemon.request(Command::readSettings);
    QVERIFY(reply);
    const QVariantMap document = reply->values.value(DaemonProtocol::allDevSettings).toMap();
    const SettingsOutline stored = SettingsOutline::of(document);
    if (mStates.isEmpty()) // the first life
        mStates += stored;
    qsizetype kept = mAcknowledged;
    while (kept < mStates.size() && mStates.at(kept) != stored)
        ++kept;
    QVERIFY2(kept < mStates.size(),
             qPrintable(u"stored: %1\nacknowledged: %2"_s.arg(stored.text(), mStates.at(mAcknowledged).text())));
    if (mAcknowledgedDocument && kept == mAcknowledged)
        QCOMPARE(document, *mAcknowledgedDocument);
    mFigures.unacknowledgedKept += static_cast<int>(kept - mAcknowledged);
    mHistory += mStates.first(kept + 1);
    mStates = {stored};
    mChanges.clear();
    mStatuses.clear();
    mAcknowledged = 0;
    mAcknowledgedDocument.reset();
}

/// Requires that each old copy is a whole document that was once in use.
void KillsTest::checkOldCopies() const
{
    const QDir folder(mDaemon.settingsFolder());
    for (const QString &name : folder.entryList({u"settings.plist.?"_s})) {
        const auto document = PropertyList::readPropertyListFile(folder.filePath(name));
        QVERIFY2(document, qPrintable(name));
        QVERIFY2(mHistory.contains(SettingsOutline::of(*document)), qPrintable(name));
    }
}

void KillsTest::sendChange(QRandomGenerator &random)
{
    const RandomChange change = randomChange(random, ++mNumber);
    SettingsOutline outline = mStates.constLast();
    mStatuses += apply(change, outline);
    mChanges += change;
    mStates += outline;
    mDaemon.send(change.command, change.request);
    ++mFigures.sent;
}

void KillsTest::takeReplies()
{
    for (const DaemonProcessFixture::Reply &reply : std::as_const(mDaemon.replies())) {
        QVERIFY(mAcknowledged < sentCount());
        QCOMPARE(reply.command, static_cast<qint32>(mChanges.at(mAcknowledged).command));
        QCOMPARE(reply.values.value(DaemonProtocol::returnStatus).toInt(),
                 static_cast<int>(mStatuses.at(mAcknowledged)));
        ++mAcknowledged;
        ++mFigures.acknowledged;
        const QVariant document = reply.values.value(DaemonProtocol::returnDictionary);
        mAcknowledgedDocument = document.isValid() ? std::optional(document.toMap()) : std::nullopt;
        if (mAcknowledgedDocument)
            QCOMPARE(SettingsOutline::of(*mAcknowledgedDocument).text(), mStates.at(mAcknowledged).text());
    }
    mDaemon.replies().clear();
}

/// Sends changes, one at a time or a few together, until the daemon is dead.
void KillsTest::changeUntilKilled(QRandomGenerator &random)
{
    mDaemon.replies().clear();
    while (mDaemon.isRunning()) {
        QVERIFY2(sentCount() < changesLimit, "the daemon lives on");
        const int together = random.bounded(2) == 0 ? 1 : random.bounded(2, 6);
        const qsizetype wanted = sentCount() + together;
        for (int count = 0; count < together; ++count)
            sendChange(random);
        QVERIFY(awaitEvents([&] {
            takeReplies();
            if (mRepliesUntilKill > 0 && mAcknowledged >= mRepliesUntilKill)
                return true;
            return mAcknowledged == wanted || !mDaemon.isRunning();
        }));
        if (QTest::currentTestFailed())
            return;
        if (mRepliesUntilKill > 0 && mAcknowledged >= mRepliesUntilKill) {
            mDaemon.kill();
            ++mFigures.fromOutside;
        }
    }
}

/// Waits until the bus knows that the daemon is gone, and takes the replies that it still sent.
void KillsTest::bury()
{
    mDaemon.kill();
    QCoreApplication::processEvents();
    takeReplies();
    ++mFigures.kills;
}

void KillsTest::losesNothingAcknowledged()
{
    const int kills = numberFromEnvironment("KESTRA_CHAOS_KILLS", 220);
    mDisk.prepare(mDaemon.environment(), mDaemon.settingsFolder());
    for (quint32 round = 0; mFigures.kills < kills; ++round) {
        const std::array<quint32, 2> seed{chaosSeed(), round};
        QRandomGenerator random(seed.data(), 2);
        mNumber = static_cast<int>(round) * changesLimit;
        startDaemon(random);
        if (!QTest::currentTestFailed())
            checkStoredSettings();
        if (!QTest::currentTestFailed())
            checkOldCopies();
        if (!QTest::currentTestFailed())
            changeUntilKilled(random);
        if (!QTest::currentTestFailed())
            bury();
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(u"KESTRA_CHAOS_SEED=%1, round %2"_s.arg(chaosSeed()).arg(round)));
    }
    mDisk.recover();
    QVERIFY(mDaemon.start());
    checkStoredSettings();
    // The next change finishes the save that the last kill may have interrupted.
    const QVariantMap settings{{SettingsKeys::profileName, u"last"_s}};
    QVERIFY(mDaemon.request(Command::updateProfile,
                            {{DaemonProtocol::profileId, 0}, {DaemonProtocol::deviceSettingsDictionary, settings}}));
    QCOMPARE(QDir(mDaemon.settingsFolder()).entryList({u"settings.plist.?"_s}),
             QStringList({u"settings.plist.1"_s, u"settings.plist.2"_s, u"settings.plist.3"_s}));
    qInfo("seed %u: %d kills (%d by the disk, %d of them at a start; %d from outside), %d changes sent, %d "
          "acknowledged, %d kept without being acknowledged",
          chaosSeed(), mFigures.kills, mDisk.deathCount(), mFigures.atStart, mFigures.fromOutside, mFigures.sent,
          mFigures.acknowledged, mFigures.unacknowledgedKept);
    QCOMPARE(mDisk.deathCount() + mFigures.fromOutside, mFigures.kills);
    QVERIFY(mFigures.acknowledged >= kills);
    if (kills < 200)
        return;
    for (const DiskCall call : {DiskCall::open, DiskCall::write, DiskCall::flush, DiskCall::link, DiskCall::rename}) {
        for (const DeathPlace place : {DeathPlace::before, DeathPlace::after})
            QVERIFY2(mDisk.deathCount(call, place) > 0, "a place in which it was never killed");
    }
    QVERIFY(mDisk.deathCount(DiskCall::write, DeathPlace::within) > 0);
}

QTEST_GUILESS_MAIN(KillsTest)
#include "killstest.moc"
