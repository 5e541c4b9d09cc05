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

DaemonObjectResult VirtualKeyboardClient::call(QLatin1StringView method, const QVariantList &arguments)
{
    return virtualKeyboard.call(method, arguments);
}

std::optional<bool> VirtualKeyboardClient::isAttached()
{
    DaemonObjectResult result;
    const std::optional<QVariant> attached = virtualKeyboard.property("Attached"_L1, result);
    return attached ? std::optional(attached->toBool()) : std::nullopt;
}

std::optional<QString> VirtualKeyboardClient::shownLight()
{
    DaemonObjectResult result;
    const std::optional<QVariant> light = virtualKeyboard.property("Light"_L1, result);
    return light ? std::optional(light->toString()) : std::nullopt;
}

std::optional<QList<uint>> VirtualKeyboardClient::sentKeys(DaemonObjectResult &result)
{
    const std::optional<QVariant> keys = virtualKeyboard.property("SentKeys"_L1, result);
    return keys ? std::optional(qdbus_cast<QList<uint>>(*keys)) : std::nullopt;
}
