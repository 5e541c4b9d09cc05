// SPDX-License-Identifier: MIT
// A connection to the session bus that sends and never reads: messages to it accumulate in its socket and in the bus.
// It encodes the bus protocol itself, because bus libraries always read. The test's thread.
#pragma once

#include <QByteArray>
#include <QString>

class DeafConnection
{
public:
    DeafConnection() = default;
    ~DeafConnection();
    Q_DISABLE_COPY_MOVE(DeafConnection)

    /// Connects to the bus of DBUS_SESSION_BUS_ADDRESS and takes `name` there. Returns false on failure.
    [[nodiscard]] bool open(const QString &name);
    /// Sends a request to the daemon's request port; blocks while the bus accepts nothing. Returns false when the bus
    /// has closed the connection.
    [[nodiscard]] bool sendRequest(qint32 command, const QByteArray &data);

private:
    struct Call
    {
        QByteArray destination, path, interface, member, signature, body;
    };

    [[nodiscard]] bool call(const Call &call);
    [[nodiscard]] bool write(const QByteArray &bytes) const;

    int mSocket = -1;
    quint32 mSerial = 0;
};
