// SPDX-License-Identifier: MIT
#include "cli/daemonclient.h"

#include "base/plistnumbers.h"
#include "base/status.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int replyPortLimitMs = 5000;
constexpr std::chrono::milliseconds firmwareLimit{2000};

DaemonClient::Answer failed(ExitCode code, const QString &reason)
{
    return {.reply = {}, .failure = code, .reason = reason};
}

} // namespace

DaemonClient::DaemonClient()
    // The process number keeps two kestractl that run at once from taking each other's replies.
    : mReplyPortName(u"KestractlReplyPort-%1"_s.arg(QCoreApplication::applicationPid()))
{
}

std::optional<DaemonClient::Answer> DaemonClient::failureToReachDaemon()
{
    if (!QDBusConnection::sessionBus().isConnected())
        return failed(ExitCode::noDaemon, u"no session bus (is DBUS_SESSION_BUS_ADDRESS set?)"_s);
    if (!RemoteMessagePort::open(DaemonProtocol::requestPortName))
        return failed(ExitCode::noDaemon, u"the daemon is not running (no port \"%1\" on the session bus)"_s.arg(
                                              DaemonProtocol::requestPortName));
    if (mReplyPort)
        return {};
    auto port = std::make_unique<ReplyPort>(mReplyPortName);
    port->start();
    if (!port->waitUntilServing(replyPortLimitMs))
        return failed(ExitCode::noAnswer, u"cannot open the reply port \"%1\""_s.arg(mReplyPortName));
    mReplyPort = std::move(port);
    return {};
}

QVariantMap DaemonClient::completed(QVariantMap request) const
{
    request.insert(DaemonProtocol::productIdKey, DaemonProtocol::productId);
    request.insert(DaemonProtocol::responsePortName, mReplyPortName);
    request.insert(DaemonProtocol::sourceApp, QString(kestractlIdentifier));
    return request;
}

DaemonClient::Answer DaemonClient::send(Command command, const QVariantMap &request)
{
    if (const auto failure = failureToReachDaemon())
        return *failure;
    LatestReplySlot::shared().clear();
    sendDaemonRequest(completed(request), static_cast<qint32>(command));
    waitForReply();
    const std::optional<QVariantMap> reply = LatestReplySlot::shared().take();
    if (!reply)
        return failed(ExitCode::noAnswer, u"the daemon did not answer command %1"_s.arg(static_cast<qint32>(command)));
    return {.reply = *reply, .failure = ExitCode::ok, .reason = {}};
}

DaemonClient::Answer DaemonClient::sendChecked(Command command, const QVariantMap &request)
{
    Answer answer = send(command, request);
    if (!answer.ok())
        return answer;
    const qint32 status = PlistNumbers::integerValue(answer.reply.value(DaemonProtocol::returnStatus));
    if (status != 0) {
        answer.failure = ExitCode::refused;
        answer.reason = u"the daemon refused command %1 with status %2 (%3)"_s.arg(static_cast<qint32>(command))
                            .arg(status)
                            .arg(statusName(static_cast<Status>(status)));
    }
    return answer;
}

DaemonClient::Answer DaemonClient::document()
{
    Answer answer = sendChecked(Command::readSettings);
    if (!answer.ok())
        return answer;
    const QVariant settings = answer.reply.value(DaemonProtocol::allDevSettings);
    if (settings.metaType() != QMetaType::fromType<QVariantMap>())
        return failed(ExitCode::refused, u"the daemon's answer holds no settings document"_s);
    return {.reply = settings.toMap(), .failure = ExitCode::ok, .reason = {}};
}

std::optional<QString> DaemonClient::firmwareVersion()
{
    if (failureToReachDaemon())
        return {};
    QObject observer;
    QEventLoop loop;
    std::optional<QString> version;
    DistributedNotificationCenter::defaultCenter().addObserver(
        &observer, DaemonProtocol::commandReplyNotification(DaemonProtocol::productId),
        [&](const DistributedNotification &notification) {
            const QVariantMap &info = notification.userInfo;
            if (PlistNumbers::integerValue(info.value(DaemonProtocol::messageId))
                != static_cast<int>(Command::queryFirmwareVersion))
                return;
            if (PlistNumbers::integerValue(info.value(DaemonProtocol::returnStatus)) == 0)
                version = info.value(DaemonProtocol::firmwareVersion).toString();
            loop.quit();
        });
    QTimer::singleShot(firmwareLimit, &loop, &QEventLoop::quit);
    sendDaemonRequest(completed({}), static_cast<qint32>(Command::queryFirmwareVersion));
    loop.exec();
    return version;
}
