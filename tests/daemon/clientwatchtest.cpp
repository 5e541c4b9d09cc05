// SPDX-License-Identifier: MIT
#include "daemon/clientwatch.h"

#include "platform/messageport.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

class ClientWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void reportsAClientThatVanishes();
    void reportsAClientThatHadGoneBeforeTheWatch();
    void reportsOnlyTheLastClient();
    void emptyNameEndsTheWatch();

private:
    static inline const std::array connectionNames{u"first client"_s, u"second client"_s};

    /// The reply port of a client with a connection of its own.
    [[nodiscard]] static std::unique_ptr<LocalMessagePort> makePort(int client)
    {
        return LocalMessagePort::create(
            portName(client), [](qint32, const std::optional<QByteArray> &) { return std::optional<QByteArray>(); },
            QDBusConnection(connectionNames.at(client)));
    }
    [[nodiscard]] static QString portName(int client) { return u"ClientWatchTestPort%1"_s.arg(client); }
};

void ClientWatchTest::initTestCase()
{
    for (const QString &name : connectionNames)
        QVERIFY(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name).isConnected());
}

void ClientWatchTest::cleanupTestCase()
{
    for (const QString &name : connectionNames)
        QDBusConnection::disconnectFromBus(name);
}

void ClientWatchTest::reportsAClientThatVanishes()
{
    ClientWatch watch(QDBusConnection::sessionBus());
    QSignalSpy vanished(&watch, &ClientWatch::vanished);
    auto port = makePort(0);
    QVERIFY(port);
    watch.watch(portName(0));
    QCoreApplication::processEvents();
    QCOMPARE(vanished.count(), 0);
    port.reset();
    QTRY_COMPARE(vanished.count(), 1);
    QCOMPARE(vanished.at(0).at(0).toString(), portName(0));
}

void ClientWatchTest::reportsAClientThatHadGoneBeforeTheWatch()
{
    ClientWatch watch(QDBusConnection::sessionBus());
    QSignalSpy vanished(&watch, &ClientWatch::vanished);
    watch.watch(portName(0));
    QCOMPARE(vanished.count(), 0); // the caller must first finish its work
    QTRY_COMPARE(vanished.count(), 1);
    QCOMPARE(vanished.at(0).at(0).toString(), portName(0));
}

void ClientWatchTest::reportsOnlyTheLastClient()
{
    ClientWatch watch(QDBusConnection::sessionBus());
    QSignalSpy vanished(&watch, &ClientWatch::vanished);
    auto first = makePort(0);
    auto second = makePort(1);
    QVERIFY(first && second);
    watch.watch(portName(0));
    watch.watch(portName(1));
    first.reset();
    second.reset(); // the bus reports both in this order
    QTRY_COMPARE(vanished.count(), 1);
    QCOMPARE(vanished.at(0).at(0).toString(), portName(1));
}

void ClientWatchTest::emptyNameEndsTheWatch()
{
    ClientWatch watch(QDBusConnection::sessionBus());
    QSignalSpy vanished(&watch, &ClientWatch::vanished);
    auto first = makePort(0);
    auto second = makePort(1);
    QVERIFY(first && second);
    watch.watch(portName(0));
    watch.watch({});
    ClientWatch other(QDBusConnection::sessionBus());
    QSignalSpy otherVanished(&other, &ClientWatch::vanished);
    other.watch(portName(1));
    first.reset();
    second.reset(); // the bus reports both in this order
    QTRY_COMPARE(otherVanished.count(), 1);
    QCOMPARE(vanished.count(), 0);
}

QTEST_GUILESS_MAIN(ClientWatchTest)
#include "clientwatchtest.moc"
