// SPDX-License-Identifier: MIT
// Notifications from one connection of a real bus to another.
#include "platform/distributednotificationcenter.h"
#include "base/propertylist.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString name = u"Device Attached 271"_s;
const QString otherName = u"Device Removed 271"_s;

QDBusMessage rawSignal(const QVariantList &arguments)
{
    QDBusMessage signal = QDBusMessage::createSignal(u"/DistributedNotificationCenter"_s,
                                                     u"org.quillkestra.DistributedNotificationCenter"_s, u"Posted"_s);
    signal.setArguments(arguments);
    return signal;
}

/// Listens on the wire like any other program on the bus.
class WireListener : public QObject
{
    Q_OBJECT

public:
    WireListener()
    {
        QDBusConnection::sessionBus().connect(QString(), u"/DistributedNotificationCenter"_s,
                                              u"org.quillkestra.DistributedNotificationCenter"_s, u"Posted"_s, this,
                                              SIGNAL(received(QDBusMessage)));
    }

Q_SIGNALS:
    void received(const QDBusMessage &message);
};

} // namespace

class DistributedNotificationCenterTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void deliversNameAndUserInfo();
    void deliversToThePosterItself();
    void absentUserInfoIsEmptyArrayOnTheWire();
    void userInfoWithoutPropertyListFormIsPostedAsNone();
    void tooLargeUserInfoIsPostedAsNone();
    void undecodableUserInfoIsEmpty_data();
    void undecodableUserInfoIsEmpty();
    void ignoresSignalsOfOtherShape_data();
    void ignoresSignalsOfOtherShape();
    void deliversOnTheMainThread();
    void observerAddedTwiceIsCalledTwice();
    void observersAreCalledInTheOrderTheyWereAdded();
    void removalEndsEveryObservationOfThatNameOnly();
    void removalLeavesOtherObserversAlone();
    void removingAnUnknownObservationDoesNothing();
    void destroyedObserverIsNotCalled();
    void observerMayRemoveAndAddItselfInItsHandler();
    void observationAddedInHandlerReceivesTheNextOne();
    void observationRemovedInHandlerOfAnotherIsNotCalled();
    void observerMayBeDestroyedInItsHandler();
    void removedBetweenPostAndDeliveryIsNotCalled();
    void stormArrivesCompletelyAndInOrder();
    void withoutBusNothingIsDelivered();

private:
    /// Waits until everything posted so far has been delivered.
    void settle();
    [[nodiscard]] DistributedNotificationCenter::Handler noting(const QString &who);

    std::unique_ptr<DistributedNotificationCenter> mPoster; // with its own bus connection
    std::unique_ptr<DistributedNotificationCenter> mCenter;
    QObject mObserver;
    QStringList mCalls;
};

void DistributedNotificationCenterTest::initTestCase()
{
    mPoster = std::make_unique<DistributedNotificationCenter>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"poster"_s));
}

void DistributedNotificationCenterTest::init()
{
    mCenter = std::make_unique<DistributedNotificationCenter>(QDBusConnection::sessionBus());
    mCalls.clear();
}

void DistributedNotificationCenterTest::cleanup()
{
    mCenter.reset();
}

void DistributedNotificationCenterTest::cleanupTestCase()
{
    mPoster.reset();
    QDBusConnection::disconnectFromBus(u"poster"_s);
}

void DistributedNotificationCenterTest::settle()
{
    // One connection's messages keep their order: the last one arrives after all earlier ones.
    QObject last;
    bool isThere = false;
    mCenter->addObserver(&last, u"last"_s, [&](const DistributedNotification &) { isThere = true; });
    // The centre's requests to the bus must be served before the other connection posts.
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    mPoster->post(u"last"_s);
    QTRY_VERIFY(isThere);
}

DistributedNotificationCenter::Handler DistributedNotificationCenterTest::noting(const QString &who)
{
    return [this, who](const DistributedNotification &) { mCalls.append(who); };
}

void DistributedNotificationCenterTest::deliversNameAndUserInfo()
{
    const QVariantMap posted{{u"MessageID"_s, 14},
                             {u"ReturnStatus"_s, 0},
                             {u"FirmwareVersion"_s, u"1.07"_s},
                             {u"GameMode"_s, true},
                             {u"ActiveProfile"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, QVariantMap()}}}}},
                             {u"AllMacros"_s, QVariantList{1, u"two"_s}}};
    std::vector<DistributedNotification> received;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &n) { received.push_back(n); });
    settle();
    mPoster->post(name, posted);
    settle();
    QCOMPARE(received.size(), size_t(1));
    QCOMPARE(received[0].name, name);
    QCOMPARE(received[0].userInfo, posted);
    QCOMPARE(received[0].userInfo[u"GameMode"_s].typeId(), int(QMetaType::Bool));
    QCOMPARE(received[0].userInfo[u"MessageID"_s].typeId(), int(QMetaType::Int));
}

