// SPDX-License-Identifier: MIT
#include "platform/messageport.h"

#include "platform/pendingcall.h"
#include "platform/sessionbus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusReply>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString objectPath = u"/MessagePort"_s;
const QString interfaceName = u"org.quillkestra.MessagePort"_s;
const QString requestMethod = u"SendRequest"_s;

constexpr int busAnswerLimitMs = 2000; // for the bus itself, which answers at once unless it is broken

QDBusMessage requestMessage(const QString &busName, qint32 messageIdentifier, const QByteArray &data)
{
    QDBusMessage message = QDBusMessage::createMethodCall(busName, objectPath, interfaceName, requestMethod);
    message.setAutoStartService(false);
    message << messageIdentifier << data;
    return message;
}

/// Calls `method` of the bus itself, which takes one bus name.
QDBusMessage askBus(const QString &method, const QString &busName)
{
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                           u"org.freedesktop.DBus"_s, method);
    question << busName;
    return sharedSessionBus().call(question, QDBus::Block, busAnswerLimitMs);
}

int milliseconds(std::chrono::milliseconds duration)
{
    return int(duration.count());
}

bool isAsciiDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isOfBusName(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z')
           || isAsciiDigit(character) || character == u'_' || character == u'-';
}

} // namespace

bool isMessagePortName(QStringView portName)
{
    constexpr qsizetype maximumBusNameLength = 255; // the limit of the bus
    if (messagePortBusName({}).size() + portName.size() > maximumBusNameLength)
        return false;
    const QList<QStringView> elements = portName.split(u'.');
    return std::ranges::all_of(elements, [](QStringView element) {
        return !element.isEmpty() && !isAsciiDigit(element.front()) && std::ranges::all_of(element, isOfBusName);
    });
}

QString messagePortOwner(const QString &portName)
{
    if (!isMessagePortName(portName))
        return {};
    return QDBusReply<QString>(askBus(u"GetNameOwner"_s, messagePortBusName(portName))).value();
}

QString messagePortBusName(const QString &portName)
{
    return u"org.quillkestra."_s + portName;
}

LocalMessagePort::LocalMessagePort(QString busName, SenderCallback callback, QDBusConnection connection)
    : mBusName(std::move(busName)), mCallback(std::move(callback)), mConnection(std::move(connection))
{
}

std::unique_ptr<LocalMessagePort> LocalMessagePort::create(const QString &name, Callback callback,
                                                           const QDBusConnection &connection)
{
    const auto ignoringSender = [callback = std::move(callback)](const QString &, qint32 messageIdentifier,
                                                                 const std::optional<QByteArray> &data) {
        return callback(messageIdentifier, data);
    };
    return create(name, SenderCallback(ignoringSender), connection);
}

std::unique_ptr<LocalMessagePort> LocalMessagePort::create(const QString &name, SenderCallback callback,
                                                           const QDBusConnection &connection)
{
    std::unique_ptr<LocalMessagePort> port(
        new LocalMessagePort(messagePortBusName(name), std::move(callback), connection));
    // The object comes first: messages may arrive as soon as the name is owned.
    port->mHasObject = port->mConnection.registerObject(objectPath, port.get(), QDBusConnection::ExportScriptableSlots);
    port->mHasName = port->mHasObject && port->mConnection.registerService(port->mBusName);
    return port->mHasName ? std::move(port) : nullptr;
}

LocalMessagePort::~LocalMessagePort()
{
    // Unregisters only what belongs to this port. A port whose creation failed must not affect the existing one.
    if (mHasName)
        mConnection.unregisterService(mBusName);
    if (mHasObject)
        mConnection.unregisterObject(objectPath);
}

QByteArray LocalMessagePort::SendRequest(int messageIdentifier, const QByteArray &data)
{
    const std::optional<QByteArray> received = data.isEmpty() ? std::nullopt : std::optional(data);
    const QString sender = calledFromDBus() ? message().service() : QString();
    return mCallback(sender, messageIdentifier, received).value_or(QByteArray());
}

std::optional<RemoteMessagePort> RemoteMessagePort::open(const QString &name)
{
    if (!isMessagePortName(name))
        return {};
    const QString busName = messagePortBusName(name);
    const QDBusReply<bool> hasOwner = askBus(u"NameHasOwner"_s, busName);
    if (!hasOwner.isValid() || !hasOwner.value())
        return {};
    return RemoteMessagePort(busName);
}

RemoteMessagePort RemoteMessagePort::unchecked(const QString &name)
{
    return RemoteMessagePort(messagePortBusName(name));
}

Result<QByteArray, RemoteMessagePort::SendError>
RemoteMessagePort::sendRequest(qint32 messageIdentifier, const QByteArray &data,
                               std::chrono::milliseconds /*sendTimeout*/, std::chrono::milliseconds receiveTimeout,
                               const std::function<void()> &meanwhile, const std::function<void()> &whileWaiting) const
{
    QDBusPendingCall call =
        sharedSessionBus().asyncCall(requestMessage(mBusName, messageIdentifier, data), milliseconds(receiveTimeout));
    if (meanwhile)
        meanwhile();
    if (whileWaiting)
        (void)pollUntilFinished(call, whileWaiting);
    call.waitForFinished();
    const QDBusMessage reply = call.reply();
    if (reply.type() != QDBusMessage::ReplyMessage) {
        const bool isLate = QDBusError(reply).type() == QDBusError::NoReply;
        return isLate ? SendError::receiveTimeout : SendError::isInvalid;
    }
    return reply.arguments().value(0).toByteArray();
}

void RemoteMessagePort::post(qint32 messageIdentifier, const QByteArray &data) const
{
    sharedSessionBus().call(requestMessage(mBusName, messageIdentifier, data), QDBus::NoBlock);
}
