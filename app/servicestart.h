// SPDX-License-Identifier: MIT
// Starts the keyboard service through the user's service manager (systemd), where both are installed. Never blocks: the
// calls on the session bus are asynchronous. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantList>

#include <functional>

class QDBusMessage;

class ServiceStart : public QObject
{
    Q_OBJECT

public:
    explicit ServiceStart(const QDBusConnection &bus, QObject *parent = nullptr);

    /// Asks whether the service manager has the service and may start it. Emits found() with the answer.
    void look();
    /// Emits failed() if the service manager refuses. A service that does not come has no signal.
    void start();

Q_SIGNALS:
    void found(bool canStart);
    void failed();

private:
    void callManager(const char *method, const QVariantList &arguments,
                     const std::function<void(const QDBusMessage &reply)> &whenAnswered);

    QDBusConnection mBus;
};