void DistributedNotificationCenterTest::deliversToThePosterItself()
{
    mCenter->addObserver(&mObserver, name, noting(u"self"_s));
    mCenter->post(name);
    QTRY_COMPARE(mCalls, QStringList{u"self"_s});
    QVERIFY(&DistributedNotificationCenter::defaultCenter() == &DistributedNotificationCenter::defaultCenter());
}

void DistributedNotificationCenterTest::absentUserInfoIsEmptyArrayOnTheWire()
{
    const WireListener listener;
    QSignalSpy spy(&listener, &WireListener::received);
    settle();
    mPoster->post(name);
    QTRY_COMPARE(spy.count(), 2); // the one of settle() is the first
    const auto message = spy.at(1).at(0).value<QDBusMessage>();
    QCOMPARE(message.signature(), u"say"_s);
    QCOMPARE(message.arguments(), QVariantList({name, QByteArray()}));
}

void DistributedNotificationCenterTest::userInfoWithoutPropertyListFormIsPostedAsNone()
{
    std::vector<QVariantMap> received;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &n) { received.push_back(n.userInfo); });
    settle();
    mPoster->post(name, {{u"point"_s, QPoint(1, 2)}});
    settle();
    QCOMPARE(received, std::vector<QVariantMap>{QVariantMap()});
}

void DistributedNotificationCenterTest::tooLargeUserInfoIsPostedAsNone()
{
    const WireListener listener;
    QSignalSpy spy(&listener, &WireListener::received);
    settle();
    mPoster->post(name, {{u"data"_s, QByteArray(PropertyList::maximumInputBytes, 'x')}}); // and the dictionary
    QTRY_COMPARE(spy.count(), 2);                                                         // after the one of settle()
    QCOMPARE(spy.at(1).at(0).value<QDBusMessage>().arguments(), QVariantList({name, QByteArray()}));
}

void DistributedNotificationCenterTest::undecodableUserInfoIsEmpty_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("no property list") << QByteArray("\x01\x02garbage");
    QTest::newRow("cut short") << QByteArray("bplist00\xd1\x01");
    QTest::newRow("an array at the root") << QByteArray("<plist><array/></plist>");
}

void DistributedNotificationCenterTest::undecodableUserInfoIsEmpty()
{
    QFETCH(QByteArray, data);
    std::vector<QVariantMap> received;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &n) { received.push_back(n.userInfo); });
    settle();
    QVERIFY(QDBusConnection(u"poster"_s).send(rawSignal({name, data})));
    settle();
    QCOMPARE(received, std::vector<QVariantMap>{QVariantMap()});
}

void DistributedNotificationCenterTest::ignoresSignalsOfOtherShape_data()
{
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("name only") << QVariantList{name};
    QTest::newRow("text for bytes") << QVariantList{name, u"text"_s};
    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("one more") << QVariantList{name, QByteArray(), 1};
}

void DistributedNotificationCenterTest::ignoresSignalsOfOtherShape()
{
    QFETCH(QVariantList, arguments);
    mCenter->addObserver(&mObserver, name, noting(u"a"_s));
    settle();
    QVERIFY(QDBusConnection(u"poster"_s).send(rawSignal(arguments)));
    settle();
    QCOMPARE(mCalls, QStringList());
}

void DistributedNotificationCenterTest::deliversOnTheMainThread()
{
    QThread *thread = nullptr;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &) { thread = QThread::currentThread(); });
    settle();
    std::jthread([&] { mPoster->post(name); }).join();
    settle();
    QCOMPARE(thread, qApp->thread());
}

void DistributedNotificationCenterTest::observerAddedTwiceIsCalledTwice()
{
    mCenter->addObserver(&mObserver, name, noting(u"a"_s));
    mCenter->addObserver(&mObserver, name, noting(u"a"_s));
    QCOMPARE(mCenter->observationCount(&mObserver, name), 2);
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList({u"a"_s, u"a"_s}));
}

void DistributedNotificationCenterTest::observersAreCalledInTheOrderTheyWereAdded()
{
    QObject other;
    mCenter->addObserver(&mObserver, name, noting(u"first"_s));
    mCenter->addObserver(&other, name, noting(u"second"_s));
    mCenter->addObserver(&mObserver, name, noting(u"third"_s));
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList({u"first"_s, u"second"_s, u"third"_s}));
}

void DistributedNotificationCenterTest::removalEndsEveryObservationOfThatNameOnly()
{
    mCenter->addObserver(&mObserver, name, noting(u"removed"_s));
    mCenter->addObserver(&mObserver, otherName, noting(u"kept"_s));
    mCenter->addObserver(&mObserver, name, noting(u"removed"_s));
    mCenter->removeObserver(&mObserver, name);
    QCOMPARE(mCenter->observationCount(&mObserver, name), 0);
    QCOMPARE(mCenter->observationCount(&mObserver, otherName), 1);
    settle();
    mPoster->post(name);
    mPoster->post(otherName);
    settle();
    QCOMPARE(mCalls, QStringList{u"kept"_s});
}

