// SPDX-License-Identifier: MIT
// A port whose bus name belongs to a service that the bus can start. Neither the search for the port nor a message to
// it must start the service.
#include "platform/messageport.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString portName = u"ActivatablePort"_s;

/// A session bus that knows one service file. The started service leaves a mark.
class ActivatingBus
{
public:
    bool start()
    {
        const QString folder = mFolder.path();
        const QString service = u"[D-BUS Service]\nName=%1\nExec=/usr/bin/touch %2\n"_s;
        const QString configuration = u"<busconfig><type>session</type><listen>unix:tmpdir=%1</listen>"
                                      "<servicedir>%1</servicedir><policy context=\"default\">"
                                      "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
                                      "<allow own=\"*\"/></policy></busconfig>"_s;
        writeFile(folder + u"/port.service"_s, service.arg(messagePortBusName(portName), markPath()).toUtf8());
        writeFile(folder + u"/bus.conf"_s, configuration.arg(folder).toUtf8());
        mProcess.setProgram(u"dbus-daemon"_s);
        mProcess.setArguments({u"--config-file"_s, folder + u"/bus.conf"_s, u"--print-address"_s, u"--nofork"_s});
        mProcess.start();
        if (!mProcess.waitForStarted() || !mProcess.waitForReadyRead())
            return false;
        return qputenv("DBUS_SESSION_BUS_ADDRESS", mProcess.readLine().trimmed());
    }

    ~ActivatingBus()
    {
        mProcess.terminate();
        mProcess.waitForFinished();
    }

    [[nodiscard]] QString markPath() const { return mFolder.filePath(u"started"_s); }
    [[nodiscard]] bool hasStartedTheService() const { return QFile::exists(markPath()); }

private:
    QTemporaryDir mFolder;
    QProcess mProcess;
};

} // namespace

class MessagePortActivationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void portStartsNoService();
    void busCanStartTheService();

private:
    ActivatingBus mBus;
};

void MessagePortActivationTest::initTestCase()
{
    QVERIFY(mBus.start()); // before the first use of the session bus
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    QVERIFY(bus->activatableServiceNames().value().contains(messagePortBusName(portName)));
}

void MessagePortActivationTest::portStartsNoService()
{
    QVERIFY(!RemoteMessagePort::open(portName));

    const auto connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"port"_s);
    auto port = LocalMessagePort::create(
        portName, [](qint32, const std::optional<QByteArray> &data) { return data; }, connection);
    QVERIFY(port);
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    port.reset();
    QDBusConnection::disconnectFromBus(u"port"_s);
    const auto answer = remote->sendRequest(1, "x", 2s, 2s);
    QVERIFY(!answer);
    QVERIFY(answer.error() == RemoteMessagePort::SendError::isInvalid);
    remote->post(1, "x");
    QVERIFY(!RemoteMessagePort::open(portName)); // answered after the post
    QVERIFY(!mBus.hasStartedTheService());
}

void MessagePortActivationTest::busCanStartTheService()
{
    // The counterpart: a message that allows it does start the service.
    QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(portName), u"/MessagePort"_s,
                                                       u"org.quillkestra.MessagePort"_s, u"SendRequest"_s);
    call << 1 << QByteArray("x");
    QVERIFY(QDBusConnection::sessionBus().send(call));
    QTRY_VERIFY(mBus.hasStartedTheService());
}

QTEST_GUILESS_MAIN(MessagePortActivationTest)
#include "messageportactivationtest.moc"
