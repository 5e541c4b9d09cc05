// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/realtimekeeper.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

class RealtimeKeeperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void threadThatHasThePriorityRequestsNothing();
    void requestsAgainAfterARefusal();
    void noticesThatThePriorityWasTakenAway();
    void waitsForTheAnswer();
    void pausesGrowUpToALimit();

private:
    std::unique_ptr<RealtimeKeeper> mKeeper;
    std::unique_ptr<QSignalSpy> mFound;
    bool mIsRealTime = false;
    bool mIsGranted = false;
    bool mIsSilent = false; // no request is answered
    int mRequests = 0;
};

void RealtimeKeeperTest::init()
{
    mIsRealTime = mIsGranted = mIsSilent = false;
    mRequests = 0;
    mKeeper =
        std::make_unique<RealtimeKeeper>(RealtimeKeeper::Services{.isRealTime = [this] { return mIsRealTime; },
                                                                  .request =
                                                                      [this](const std::function<void()> &answered) {
                                                                          ++mRequests;
                                                                          mIsRealTime = mIsGranted;
                                                                          if (!mIsSilent)
                                                                              answered();
                                                                      }},
                                         1ms);
    mFound = std::make_unique<QSignalSpy>(mKeeper.get(), &RealtimeKeeper::found);
}

void RealtimeKeeperTest::threadThatHasThePriorityRequestsNothing()
{
    mIsRealTime = true;
    mKeeper->start();
    QCOMPARE(mFound->size(), 1);
    QVERIFY(mFound->first().first().toBool());
    QTRY_VERIFY(mKeeper->nextPause() >= 16ms); // after several checks
    QCOMPARE(mRequests, 0);
    QCOMPARE(mFound->size(), 1);
}

void RealtimeKeeperTest::requestsAgainAfterARefusal()
{
    mKeeper->start();
    QCOMPARE(mFound->size(), 1);
    QVERIFY(!mFound->first().first().toBool());
    QTRY_VERIFY(mRequests >= 3);
    QCOMPARE(mFound->size(), 1);
    mIsGranted = true;
    QTRY_COMPARE(mFound->size(), 2);
    QVERIFY(mFound->last().first().toBool());
}

void RealtimeKeeperTest::noticesThatThePriorityWasTakenAway()
{
    mIsGranted = true;
    mKeeper->start();
    QVERIFY(mFound->first().first().toBool());
    mIsGranted = false;
    mIsRealTime = false;
    QTRY_COMPARE(mFound->size(), 2);
    QVERIFY(!mFound->last().first().toBool());
    QVERIFY(mRequests >= 2);
    mIsGranted = true;
    QTRY_COMPARE(mFound->size(), 3);
    QVERIFY(mFound->last().first().toBool());
}

void RealtimeKeeperTest::waitsForTheAnswer()
{
    mIsSilent = true;
    mKeeper->start();
    QCOMPARE(mRequests, 1);
    QCOMPARE(mFound->size(), 0); // the result of the first request is not known yet
    QCOMPARE(mKeeper->nextPause(), 1ms);
}

void RealtimeKeeperTest::pausesGrowUpToALimit()
{
    mKeeper = std::make_unique<RealtimeKeeper>(
        RealtimeKeeper::Services{.isRealTime = [] { return false; },
                                 .request = [](const std::function<void()> &answered) { answered(); }},
        RealtimeKeeper::longestPause * 2 / 3);
    mKeeper->start();
    QCOMPARE(mKeeper->nextPause(), RealtimeKeeper::longestPause);
}

QTEST_GUILESS_MAIN(RealtimeKeeperTest)
#include "realtimekeepertest.moc"
