// SPDX-License-Identifier: MIT
#include "cli/virtualkeyboardclient.h"

#include "base/daemonprotocol.h"
#include "base/hidpages.h"
#include "keys/keynames.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObjectClient virtualKeyboard{.path = DaemonProtocol::virtualKeyboardPath,
                                             .interface = DaemonProtocol::virtualKeyboardInterface,
                                             .words = "virtual keyboard"_L1};

CommandResult<void> sendKey(QLatin1StringView method, int code, const QString &failure)
{
    return virtualKeyboard.call(method, {uint{HidPages::keyboard}, static_cast<uint>(code)}, failure.arg(keyName(code)))
        .withoutValue<CommandError>();
}

} // namespace

DaemonObjectResult<QVariantList> VirtualKeyboardClient::call(QLatin1StringView method, const QVariantList &arguments,
                                                             const QString &failure)
{
    return virtualKeyboard.call(method, arguments, failure);
}

CommandResult<void> VirtualKeyboardClient::pressKey(int code)
{
    return sendKey("Press"_L1, code, u"the key %1 cannot be pressed"_s);
}

CommandResult<void> VirtualKeyboardClient::releaseKey(int code)
{
    return sendKey("Release"_L1, code, u"the key %1 cannot be released"_s);
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
