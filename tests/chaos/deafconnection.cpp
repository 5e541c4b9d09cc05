// SPDX-License-Identifier: MIT
#include "tests/chaos/deafconnection.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>

using namespace Qt::StringLiterals;

namespace {

void align(QByteArray &bytes, qsizetype to)
{
    bytes.append((to - bytes.size() % to) % to, '\0');
}

void addNumber(QByteArray &bytes, quint32 number)
{
    align(bytes, 4);
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift);
}

void addText(QByteArray &bytes, const QByteArray &text)
{
    addNumber(bytes, static_cast<quint32>(text.size()));
    bytes += text + '\0';
}

/// A field of the header: its code, and a variant of a text of this type ('o', 's' or 'g').
void addField(QByteArray &bytes, char code, char type, const QByteArray &text)
{
    align(bytes, 8);
    bytes += code;
    bytes += QByteArray("\1") + type + '\0';
    if (type == 'g')
        bytes += static_cast<char>(text.size()) + text + '\0';
    else
        addText(bytes, text);
}

} // namespace

DeafConnection::~DeafConnection()
{
    if (mSocket >= 0)
        ::close(mSocket);
}

bool DeafConnection::open(const QString &name)
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    sockaddr_un target{.sun_family = AF_UNIX, .sun_path = {}};
    for (const auto &[prefix, first] : {std::pair<QByteArray, int>{"unix:path=", 0}, {"unix:abstract=", 1}}) {
        if (!address.startsWith(prefix))
            continue;
        const QByteArray path = address.mid(prefix.size()).split(',').first();
        std::copy_n(path.constData(), std::min<qsizetype>(path.size(), sizeof target.sun_path - 2),
                    target.sun_path + first);
        mSocket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size_t(path.size() + first));
        if (::connect(mSocket, reinterpret_cast<sockaddr *>(&target), length) != 0)
            return false;
    }
    const QByteArray user = QByteArray::number(::getuid()).toHex();
    std::array<char, 256> answer{};
    if (!write(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n")
        || ::read(mSocket, answer.data(), answer.size()) < 2 || answer[0] != 'O' || !write("BEGIN\r\n"))
        return false;
    const QByteArray bus = "org.freedesktop.DBus";
    QByteArray arguments;
    addText(arguments, messagePortBusName(name).toLatin1());
    addNumber(arguments, 0);
    return call({bus, "/org/freedesktop/DBus", bus, "Hello", {}, {}})
           && call({bus, "/org/freedesktop/DBus", bus, "RequestName", "su", arguments});
}

bool DeafConnection::sendRequest(qint32 command, const QByteArray &data)
{
    QByteArray arguments;
    addNumber(arguments, static_cast<quint32>(command));
    addNumber(arguments, static_cast<quint32>(data.size()));
    return call({messagePortBusName(DaemonProtocol::requestPortName).toLatin1(), "/MessagePort",
                 "org.quillkestra.MessagePort", "SendRequest", "iay", arguments + data});
}

bool DeafConnection::call(const Call &call)
{
    QByteArray fields;
    addField(fields, 1, 'o', call.path);
    addField(fields, 2, 's', call.interface);
    addField(fields, 3, 's', call.member);
    addField(fields, 6, 's', call.destination);
    if (!call.signature.isEmpty())
        addField(fields, 8, 'g', call.signature);
    QByteArray message("l\1\0\1", 4); // little endian, a method call, no flags, version 1
    addNumber(message, static_cast<quint32>(call.body.size()));
    addNumber(message, ++mSerial);
    addNumber(message, static_cast<quint32>(fields.size()));
    message += fields;
    align(message, 8);
    return write(message + call.body);
}

bool DeafConnection::write(const QByteArray &bytes) const
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count =
            ::send(mSocket, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}
