// SPDX-License-Identifier: MIT
#include "daemonlink/daemontransport.h"

#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/messageport.h"

#include <atomic>

namespace {
constexpr int requestStatus = -50;
std::atomic<std::chrono::microseconds> currentPollInterval{replyPollInterval};
} // namespace

int sendDaemonRequest(const std::optional<QVariantMap> &request, int command, const std::function<void()> &meanwhile,
                      const std::function<void()> &whileWaiting)
{
    const std::optional<RemoteMessagePort> port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(request);
    if (port)
        (void)port->sendRequest(command, data.value_or(QByteArray()), requestSendTimeout, requestReceiveTimeout,
                                meanwhile, whileWaiting);
    else if (meanwhile)
        meanwhile();
    return requestStatus;
}

std::optional<QByteArray> replyPortCallback(int /*messageIdentifier*/, const std::optional<QByteArray> &data)
{
    if (!data)
        return {};
    LatestReplySlot::shared().replace(QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap()));
    return data;
}

void waitForReply(const std::function<void()> &whileWaiting)
{
    const LatestReplySlot &slot = LatestReplySlot::shared();
    for (int poll = 0; poll < replyPollCount && !slot.holdsReply(); ++poll) {
        slot.waitFor(currentPollInterval);
        if (whileWaiting && !slot.holdsReply())
            whileWaiting();
    }
}

std::chrono::microseconds replyTimeout()
{
    return replyPollCount * currentPollInterval.load();
}

void setReplyPollInterval(std::chrono::microseconds interval)
{
    currentPollInterval = interval;
}
