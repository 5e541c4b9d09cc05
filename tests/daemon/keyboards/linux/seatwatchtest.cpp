// SPDX-License-Identifier: MIT
// With a simulated login manager on a private bus.
#include "daemon/keyboards/linux/seatwatch.h"
#include "tests/daemon/keyboards/linux/standinlogin.h"
#include "tests/support/testmain.h"

#include <QDBusConnectionInterface>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

using Presence = SeatWatch::Presence;
Q_DECLARE_METATYPE(QList<StandInLogin::Session>)

namespace {

constexpr uint user = 1000;
constexpr uint otherUser = 1001;
constexpr SeatWatch::Times times{.answer = std::chrono::milliseconds(200), .firstPause = std::chrono::milliseconds(10)};

} // namespace

class SeatWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void knowsWhoIsAtTheSeat_data();
    void knowsWhoIsAtTheSeat();
    void followsTheSwitchToAnotherUserAndBack();
    void followsALogout();
    void otherPropertiesAskNothing();
    void everySeatIsOursWithoutALoginManager();
    void everySeatIsOursWithoutABus();
    void everySeatIsOursIfTheManagerRefuses();
    void keepsTheAnswerWhileTheManagerRestarts();
    void noSeatIsOursWhileTheManagerIsSilent_data();
    void noSeatIsOursWhileTheManagerIsSilent();
    void anEarlierAnswerDoesNotCountWhileTheManagerIsSilent();
    void managerThatEndsWithoutAnAnswerHasAnsweredBefore();

private:
    void useShortTimes() { mWatch = std::make_unique<SeatWatch>(QDBusConnection::sessionBus, user, times); }
    [[nodiscard]] Presence presence() { return mWatch->at(u"seat0"_s); }

    std::unique_ptr<StandInLogin> mLogin;
    std::unique_ptr<SeatWatch> mWatch;
};

void SeatWatchTest::init()
{
    mLogin = std::make_unique<StandInLogin>();
    mWatch = std::make_unique<SeatWatch>(QDBusConnection::sessionBus, user);
}

void SeatWatchTest::cleanup()
{
    mWatch.reset();
    mLogin.reset();
}

void SeatWatchTest::knowsWhoIsAtTheSeat_data()
{
    QTest::addColumn<QList<StandInLogin::Session>>("sessions");
    QTest::addColumn<Presence>("presence");
    using Sessions = QList<StandInLogin::Session>;
    const QString none;
    QTest::newRow("no session") << Sessions{} << Presence::elsewhere;
    QTest::newRow("active") << Sessions{{u"1"_s, user, u"seat0"_s, true}} << Presence::here;
    QTest::newRow("inactive") << Sessions{{u"1"_s, user, u"seat0"_s, false}} << Presence::elsewhere;
    QTest::newRow("another user is active")
        << Sessions{{u"1"_s, user, u"seat0"_s, false}, {u"2"_s, otherUser, u"seat0"_s, true}} << Presence::elsewhere;
    QTest::newRow("active on a terminal beside the desktop")
        << Sessions{{u"1"_s, user, u"seat0"_s, false}, {u"2"_s, user, u"seat0"_s, true}} << Presence::here;
    QTest::newRow("active at another seat") << Sessions{{u"1"_s, user, u"seat1"_s, true}} << Presence::elsewhere;
    QTest::newRow("from the network") << Sessions{{u"1"_s, user, none, true}} << Presence::elsewhere;
}

void SeatWatchTest::knowsWhoIsAtTheSeat()
{
    QFETCH(QList<StandInLogin::Session>, sessions);
    mLogin->set(sessions);
    QSignalSpy changed(mWatch.get(), &SeatWatch::changed);
    QCOMPARE(presence(), Presence::unknown);
    QTRY_COMPARE(changed.size(), 1);
    QTEST(presence(), "presence");
}

void SeatWatchTest::followsTheSwitchToAnotherUserAndBack()
{
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}, {u"2"_s, otherUser, u"seat0"_s, false}});
    (void)presence();
    QTRY_COMPARE(presence(), Presence::here);
    QSignalSpy changed(mWatch.get(), &SeatWatch::changed);
    mLogin->setActive(u"1"_s, false);
    mLogin->setActive(u"2"_s, true);
    QTRY_COMPARE(presence(), Presence::elsewhere);
    mLogin->setActive(u"2"_s, false);
    mLogin->setActive(u"1"_s, true);
    QTRY_COMPARE(presence(), Presence::here);
    QCOMPARE(changed.size(), 2);
}

void SeatWatchTest::followsALogout()
{
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}});
    QTRY_COMPARE(presence(), Presence::here);
    mLogin->set({});
    mLogin->announceSeat(u"seat0"_s);
    QTRY_COMPARE(presence(), Presence::elsewhere);
}

