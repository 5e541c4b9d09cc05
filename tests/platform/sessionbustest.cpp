// SPDX-License-Identifier: MIT
// Messages that exceed, singly or together, the amount that QtDBus reads before it pauses (63 MiB).
#include "platform/sessionbus.h"
#include "platform/distributednotificationcenter.h"
#include "tests/support/rawposter.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

const QString name = u"Device Attached 271"_s;
const QString otherName = u"Device Removed 271"_s;
const QString ownName = u"own"_s;

constexpr qsizetype mebibyte = 1024 * 1024;

} // namespace

class SessionBusTest : public QObject
{
    Q_OBJECT

private slots:
    void providesOneSharedConnectionAndSeparateOnes();
    void plainConnectionStopsReadingAfterAPause();
    void answersWhileMessagesWait_data() { connections(); }
    void answersWhileMessagesWait();
    void continuesToReadAfterLargeMessages_data();
    void continuesToReadAfterLargeMessages();

private:
    static void connections();
    static QDBusConnection connection(bool isShared) { return isShared ? sharedSessionBus() : openSessionBus(ownName); }
};

void SessionBusTest::connections()
{
    QTest::addColumn<bool>("isShared");
    QTest::newRow("shared") << true;
    QTest::newRow("its own") << false;
}

void SessionBusTest::providesOneSharedConnectionAndSeparateOnes()
{
    QCOMPARE(sharedSessionBus().baseService(), QDBusConnection::sessionBus().baseService());
    {
        const QDBusConnection own = openSessionBus(ownName);
        QVERIFY(own.isConnected());
        QVERIFY(own.baseService() != sharedSessionBus().baseService());
        QCOMPARE(QDBusConnection(ownName).baseService(), own.baseService());
    }
    QDBusConnection::disconnectFromBus(ownName);
}

/// The reason for sharedSessionBus() and openSessionBus(). When this is skipped, the library has been fixed.
void SessionBusTest::plainConnectionStopsReadingAfterAPause()
{
    const RawPoster poster;
    bool isAnswering = true;
    {
        const auto plain = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"plain"_s);
        DistributedNotificationCenter center(plain);
        int heard = 0;
        center.addObserver(this, name, [&heard](const DistributedNotification &) { ++heard; });
        QVERIFY(RawPoster::isAnswering(plain));
        poster.post(name, 64 * mebibyte);
        poster.waitUntilPosted();
        QTRY_COMPARE(heard, 1); // nothing waits any more
        isAnswering = RawPoster::isAnswering(plain, 1000);
    }
    QDBusConnection::disconnectFromBus(u"plain"_s);
    if (isAnswering)
        QSKIP("this version of Qt continues to read: platform/sessionbus is not needed");
}

void SessionBusTest::answersWhileMessagesWait()
{
    QFETCH(bool, isShared);
    const RawPoster poster;
    {
        const QDBusConnection bus = connection(isShared);
        DistributedNotificationCenter center(bus);
        int heard = 0;
        center.addObserver(this, name, [&heard](const DistributedNotification &) { ++heard; });
        QVERIFY(RawPoster::isAnswering(bus));
        for (int count = 0; count < 3; ++count)
            poster.post(name, 40 * mebibyte);
        poster.waitUntilPosted();
        // The call blocks this thread, which handles the messages.
        QVERIFY(RawPoster::isAnswering(bus));
        QCOMPARE(heard, 0);
        QTRY_COMPARE(heard, 3);
    }
    QDBusConnection::disconnectFromBus(ownName);
}

void SessionBusTest::continuesToReadAfterLargeMessages_data()
{
    QTest::addColumn<bool>("isShared");
    QTest::addColumn<int>("count");
    QTest::addColumn<qsizetype>("bytes");
    for (const bool isShared : {true, false}) {
        const char *connection = isShared ? "shared" : "its own";
        QTest::addRow("one of 64 MiB, %s", connection) << isShared << 1 << 64 * mebibyte;
        QTest::addRow("three of 40 MiB, %s", connection) << isShared << 3 << 40 * mebibyte;
        QTest::addRow("many of 1 MiB, %s", connection) << isShared << 100 << mebibyte;
    }
}

void SessionBusTest::continuesToReadAfterLargeMessages()
{
    QFETCH(bool, isShared);
    QFETCH(int, count);
    QFETCH(qsizetype, bytes);
    const RawPoster poster;
    {
        const QDBusConnection bus = connection(isShared);
        DistributedNotificationCenter center(bus);
        int heard = 0;
        QStringList heardOthers;
        center.addObserver(this, name, [&heard](const DistributedNotification &) { ++heard; });
        center.addObserver(this, otherName,
                           [&](const DistributedNotification &notification) { heardOthers += notification.name; });
        QVERIFY(RawPoster::isAnswering(bus));
        for (int number = 0; number < count; ++number)
            poster.post(name, bytes);
        poster.waitUntilPosted();
        QTRY_COMPARE_WITH_TIMEOUT(heard, count, 30'000);
        poster.post(otherName, 0);
        QTRY_COMPARE(heardOthers, QStringList{otherName});
        QVERIFY(RawPoster::isAnswering(bus));
    }
    QDBusConnection::disconnectFromBus(ownName);
}

QTEST_GUILESS_MAIN(SessionBusTest)
#include "sessionbustest.moc"
