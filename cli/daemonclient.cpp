// SPDX-License-Identifier: MIT
#include "cli/daemonclient.h"

#include "base/plistnumbers.h"
#include "base/status.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int replyPortLimitMs = 5000;
constexpr std::chrono::milliseconds firmwareLimit{2000};

/// Why the daemon refuses, in the terms of its user.
QString reasonOf(int status)
{
    switch (static_cast<Status>(status)) {
    case Status::unknownCommand: return u"the daemon is of another version and does not know how"_s;
    case Status::malformedRequest: return u"the daemon cannot store such a value"_s;
    case Status::indexOutOfRange: return u"it does not exist"_s;
    case Status::limitReached: return u"there would be too many profiles, macros or events"_s;
    case Status::lastProfile: return u"it is the only one"_s;
    case Status::notSaved: return u"the settings file cannot be written (is the disk full?)"_s;
    case Status::deviceAbsent: return u"the keyboard is not attached"_s;
    case Status::nothingRecorded: return u"nothing was recorded"_s;
    case Status::busy: return u"the daemon has too many requests to carry out; try again"_s;
    case Status::ok: break;
    }
    return u"the daemon gives a reason that this version of kestractl does not know"_s;
}

} // namespace

DaemonClient::DaemonClient()
    // The process number keeps two kestractl that run at once from taking each other's replies.
    : mReplyPortName(u"KestractlReplyPort-%1"_s.arg(QCoreApplication::applicationPid()))
{
}

CommandResult<void> DaemonClient::reachDaemon()
{
    if (!sharedSessionBus().isConnected())
        return CommandError{{u"no session bus (is DBUS_SESSION_BUS_ADDRESS set?)"_s}, ExitCode::noDaemon};
    if (!RemoteMessagePort::open(DaemonProtocol::requestPortName))
        return CommandError{{u"the daemon is not running"_s}, ExitCode::noDaemon};
    if (mReplyPort)
        return {};
    auto port = std::make_unique<ReplyPort>(mReplyPortName);
    port->start();
    if (!port->waitUntilServing(replyPortLimitMs))
        return CommandError{{u"the session bus does not let kestractl receive answers"_s}, ExitCode::noReply};
    mReplyPort = std::move(port);
    return {};
}

QVariantMap DaemonClient::completed(QVariantMap request) const
{
    request.insert(DaemonProtocol::productIdKey, DaemonProtocol::productId);
    request.insert(DaemonProtocol::responsePortName, mReplyPortName);
    request.insert(DaemonProtocol::sourceApp, QString(DaemonProtocol::kestractlIdentifier));
    return request;
}

CommandResult<QVariantMap> DaemonClient::send(Command command, const QVariantMap &request)
{
    if (const CommandResult<void> reached = reachDaemon(); !reached)
        return reached.error();
    LatestReplySlot::shared().clear();
    sendDaemonRequest(completed(request), static_cast<qint32>(command));
    waitForReply();
    const std::optional<QVariantMap> reply = LatestReplySlot::shared().take();
    if (!reply)
        return CommandError{{u"the daemon did not answer in time"_s}, ExitCode::noReply};
    return *reply;
}

CommandResult<QVariantMap> DaemonClient::sendChecked(Command command, const QVariantMap &request,
                                                     const QString &failure)
{
    const CommandResult<QVariantMap> reply = send(command, request);
    if (!reply)
        return reply;
    const qint32 status = PlistNumbers::integerValue(reply->value(DaemonProtocol::returnStatus));
    if (status != 0)
        return CommandError{{failure + u": "_s + reasonOf(status)}, ExitCode::refused};
    return reply;
}

CommandResult<QVariantMap> DaemonClient::document()
{
    const QString failure = u"the settings cannot be read"_s;
    const CommandResult<QVariantMap> reply = sendChecked(Command::readSettings, {}, failure);
    if (!reply)
        return reply;
    const QVariant settings = reply->value(DaemonProtocol::allDevSettings);
    if (settings.metaType() != QMetaType::fromType<QVariantMap>())
        return CommandError{{failure + u": the daemon's answer does not contain them"_s}, ExitCode::refused};
    return settings.toMap();
}

std::optional<QString> DaemonClient::firmwareVersion()
{
    if (!reachDaemon())
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
