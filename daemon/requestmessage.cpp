// SPDX-License-Identifier: MIT
#include "daemon/requestmessage.h"

#include "base/daemonprotocol.h"
#include "daemon/settings/requestreader.h"
#include "platform/messageport.h"

std::optional<QString> replyPortOf(const QVariantMap &request)
{
    std::optional<QString> port = RequestReader::text(request, DaemonProtocol::responsePortName);
    const bool isReplyPort = port && port != DaemonProtocol::requestPortName && isMessagePortName(*port);
    return isReplyPort ? port : std::nullopt;
}