void SeatWatchTest::otherPropertiesAskNothing()
{
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}});
    QTRY_COMPARE(presence(), Presence::here);
    const int questions = mLogin->questions();
    mLogin->announce(u"1"_s, u"IdleHint"_s, true);
    mLogin->setActive(u"1"_s, false);
    QTRY_COMPARE(presence(), Presence::elsewhere);
    QCOMPARE(mLogin->questions(), questions + 1);
}

void SeatWatchTest::everySeatIsOursWithoutALoginManager()
{
    mLogin->unregister();
    QCOMPARE(presence(), Presence::unknown);
    QTRY_COMPARE(presence(), Presence::here);
}

void SeatWatchTest::everySeatIsOursWithoutABus()
{
    mWatch = std::make_unique<SeatWatch>([] { return QDBusConnection(u"none"_s); }, user);
    QCOMPARE(presence(), Presence::here);
}

void SeatWatchTest::everySeatIsOursIfTheManagerRefuses()
{
    mLogin->refuse(true);
    QCOMPARE(presence(), Presence::unknown);
    QTRY_COMPARE(presence(), Presence::here);
}

void SeatWatchTest::keepsTheAnswerWhileTheManagerRestarts()
{
    mLogin->set({{u"1"_s, user, u"seat0"_s, false}});
    QTRY_COMPARE(presence(), Presence::elsewhere);
    QSignalSpy changed(mWatch.get(), &SeatWatch::changed);
    const int questions = mLogin->questions();
    mLogin->unregister();
    mLogin->refuse(true);
    mLogin->registerAgain();
    QTRY_VERIFY(mLogin->questions() > questions);
    QCOMPARE(presence(), Presence::elsewhere);
    mLogin->unregister();
    mLogin->refuse(false);
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}});
    mLogin->registerAgain();
    QTRY_COMPARE(presence(), Presence::here);
    QCOMPARE(changed.size(), 1);
}

void SeatWatchTest::noSeatIsOursWhileTheManagerIsSilent_data()
{
    QTest::addColumn<QString>("method");
    QTest::newRow("sessions") << u"ListSessions"_s;
    QTest::newRow("state of a session") << u"Get"_s;
}

void SeatWatchTest::noSeatIsOursWhileTheManagerIsSilent()
{
    QFETCH(QString, method);
    useShortTimes();
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}});
    mLogin->ignore(method);
    QSignalSpy changed(mWatch.get(), &SeatWatch::changed);
    QCOMPARE(presence(), Presence::unknown);
    QTRY_VERIFY(mWatch->nextPause() >= times.firstPause * 4);
    QVERIFY(mLogin->ignoredCalls() >= 2);
    QCOMPARE(presence(), Presence::unknown);
    QCOMPARE(changed.size(), 0);
    mLogin->ignore({});
    QTRY_COMPARE(presence(), Presence::here);
    QVERIFY(!mWatch->willAskAgain());
    QCOMPARE(mWatch->nextPause(), times.firstPause);
}

void SeatWatchTest::anEarlierAnswerDoesNotCountWhileTheManagerIsSilent()
{
    useShortTimes();
    mLogin->set({{u"1"_s, user, u"seat0"_s, true}});
    QTRY_COMPARE(presence(), Presence::here);
    QSignalSpy changed(mWatch.get(), &SeatWatch::changed);
    mLogin->ignore(u"ListSessions"_s);
    mLogin->setActive(u"1"_s, false);
    QTRY_COMPARE(presence(), Presence::unknown);
    QVERIFY(!changed.isEmpty());
    mLogin->ignore({});
    QTRY_COMPARE(presence(), Presence::elsewhere);
}

void SeatWatchTest::managerThatEndsWithoutAnAnswerHasAnsweredBefore()
{
    useShortTimes();
    mLogin->set({{u"1"_s, user, u"seat0"_s, false}});
    QTRY_COMPARE(presence(), Presence::elsewhere);
    mLogin->ignore(u"ListSessions"_s);
    mLogin->announceSeat(u"seat0"_s);
    QTRY_COMPARE(presence(), Presence::unknown);
    QTRY_VERIFY(!mWatch->willAskAgain()); // the manager ignores another question, and ends before it answers
    const std::chrono::milliseconds pause = mWatch->nextPause();
    mLogin->unregister();
    QTRY_VERIFY(mWatch->nextPause() > pause); // that question has failed
    QTRY_VERIFY(!mWatch->willAskAgain());     // the next one goes to a name without an owner
    QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.freedesktop.login1"_s));
    QCoreApplication::processEvents(); // the bus has answered both calls in order
    QCOMPARE(presence(), Presence::unknown);
    QVERIFY(!mWatch->willAskAgain()); // its registration is awaited
    mLogin->ignore({});
    mLogin->registerAgain();
    QTRY_COMPARE(presence(), Presence::elsewhere);
}

QTEST_GUILESS_MAIN(SeatWatchTest)
#include "seatwatchtest.moc"
