// SPDX-License-Identifier: MIT
#include "cli/daemonobjectclient.h"

#include "daemonlink/daemonobjectcall.h"
#include "platform/sessionbus.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// QtDBus announces a failed call on its own thread after the caller has the reply. If the program ends meanwhile, Qt
/// prints warnings about types that it has already destroyed. The thread handles replies in turn: the reply to a second
/// call, which cannot fail, comes after the announcement.
void waitForBusThread()
{
    const QDBusMessage ping = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                             u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    sharedSessionBus().call(ping, QDBus::Block, DaemonObjectClient::usualLimitMs);
}

QDBusMessage replyTo(const QDBusMessage &message, int limitMs)
{
    const QDBusMessage reply = sharedSessionBus().call(message, QDBus::Block, limitMs);
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
        return ExitCode::noReply;
    return ExitCode::refused;
}

QString messageOf(const DaemonObjectClient &object, const QDBusMessage &error, ExitCode code, const QString &failure)
{
    if (code == ExitCode::noDaemon)
        return u"the daemon is not running"_s;
    if (code == ExitCode::noReply)
        return u"the %1 did not answer"_s.arg(object.words);
    const QString name = error.errorName();
    if (name == "org.freedesktop.DBus.Error.UnknownObject"_L1)
        return u"the daemon has no %1"_s.arg(object.words);
    if (name == "org.freedesktop.DBus.Error.UnknownMethod"_L1
        || name == "org.freedesktop.DBus.Error.UnknownInterface"_L1
        || name == "org.freedesktop.DBus.Error.UnknownProperty"_L1)
        return u"the %1 cannot do this: the daemon is of another version"_s.arg(object.words);
    return failure + u": "_s + error.errorMessage();
}

DaemonObjectResult<QVariantList> resultOf(const DaemonObjectClient &object, const QDBusMessage &reply,
                                          const QString &failure)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments();
    const auto own = std::ranges::find(object.ownErrors, reply.errorName(), &OwnError::name);
    if (own != object.ownErrors.end())
        return CommandError{{reply.errorMessage()}, own->code};
    const ExitCode code = codeOf(reply.errorName());
    return CommandError{{messageOf(object, reply, code, failure)}, code};
}

} // namespace

DaemonObjectResult<QVariantList> DaemonObjectClient::call(QLatin1StringView method, const QVariantList &arguments,
                                                          const QString &failure, int limitMs) const
{
    return resultOf(*this, replyTo(daemonObjectCall(path, interface, method, arguments), limitMs), failure);
}

DaemonObjectResult<QVariant> DaemonObjectClient::property(QLatin1StringView name) const
{
    const DaemonObjectResult<QVariantList> values = resultOf(
        *this, replyTo(daemonPropertyCall(path, interface, name), usualLimitMs), u"the %1 cannot be read"_s.arg(words));
    if (!values)
        return values.error();
    return daemonPropertyValue(*values);
}
