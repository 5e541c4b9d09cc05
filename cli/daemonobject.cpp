// SPDX-License-Identifier: MIT
#include "cli/daemonobject.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr int callLimitMs = 5000;

/// QtDBus announces a failed call on its own thread after the caller has the reply. If the program ends meanwhile, Qt
/// prints warnings about types that it has already destroyed. The thread handles replies in turn: the reply to a second
/// call, which cannot fail, comes after the announcement.
void waitForBusThread()
{
    const QDBusMessage ping = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                             u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    sharedSessionBus().call(ping, QDBus::Block, callLimitMs);
}

QDBusMessage callDaemon(const DaemonObject &object, QLatin1StringView interface, QLatin1StringView method,
                        const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                          object.path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    const QDBusMessage reply = sharedSessionBus().call(message, QDBus::Block, callLimitMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        waitForBusThread();
    return reply;
}

ExitCode codeOf(const QString &error)
{
    if (error == "org.freedesktop.DBus.Error.ServiceUnknown"_L1
        || error == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || error == "org.freedesktop.DBus.Error.Disconnected"_L1)
        return ExitCode::noDaemon;
    if (error == "org.freedesktop.DBus.Error.NoReply"_L1 || error == "org.freedesktop.DBus.Error.Timeout"_L1)
        return ExitCode::noAnswer;
    return ExitCode::refused;
}

QString messageOf(const DaemonObject &object, const QDBusMessage &error, ExitCode code)
{
    if (code == ExitCode::noDaemon)
        return u"the daemon is not running"_s;
    if (code == ExitCode::noAnswer)
        return u"the %1 did not answer"_s.arg(object.words);
    const QString name = error.errorName();
    if (name == "org.freedesktop.DBus.Error.UnknownObject"_L1)
        return u"the daemon has no %1"_s.arg(object.words);
    if (name == "org.freedesktop.DBus.Error.UnknownMethod"_L1
        || name == "org.freedesktop.DBus.Error.UnknownInterface"_L1
        || name == "org.freedesktop.DBus.Error.UnknownProperty"_L1)
        return u"the %1 cannot do this: the daemon is of another version"_s.arg(object.words);
    return u"the %1 refused: %2"_s.arg(object.words, error.errorMessage());
}

DaemonObjectResult<QVariantList> resultOf(const DaemonObject &object, const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments();
    const ExitCode code = codeOf(reply.errorName());
    return DaemonObjectError{{{messageOf(object, reply, code)}, code}, reply.errorName(), reply.errorMessage()};
}

} // namespace

DaemonObjectResult<QVariantList> DaemonObject::call(QLatin1StringView method, const QVariantList &arguments) const
{
    return resultOf(*this, callDaemon(*this, interface, method, arguments));
}

DaemonObjectResult<QVariant> DaemonObject::property(QLatin1StringView name) const
{
    const QDBusMessage reply =
        callDaemon(*this, "org.freedesktop.DBus.Properties"_L1, "Get"_L1, {QString(interface), QString(name)});
    const DaemonObjectResult<QVariantList> values = resultOf(*this, reply);
    if (!values)
        return values.error();
    return values->value(0).value<QDBusVariant>().variant();
}
