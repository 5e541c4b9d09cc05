// SPDX-License-Identifier: MIT
#include "app/virtualkeys.h"

#include "base/daemonprotocol.h"
#include "base/hidpages.h"
#include "platform/messageport.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage callOf(const QString &interface, const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                       DaemonProtocol::virtualKeyboardPath, interface, method);
    call.setAutoStartService(false);
    return call;
}

} // namespace

VirtualKeys::VirtualKeys(const QDBusConnection &bus, QObject *parent) : QObject(parent), mBus(bus)
{
    const QString daemon = messagePortBusName(DaemonProtocol::requestPortName);
    auto *watcher = new QDBusServiceWatcher(daemon, mBus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        mPressed.clear(); // they went with the daemon
        takeCapture({});
    });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &VirtualKeys::readCapture);
    mBus.connect(daemon, DaemonProtocol::virtualKeyboardPath, DaemonProtocol::virtualKeyboardInterface,
                 u"CaptureChanged"_s, this, SLOT(takeCapture(QString)));
    readCapture();
}

VirtualKeys::~VirtualKeys()
{
    releaseAll();
}

void VirtualKeys::press(quint16 usage)
{
    if (mPressed.contains(usage))
        return;
    mPressed += usage;
    call(u"Press"_s, usage);
}

void VirtualKeys::release(quint16 usage)
{
    if (mPressed.removeOne(usage))
        call(u"Release"_s, usage);
}

void VirtualKeys::releaseAll()
{
    while (!mPressed.isEmpty())
        call(u"Release"_s, mPressed.takeLast());
}

void VirtualKeys::call(const QString &method, quint16 usage)
{
    QDBusMessage message = callOf(DaemonProtocol::virtualKeyboardInterface, method);
    message << uint{HidPages::keyboard} << uint{usage};
    mBus.asyncCall(message);
}

void VirtualKeys::readCapture()
{
    QDBusMessage call = callOf(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(DaemonProtocol::virtualKeyboardInterface) << u"CaptureClient"_s;
    auto *reply = new QDBusPendingCallWatcher(mBus.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        // An error reply has no such value.
        takeCapture(reply->reply().arguments().value(0).value<QDBusVariant>().variant().toString());
    });
}

void VirtualKeys::takeCapture(const QString &client)
{
    const bool areCaptured = client == DaemonProtocol::configuratorReplyPortName;
    if (std::exchange(mAreCaptured, areCaptured) != areCaptured)
        Q_EMIT captureChanged();
}
