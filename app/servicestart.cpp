// SPDX-License-Identifier: MIT
#include "app/servicestart.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView unit{"quill-kestra-daemon.service"};

} // namespace

ServiceStart::ServiceStart(const QDBusConnection &bus, QObject *parent) : QObject(parent), mBus(bus) {}

void ServiceStart::look()
{
    callManager("GetUnitFileState", {QString(unit)}, [this](const QDBusMessage &reply) {
        const QString state = reply.arguments().value(0).toString();
        Q_EMIT found(reply.type() == QDBusMessage::ReplyMessage && !state.startsWith("masked"_L1));
    });
}

void ServiceStart::start()
{
    // A service that has failed too often does not start without this.
    callManager("ResetFailedUnit", {QString(unit)}, [](const QDBusMessage &) {});
    callManager("StartUnit", {QString(unit), u"replace"_s}, [this](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            Q_EMIT failed();
    });
}

void ServiceStart::callManager(const char *method, const QVariantList &arguments,
                               const std::function<void(const QDBusMessage &reply)> &whenAnswered)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.systemd1"_s, u"/org/freedesktop/systemd1"_s,
                                       u"org.freedesktop.systemd1.Manager"_s, QLatin1StringView(method));
    call.setArguments(arguments);
    // Without a service manager, the bus would try to start one.
    call.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, whenAnswered] {
        watcher->deleteLater();
        whenAnswered(watcher->reply());
    });
}
