// SPDX-License-Identifier: MIT
// A client of the daemon in the virtual machine, and the desktop's notification service. Writes the notifications that
// it receives, one a line. With the word "allow", its user clicks the button "allow" of each notification that has it.
// With the word "capture" it requests single keys until it is ended. With the words "login-manager FILE" it is the
// login manager instead: root's only session is active while the file says "own".
#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "tests/daemon/keyboards/linux/standinlogin.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileSystemWatcher>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void observe(DistributedNotificationCenter &center)
{
    using namespace DaemonProtocol;
    for (const Key name :
         {singleKeyEvent, illuminationUpdated, gameModePressed, savedNewOtfm, deviceAttached, deviceRemoved}) {
        center.addObserver(&center, name, [](const DistributedNotification &notification) {
            const QJsonObject values = QJsonObject::fromVariantMap(notification.userInfo);
            say(notification.name + u' ' + QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact)));
        });
    }
}

int serveLogins(const QString &path)
{
    StandInLogin login;
    login.set({{.id = u"1"_s, .user = 0, .seat = u"seat0"_s, .isActive = false}});
    const auto follow = [&login, &path] {
        QFile file(path);
        login.setActive(u"1"_s, file.open(QIODevice::ReadOnly) && file.readAll() == "own");
    };
    const QFileSystemWatcher watcher({path});
    QObject::connect(&watcher, &QFileSystemWatcher::fileChanged, &login, follow);
    follow();
    say(u"listening"_s);
    return QCoreApplication::exec();
}

} // namespace

/// org.freedesktop.Notifications.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public Q_SLOTS:
    Q_SCRIPTABLE uint Notify(const QString &, uint, const QString &, const QString &summary, const QString &body,
                             const QStringList &actions, const QVariantMap &, int)
    {
        say(u"shown: %1: %2"_s.arg(summary, body));
        if (allows && actions.contains("allow"_L1)) {
            QDBusMessage click = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                            u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s);
            click.setArguments({++mLastId, u"allow"_s});
            QDBusConnection::sessionBus().send(click);
            return mLastId;
        }
        return ++mLastId;
    }
    Q_SCRIPTABLE QStringList GetCapabilities() { return {u"actions"_s, u"body"_s}; }
    Q_SCRIPTABLE void CloseNotification(uint) { say(u"closed"_s); }

public:
    bool allows = false;

private:
    uint mLastId = 0;
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && QCoreApplication::arguments().at(1) == "login-manager"_L1)
        return serveLogins(QCoreApplication::arguments().at(2));
    QDBusConnection bus = QDBusConnection::sessionBus();
    NotificationService service;
    service.allows = QCoreApplication::arguments().contains(u"allow"_s);
    bus.registerObject(u"/org/freedesktop/Notifications"_s, &service, QDBusConnection::ExportScriptableSlots);
    if (!bus.registerService(u"org.freedesktop.Notifications"_s))
        return 1;
    DistributedNotificationCenter center(bus);
    observe(center);
    const QString portName = u"VirtualMachineClient"_s;
    const auto take = [](qint32 command, const std::optional<QByteArray> &) -> std::optional<QByteArray> {
        say(u"answer to %1"_s.arg(command));
        return {};
    };
    const std::unique_ptr<LocalMessagePort> port = LocalMessagePort::create(portName, take, bus);
    if (!port)
        return 1;
    if (QCoreApplication::arguments().contains(u"capture"_s)) {
        const std::optional<RemoteMessagePort> daemon = RemoteMessagePort::open(DaemonProtocol::requestPortName);
        const std::optional<QByteArray> request =
            QlCoreUtility::convertDictionaryToData(QVariantMap{{DaemonProtocol::responsePortName, portName}});
        if (!daemon || !request)
            return 1;
        daemon->post(static_cast<qint32>(DaemonProtocol::Command::startSingleKeyRecording), *request);
    }
    say(u"listening"_s);
    return QCoreApplication::exec();
}

#include "main.moc"
