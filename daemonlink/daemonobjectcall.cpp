// SPDX-License-Identifier: MIT
#include "daemonlink/daemonobjectcall.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"

#include <QDBusVariant>

using namespace Qt::StringLiterals;

QDBusMessage daemonObjectCall(QLatin1StringView path, const QString &interface, const QString &method,
                              const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

QDBusMessage daemonPropertyCall(QLatin1StringView path, QLatin1StringView interface, QLatin1StringView property)
{
    return daemonObjectCall(path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                            {QString(interface), QString(property)});
}

QVariant daemonPropertyValue(const QVariantList &values)
{
    return values.value(0).value<QDBusVariant>().variant();
}
