// SPDX-License-Identifier: MIT
// Named message ports over the session bus. A port NAME is the bus name org.quillkestra.NAME with the object
// /MessagePort, whose method SendRequest(i messageIdentifier, ay data) -> (ay answer) takes one message.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QStringView>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// A port of this process. Messages arrive on the thread of the object, which must run an event loop.
class LocalMessagePort : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.MessagePort")
    Q_CLASSINFO("D-Bus Introspection", "  <interface name=\"org.quillkestra.MessagePort\">\n"
                                       "    <method name=\"SendRequest\">\n"
                                       "      <arg name=\"messageIdentifier\" type=\"i\" direction=\"in\"/>\n"
                                       "      <arg name=\"data\" type=\"ay\" direction=\"in\"/>\n"
                                       "      <arg name=\"answer\" type=\"ay\" direction=\"out\"/>\n"
                                       "    </method>\n"
                                       "  </interface>\n")

public:
    /// Takes the message identifier and the data (absent when the message carried none); returns the answer, if any.
    using Callback =
        std::function<std::optional<QByteArray>(qint32 messageIdentifier, const std::optional<QByteArray> &data)>;

    /// Like Callback, with the unique name of the sender on the bus.
    using SenderCallback = std::function<std::optional<QByteArray>(const QString &sender, qint32 messageIdentifier,
                                                                   const std::optional<QByteArray> &data)>;

    /// Null when the name is taken, when `connection` already has a port, or when there is no bus. `connection` must
    /// stay open while the port exists.
    [[nodiscard]] static std::unique_ptr<LocalMessagePort> create(const QString &name, Callback callback,
                                                                  const QDBusConnection &connection);
    [[nodiscard]] static std::unique_ptr<LocalMessagePort> create(const QString &name, SenderCallback callback,
                                                                  const QDBusConnection &connection);
    ~LocalMessagePort() override;

public Q_SLOTS:
    Q_SCRIPTABLE QByteArray SendRequest(int messageIdentifier, const QByteArray &data);

private:
    LocalMessagePort(QString busName, SenderCallback callback, QDBusConnection connection);

    QString mBusName;
    SenderCallback mCallback;
    QDBusConnection mConnection;
    bool mHasObject = false;
    bool mHasName = false;
};

/// A handle to a port of another process. Any thread may use it; a send blocks that thread without a nested event loop.
class RemoteMessagePort
{
public:
    /// Why there is no answer.
    enum class SendError { sendTimeout, receiveTimeout, isInvalid };

    /// Asks the bus whether the name has an owner. Absent if it has none or is not a valid port name. Never starts a
    /// service.
    [[nodiscard]] static std::optional<RemoteMessagePort> open(const QString &name);

    /// A handle obtained without asking the bus, for callers that must not wait. Messages to a port that does not exist
    /// are lost. `name` must be a valid port name.
    [[nodiscard]] static RemoteMessagePort unchecked(const QString &name);

    /// Sends one message and returns its answer, for which it waits until at most `receiveTimeout` after sending. The
    /// bus accepts a message at once or not at all, so `sendTimeout` never expires. Pass an empty array for no data.
    /// `meanwhile` is called between sending and waiting; `whileWaiting` again and again during the wait, about 10 ms
    /// apart or less.
    Result<QByteArray, SendError> sendRequest(qint32 messageIdentifier, const QByteArray &data,
                                              std::chrono::milliseconds sendTimeout,
                                              std::chrono::milliseconds receiveTimeout,
                                              const std::function<void()> &meanwhile = {},
                                              const std::function<void()> &whileWaiting = {}) const;

    /// Sends one message without waiting for an answer.
    void post(qint32 messageIdentifier, const QByteArray &data) const;

private:
    explicit RemoteMessagePort(QString busName) : mBusName(std::move(busName)) {}

    QString mBusName;
};

/// Whether a port can have this name. The bus accepts ASCII letters, digits, "_" and "-" in elements separated by ".";
/// an element is not empty and does not begin with a digit. The whole bus name (messagePortBusName()) has at most 255
/// characters. A bus library ends a process that asks it about any other name.
[[nodiscard]] bool isMessagePortName(QStringView portName);

/// The unique name on the bus of the program that has the port; empty if none has it, or if it is not a valid port
/// name. Asks the bus, and waits for its answer.
[[nodiscard]] QString messagePortOwner(const QString &portName);

/// "org.quillkestra." + `portName`.
[[nodiscard]] QString messagePortBusName(const QString &portName);
