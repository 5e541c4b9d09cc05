// SPDX-License-Identifier: MIT
#include "cli/daemonobject.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr int callLimitMs = 5000;

QDBusMessage callDaemon(const DaemonObject &object, QLatin1StringView interface, QLatin1StringView method,
                        const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                          object.path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, callLimitMs);
}

ExitCode failureOf(const QString &error)
{
    if (error == "org.freedesktop.DBus.Error.ServiceUnknown"_L1
        || error == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || error == "org.freedesktop.DBus.Error.Disconnected"_L1)
        return ExitCode::noDaemon;
    if (error == "org.freedesktop.DBus.Error.NoReply"_L1 || error == "org.freedesktop.DBus.Error.Timeout"_L1)
        return ExitCode::noAnswer;
    return ExitCode::refused;
}

QString reasonOf(const DaemonObject &object, const QDBusMessage &error, ExitCode failure)
{
    if (failure == ExitCode::noDaemon)
        return u"the daemon is not running"_s;
    if (failure == ExitCode::noAnswer)
        return u"the %1 did not answer"_s.arg(object.words);
    if (error.errorName() == "org.freedesktop.DBus.Error.UnknownObject"_L1)
        return u"the daemon has no %1"_s.arg(object.words);
    return u"the %1 refused: %2"_s.arg(object.words, error.errorMessage());
}

DaemonObjectResult resultOf(const DaemonObject &object, const QDBusMessage &reply)
{
    DaemonObjectResult result;
    if (reply.type() == QDBusMessage::ReplyMessage) {
        result.values = reply.arguments();
        return result;
    }
    result.failure = failureOf(reply.errorName());
    result.reason = reasonOf(object, reply, result.failure);
    result.errorName = reply.errorName();
    result.errorText = reply.errorMessage();
    return result;
}

} // namespace

DaemonObjectResult DaemonObject::call(QLatin1StringView method, const QVariantList &arguments) const
{
    return resultOf(*this, callDaemon(*this, interface, method, arguments));
}

std::optional<QVariant> DaemonObject::property(QLatin1StringView name, DaemonObjectResult &result) const
{
    const QDBusMessage reply =
        callDaemon(*this, "org.freedesktop.DBus.Properties"_L1, "Get"_L1, {QString(interface), QString(name)});
    result = resultOf(*this, reply);
    if (result.failure != ExitCode::ok || result.values.isEmpty())
        return {};
    return result.values.first().value<QDBusVariant>().variant();
}
