// SPDX-License-Identifier: MIT
// What the window knows of the capture of the virtual keyboard when the news of it arrive out of order.
#include "app/virtualkeys.h"

#include "app/servicestatus.h"
#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"
#include "tests/support/scripteddaemon.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage callTo(const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                          DaemonProtocol::virtualKeyboardPath, interface, method);
}

/// A virtual keyboard whose capture begins right after it was read. The signal arrives before the value, as it does on
/// a busy machine. Lives on the daemon's thread.
class CapturedAfterwards : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == "Get"_L1) {
            QDBusMessage change = QDBusMessage::createSignal(
                DaemonProtocol::virtualKeyboardPath, DaemonProtocol::virtualKeyboardInterface, u"CaptureChanged"_s);
            change << QString(DaemonProtocol::configuratorReplyPortName);
            connection.send(change);
        }
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QString()))));
        return true;
    }
};

} // namespace

class VirtualKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalOvertakesTheReading();
};

void VirtualKeysTest::signalOvertakesTheReading()
{
    ScriptedDaemon daemon;
    std::unique_ptr<CapturedAfterwards> object;
    daemon.run([&](const QDBusConnection &connection) {
        object = std::make_unique<CapturedAfterwards>();
        QVERIFY(QDBusConnection(connection).registerVirtualObject(DaemonProtocol::virtualKeyboardPath, object.get()));
    });
    const ServiceStatus service;
    const VirtualKeys keys(service);
    // Its answer arrives after both.
    const QDBusPendingCallWatcher later(sharedSessionBus().asyncCall(callTo(u"org.example.Question"_s, u"Ask"_s)));
    const QSignalSpy answers(&later, &QDBusPendingCallWatcher::finished);
    QTRY_COMPARE(answers.size(), 1);
    QVERIFY(keys.areCaptured());
    daemon.run([&](const QDBusConnection &) { object.reset(); });
}

QTEST_GUILESS_MAIN(VirtualKeysTest)
#include "virtualkeystest.moc"
