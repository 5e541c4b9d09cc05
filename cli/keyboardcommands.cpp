// SPDX-License-Identifier: MIT
// "keyboard …": what a hand would do to the virtual keyboard.
#include "base/hidpages.h"
#include "cli/commandtable.h"
#include "cli/virtualkeyboardclient.h"
#include "keys/keynames.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

ExitCode callKeyboard(CommandContext &context, QLatin1StringView method, const QVariantList &arguments = {})
{
    const DaemonObjectResult result = VirtualKeyboardClient::call(method, arguments);
    return result.failure == ExitCode::ok ? ExitCode::ok : context.console.fail(result.failure, result.reason);
}

ExitCode callWithKey(CommandContext &context, QLatin1StringView method)
{
    const QString &text = context.arguments.first();
    const std::optional<int> code = keyCodeForName(text);
    if (!code)
        return context.console.fail(ExitCode::usage, u"the keyboard has no key \"%1\""_s.arg(text));
    return callKeyboard(context, method, {uint{HidPages::keyboard}, static_cast<uint>(*code)});
}

} // namespace

ExitCode pressKey(CommandContext &context)
{
    return callWithKey(context, "Press"_L1);
}

ExitCode releaseKey(CommandContext &context)
{
    return callWithKey(context, "Release"_L1);
}

ExitCode showSentKeys(CommandContext &context)
{
    DaemonObjectResult result;
    const std::optional<QList<uint>> usages = VirtualKeyboardClient::sentKeys(result);
    if (!usages)
        return context.console.fail(result.failure, result.reason);
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
    return ExitCode::ok;
}

ExitCode attachKeyboard(CommandContext &context)
{
    return callKeyboard(context, "Attach"_L1);
}

ExitCode removeKeyboard(CommandContext &context)
{
    return callKeyboard(context, "Remove"_L1);
}

ExitCode pressGameMode(CommandContext &context)
{
    return callKeyboard(context, "PressGameMode"_L1);
}

ExitCode pressMacroKey(CommandContext &context)
{
    return callKeyboard(context, "PressMacroKey"_L1);
}

ExitCode setBrightness(CommandContext &context)
{
    if (context.arguments.first() == "up"_L1)
        return callKeyboard(context, "PressBrightnessUp"_L1);
    if (context.arguments.first() == "down"_L1)
        return callKeyboard(context, "PressBrightnessDown"_L1);
    bool isNumber = false;
    const int brightness = context.arguments.first().toInt(&isNumber);
    if (!isNumber)
        return context.console.fail(ExitCode::usage,
                                    u"\"%1\" is no number, up or down"_s.arg(context.arguments.first()));
    return callKeyboard(context, "SetBrightness"_L1, {brightness});
}
