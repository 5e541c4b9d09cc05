// SPDX-License-Identifier: MIT
#include "daemon/systemservices.h"

#include "base/qlcoreutility.h"
#include "daemon/launch/programlauncher.h"
#include "daemon/system/desktopnotices.h"
#include "daemon/system/logging.h"
#include "platform/messageport.h"

namespace {

void sendReply(const QString &portName, qint32 command, const QVariantMap &reply)
{
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(reply);
    if (!data) {
        qCCritical(lcRequests, "daemon: the reply to request %d cannot be written", command);
        return;
    }
    if (const std::optional<RemoteMessagePort> port = RemoteMessagePort::open(portName))
        port->post(command, *data);
    else
        qCWarning(lcRequests, "client: no port \"%s\" for the reply to request %d", qUtf8Printable(portName), command);
}

} // namespace

SystemServices::SystemServices(const QDBusConnection &bus, DesktopNotices &notices)
    : mNotices(notices), mNotifications(bus), mClientWatch(bus)
{
    connect(&mClientWatch, &ClientWatch::vanished, this, &SystemServices::clientVanished);
    connect(&mTimer, &DeadlineTimer::reached, this, &SystemServices::timeReached);
}

DaemonServices SystemServices::functions()
{
    return {
        .sendReply = sendReply,
        .postNotification = [this](const QString &name, const QVariantMap &info) { mNotifications.post(name, info); },
        .watchClient = [this](const QString &portName) { mClientWatch.watch(portName); },
        .watchedProgram = [this] { return mClientWatch.owner(); },
        .launchProgram = ProgramLauncher::launch,
        .now = DeadlineTimer::now,
        .wakeAt = [this](std::optional<DaemonServices::Time> time) { mTimer.setDeadline(time); },
        .showProfile = [this](const QString &name) { mNotices.showProfile(name); }};
}
