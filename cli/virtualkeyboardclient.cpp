// SPDX-License-Identifier: MIT
#include "cli/virtualkeyboardclient.h"

#include "app/util/daemonprotocol.h"
#include "platform/messageport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr int callLimitMs = 5000;

QDBusMessage callDaemon(QLatin1StringView interface, QLatin1StringView method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                          DaemonProtocol::virtualKeyboardPath, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, callLimitMs);
}

VirtualKeyboardResult resultOf(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        return {};
    const QString error = reply.errorName();
    if (error == "org.freedesktop.DBus.Error.ServiceUnknown"_L1
        || error == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || error == "org.freedesktop.DBus.Error.Disconnected"_L1)
        return {ExitCode::noDaemon, u"the daemon is not running"_s};
    if (error == "org.freedesktop.DBus.Error.NoReply"_L1 || error == "org.freedesktop.DBus.Error.Timeout"_L1)
        return {ExitCode::noAnswer, u"the virtual keyboard did not answer"_s};
    if (error == "org.freedesktop.DBus.Error.UnknownObject"_L1)
        return {ExitCode::refused, u"the daemon has no virtual keyboard"_s};
    return {ExitCode::refused, u"the virtual keyboard refused: %1"_s.arg(reply.errorMessage())};
}

/// A property of the virtual keyboard; absent with `result` saying why.
std::optional<QVariant> readProperty(const QString &name, VirtualKeyboardResult &result)
{
    const QDBusMessage reply = callDaemon("org.freedesktop.DBus.Properties"_L1, "Get"_L1,
                                          {QString(DaemonProtocol::virtualKeyboardInterface), name});
    result = resultOf(reply);
    if (result.failure != ExitCode::ok || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

} // namespace

VirtualKeyboardResult VirtualKeyboardClient::call(QLatin1StringView method, const QVariantList &arguments)
{
    return resultOf(callDaemon(DaemonProtocol::virtualKeyboardInterface, method, arguments));
}

std::optional<bool> VirtualKeyboardClient::isAttached()
{
    VirtualKeyboardResult result;
    const std::optional<QVariant> attached = readProperty(u"Attached"_s, result);
    return attached ? std::optional(attached->toBool()) : std::nullopt;
}

std::optional<QList<uint>> VirtualKeyboardClient::sentKeys(VirtualKeyboardResult &result)
{
    const std::optional<QVariant> keys = readProperty(u"SentKeys"_s, result);
    return keys ? std::optional(qdbus_cast<QList<uint>>(*keys)) : std::nullopt;
}
