// SPDX-License-Identifier: MIT
// Another program on the bus. It posts notifications of any size, whose bytes are not a dictionary.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

/// Owns a separate connection. Any thread.
class RawPoster
{
public:
    RawPoster() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName())) {}
    ~RawPoster() { QDBusConnection::disconnectFromBus(connectionName()); }
    Q_DISABLE_COPY_MOVE(RawPoster)

    void post(const QString &name, qsizetype bytes) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/DistributedNotificationCenter"),
            QStringLiteral("org.quillkestra.DistributedNotificationCenter"), QStringLiteral("Posted"));
        signal << name << QByteArray(bytes, 'x');
        mBus.send(signal);
    }

    /// Blocks until the bus has received all posted notifications.
    void waitUntilPosted() const { isAnswering(mBus); }

    /// Whether the bus answers a call over `connection` within `limitMs`; blocks meanwhile. An answer shows that all
    /// earlier messages of this connection were read.
    static bool isAnswering(const QDBusConnection &connection, int limitMs = 20'000)
    {
        const QDBusMessage question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
        return connection.call(question, QDBus::Block, limitMs).type() == QDBusMessage::ReplyMessage;
    }

private:
    [[nodiscard]] QString connectionName() const { return QStringLiteral("raw-poster-%1").arg(quintptr(this)); }

    QDBusConnection mBus;
};
