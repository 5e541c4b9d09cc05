// SPDX-License-Identifier: MIT
#include "cli/virtualkeyboardclient.h"

#include "base/daemonprotocol.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject virtualKeyboard{.path = DaemonProtocol::virtualKeyboardPath,
                                       .interface = DaemonProtocol::virtualKeyboardInterface,
                                       .words = "virtual keyboard"_L1};

} // namespace

DaemonObjectResult<QVariantList> VirtualKeyboardClient::call(QLatin1StringView method, const QVariantList &arguments)
{
    return virtualKeyboard.call(method, arguments);
}

std::optional<bool> VirtualKeyboardClient::isAttached()
{
    const DaemonObjectResult<QVariant> attached = virtualKeyboard.property("Attached"_L1);
    return attached ? std::optional(attached->toBool()) : std::nullopt;
}

std::optional<QString> VirtualKeyboardClient::shownLight()
{
    const DaemonObjectResult<QVariant> light = virtualKeyboard.property("Light"_L1);
    return light ? std::optional(light->toString()) : std::nullopt;
}

DaemonObjectResult<QList<uint>> VirtualKeyboardClient::sentKeys()
{
    const DaemonObjectResult<QVariant> keys = virtualKeyboard.property("SentKeys"_L1);
    if (!keys)
        return keys.error();
    return qdbus_cast<QList<uint>>(*keys);
}
