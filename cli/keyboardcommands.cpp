// SPDX-License-Identifier: MIT
// "keyboard …": the actions of a hand on the virtual keyboard.
#include "base/hidpages.h"
#include "cli/commandtable.h"
#include "cli/virtualkeyboardclient.h"
#include "keys/keynames.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

CommandResult<void> callKeyboard(QLatin1StringView method, const QVariantList &arguments, const QString &failure)
{
    return VirtualKeyboardClient::call(method, arguments, failure).withoutValue<CommandError>();
}

CommandResult<void> withKey(const CommandContext &context, CommandResult<void> (*action)(int code))
{
    const QString &text = context.arguments.first();
    const std::optional<int> code = keyCodeForName(text);
    if (!code)
        return wrongUsage(u"the keyboard has no key \"%1\" (see kestractl key --list)"_s.arg(text));
    return action(*code);
}

} // namespace

CommandResult<void> pressKey(CommandContext &context)
{
    return withKey(context, VirtualKeyboardClient::pressKey);
}

CommandResult<void> releaseKey(CommandContext &context)
{
    return withKey(context, VirtualKeyboardClient::releaseKey);
}

CommandResult<void> showSentKeys(CommandContext &context)
{
    const DaemonObjectResult<QList<uint>> usages = VirtualKeyboardClient::sentKeys();
    if (!usages)
        return usages.error();
    QJsonArray list;
    for (const uint extendedUsage : *usages) {
        const int page = static_cast<int>(extendedUsage >> 16U);
        const int usage = static_cast<int>(extendedUsage & 0xFFFFU);
        const QString name = page == HidPages::keyboard ? keyName(usage) : QString();
        if (context.hasOption(Options::json))
            list.append(QJsonObject{{u"page"_s, page}, {u"usage"_s, usage}, {u"key"_s, name}});
        else
            context.console.print(name.isEmpty() ? u"page %1, usage %2"_s.arg(page).arg(usage) : name);
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return {};
}

CommandResult<void> attachKeyboard(CommandContext &)
{
    return callKeyboard("Attach"_L1, {}, u"the keyboard cannot be attached"_s);
}

CommandResult<void> removeKeyboard(CommandContext &)
{
    return callKeyboard("Remove"_L1, {}, u"the keyboard cannot be removed"_s);
}

CommandResult<void> pressGameMode(CommandContext &)
{
    return callKeyboard("PressGameMode"_L1, {}, u"game mode cannot be switched"_s);
}

CommandResult<void> pressMacroKey(CommandContext &)
{
    return callKeyboard("PressMacroKey"_L1, {}, u"the Macro key cannot be pressed"_s);
}

CommandResult<void> setBrightness(CommandContext &context)
{
    const QString failure = u"the brightness cannot be changed"_s;
    if (context.arguments.first() == "up"_L1)
        return callKeyboard("PressBrightnessUp"_L1, {}, failure);
    if (context.arguments.first() == "down"_L1)
        return callKeyboard("PressBrightnessDown"_L1, {}, failure);
    bool isNumber = false;
    const int brightness = context.arguments.first().toInt(&isNumber);
    if (!isNumber)
        return wrongUsage(u"\"%1\" is neither a number nor up or down"_s.arg(context.arguments.first()));
    return callKeyboard("SetBrightness"_L1, {brightness}, failure);
}