void DistributedNotificationCenterTest::removalLeavesOtherObserversAlone()
{
    QObject other;
    mCenter->addObserver(&mObserver, name, noting(u"removed"_s));
    mCenter->addObserver(&other, name, noting(u"kept"_s));
    mCenter->removeObserver(&mObserver, name);
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList{u"kept"_s});
}

void DistributedNotificationCenterTest::removingAnUnknownObservationDoesNothing()
{
    QObject other;
    mCenter->addObserver(&mObserver, name, noting(u"a"_s));
    mCenter->removeObserver(&mObserver, otherName);
    mCenter->removeObserver(&other, name);
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList{u"a"_s});
}

void DistributedNotificationCenterTest::destroyedObserverIsNotCalled()
{
    auto observer = std::make_unique<QObject>();
    const QObject *address = observer.get();
    mCenter->addObserver(observer.get(), name, noting(u"destroyed"_s));
    mCenter->addObserver(observer.get(), otherName, noting(u"destroyed"_s));
    mCenter->addObserver(&mObserver, name, noting(u"alive"_s));
    observer.reset();
    QCOMPARE(mCenter->observationCount(address, name), 0);
    settle();
    mPoster->post(name);
    mPoster->post(otherName);
    settle();
    QCOMPARE(mCalls, QStringList{u"alive"_s});
}

void DistributedNotificationCenterTest::observerMayRemoveAndAddItselfInItsHandler()
{
    DistributedNotificationCenter::Handler handler;
    handler = [&](const DistributedNotification &) {
        mCenter->removeObserver(&mObserver, name);
        mCalls.append(u"handled"_s);
        mCenter->addObserver(&mObserver, name, handler);
    };
    mCenter->addObserver(&mObserver, name, handler);
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls.size(), 1);
    QCOMPARE(mCenter->observationCount(&mObserver, name), 1);
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls.size(), 2);
}

void DistributedNotificationCenterTest::observationAddedInHandlerReceivesTheNextOne()
{
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &) {
        mCalls.append(u"first"_s);
        if (mCenter->observationCount(&mObserver, name) == 1)
            mCenter->addObserver(&mObserver, name, noting(u"added"_s));
    });
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList{u"first"_s});
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList({u"first"_s, u"first"_s, u"added"_s}));
}

void DistributedNotificationCenterTest::observationRemovedInHandlerOfAnotherIsNotCalled()
{
    QObject other;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &) {
        mCalls.append(u"first"_s);
        mCenter->removeObserver(&other, name);
    });
    mCenter->addObserver(&other, name, noting(u"removed"_s));
    settle();
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList{u"first"_s});
}

void DistributedNotificationCenterTest::observerMayBeDestroyedInItsHandler()
{
    auto observer = std::make_unique<QObject>();
    mCenter->addObserver(observer.get(), name, [this, &observer](const DistributedNotification &n) {
        observer.reset();
        mCalls.append(n.name); // the objects that the handler owns still exist
    });
    settle();
    mPoster->post(name);
    mPoster->post(name);
    settle();
    QCOMPARE(mCalls, QStringList{name});
}

void DistributedNotificationCenterTest::removedBetweenPostAndDeliveryIsNotCalled()
{
    mCenter->addObserver(&mObserver, name, noting(u"a"_s));
    settle();
    mPoster->post(name);
    // When the bus answers this call, both connections have seen the notification; it waits in the queue of this
    // thread.
    for (const QString &connection : {u"poster"_s, QDBusConnection::sessionBus().name()})
        QDBusConnection(connection)
            .call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                                                 u"GetId"_s));
    mCenter->removeObserver(&mObserver, name);
    settle();
    QCOMPARE(mCalls, QStringList());
}

void DistributedNotificationCenterTest::stormArrivesCompletelyAndInOrder()
{
    constexpr int count = 3000;
    std::vector<int> numbers;
    mCenter->addObserver(&mObserver, name, [&](const DistributedNotification &n) {
        numbers.push_back(n.userInfo.value(u"number"_s).toInt());
    });
    settle();
    std::jthread poster([this] {
        for (int number = 0; number < count; ++number) {
            mPoster->post(name, {{u"number"_s, number}});
            mPoster->post(otherName, {{u"number"_s, number}});
        }
    });
    poster.join(); // the main thread is busy meanwhile, as in a wait for a reply
    QTRY_COMPARE_WITH_TIMEOUT(numbers.size(), size_t(count), 30'000);
    for (int number = 0; number < count; ++number)
        QCOMPARE(numbers[size_t(number)], number);
}

void DistributedNotificationCenterTest::withoutBusNothingIsDelivered()
{
    DistributedNotificationCenter lonely{QDBusConnection(u"never connected"_s)};
    lonely.addObserver(&mObserver, name, noting(u"lonely"_s));
    lonely.post(name);
    settle();
    QCOMPARE(mCalls, QStringList());
    lonely.removeObserver(&mObserver, name);
    QCOMPARE(lonely.observationCount(&mObserver, name), 0);
}

QTEST_GUILESS_MAIN(DistributedNotificationCenterTest)
#include "distributednotificationcentertest.moc"
