// SPDX-License-Identifier: MIT
#include "daemon/clientwatch.h"

#include "platform/messageport.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

class ClientWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void reportsAClientThatVanishes();
    void reportsAClientThatHadGoneBeforeTheWatch();
    void reportsOnlyTheLastClient();
    void emptyNameEndsTheWatch();
    void knowsTheProgramAtThePort();

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
    [[nodiscard]] bool openPorts();
    void closePortsInTurn(); ///< the bus reports both in this order

    std::unique_ptr<ClientWatch> mWatch;
    std::unique_ptr<QSignalSpy> mVanished;
    std::array<std::unique_ptr<LocalMessagePort>, connectionNames.size()> mPorts;
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

void ClientWatchTest::init()
{
    mWatch = std::make_unique<ClientWatch>(QDBusConnection::sessionBus());
    mVanished = std::make_unique<QSignalSpy>(mWatch.get(), &ClientWatch::vanished);
}

void ClientWatchTest::cleanup()
{
    mPorts = {};
    mVanished.reset();
    mWatch.reset();
}

bool ClientWatchTest::openPorts()
{
    for (int client = 0; client < int(mPorts.size()); ++client)
        mPorts.at(std::size_t(client)) = makePort(client);
    return std::ranges::all_of(mPorts, [](const auto &port) { return port != nullptr; });
}

void ClientWatchTest::closePortsInTurn()
{
    for (auto &port : mPorts)
        port.reset();
}

void ClientWatchTest::reportsAClientThatVanishes()
{
    QVERIFY(openPorts());
    mWatch->watch(portName(0));
    QCoreApplication::processEvents();
    QCOMPARE(mVanished->count(), 0);
    mPorts.front().reset();
    QTRY_COMPARE(mVanished->count(), 1);
    QCOMPARE(mVanished->at(0).at(0).toString(), portName(0));
}

void ClientWatchTest::reportsAClientThatHadGoneBeforeTheWatch()
{
    mWatch->watch(portName(0));
    QCOMPARE(mVanished->count(), 0); // the caller must first finish its work
    QTRY_COMPARE(mVanished->count(), 1);
    QCOMPARE(mVanished->at(0).at(0).toString(), portName(0));
}

void ClientWatchTest::reportsOnlyTheLastClient()
{
    QVERIFY(openPorts());
    mWatch->watch(portName(0));
    mWatch->watch(portName(1));
    closePortsInTurn();
    QTRY_COMPARE(mVanished->count(), 1);
    QCOMPARE(mVanished->at(0).at(0).toString(), portName(1));
}

void ClientWatchTest::emptyNameEndsTheWatch()
{
    QVERIFY(openPorts());
    mWatch->watch(portName(0));
    mWatch->watch({});
    ClientWatch other(QDBusConnection::sessionBus());
    QSignalSpy otherVanished(&other, &ClientWatch::vanished);
    other.watch(portName(1));
    closePortsInTurn();
    QTRY_COMPARE(otherVanished.count(), 1);
    QCOMPARE(mVanished->count(), 0);
}

void ClientWatchTest::knowsTheProgramAtThePort()
{
    QCOMPARE(mWatch->owner(), QString());
    QVERIFY(openPorts());
    mWatch->watch(portName(0));
    QCOMPARE(mWatch->owner(), QDBusConnection(connectionNames.at(0)).baseService());
    mWatch->watch(portName(1));
    QCOMPARE(mWatch->owner(), QDBusConnection(connectionNames.at(1)).baseService());
    mWatch->watch({});
    QCOMPARE(mWatch->owner(), QString());
    mWatch->watch(u"ClientWatchTestNoSuchPort"_s);
    QCOMPARE(mWatch->owner(), QString());
}

QTEST_GUILESS_MAIN(ClientWatchTest)
#include "clientwatchtest.moc"
