// SPDX-License-Identifier: MIT
// "key": what a key does in the active profile, and the two assignments that need no further choice.
#include "app/util/qlcoreutility.h"
#include "app/util/resources.h"
#include "app/util/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"

#include <QFile>
#include <QVariantList>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

ExitCode showKey(CommandContext &context, const QVariantMap &document, int code)
{
    if (context.hasOption(Options::json))
        context.console.printJson(keyAsJson(document, code));
    else
        context.console.print(keyName(code) + u": "_s + describeKey(document, code));
    return ExitCode::ok;
}

/// "param1" of the key in the factory settings' first profile; 0 when it has none.
int defaultKeyParam1(int code)
{
    QFile file(resourcePath(u"Kestra.plist"_s));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QVariantMap resource = QlCoreUtility::convertDataToDictionary(file.readAll()).value_or(QVariantMap());
    const QVariantMap settings = resource.value(SettingsKeys::defaultSettings).toMap();
    const QVariantMap profile = settings.value(SettingsKeys::profiles).toList().value(0).toMap();
    return KeyMappings::entryForKey(profile, code).param1;
}

ExitCode assignKey(CommandContext &context, const QVariantMap &document, int code, Assignment assignment)
{
    const int param1 = assignment == Assignment::defaultKey ? defaultKeyParam1(code) : 0;
    const QVariantMap keys = KeyMappings::withEntry(activeProfileRecord(document).value(SettingsKeys::keys).toMap(),
                                                    KeyLayout::codeText(code), assignment, param1, 0);
    const QVariantMap deviceSettings = document.value(SettingsKeys::deviceSettings).toMap();
    const DaemonClient::Answer answer = context.daemon.sendChecked(
        DaemonProtocol::Command::updateProfile,
        {{DaemonProtocol::profileId, deviceSettings.value(SettingsKeys::activeProfile).toInt()},
         {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{SettingsKeys::keys, keys}}}});
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    // What is shown is what the daemon now holds, not what was asked for.
    return showKey(context, answer.reply.value(DaemonProtocol::returnDictionary).toMap(), code);
}

} // namespace

ExitCode showOrAssignKey(CommandContext &context)
{
    const QString keyText = context.arguments.first();
    const std::optional<int> code = keyCodeForName(keyText);
    if (!code)
        return context.console.fail(ExitCode::usage, u"the keyboard has no key \"%1\""_s.arg(keyText));
    std::optional<Assignment> assignment;
    if (context.arguments.size() == 2) {
        if (context.arguments.at(1) == "disable"_L1)
            assignment = Assignment::disabled;
        else if (context.arguments.at(1) == "default"_L1)
            assignment = Assignment::defaultKey;
        else
            return context.console.fail(ExitCode::usage, u"\"%1\" is neither disable nor default"_s.arg(context.arguments.at(1)));
    }
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    return assignment ? assignKey(context, document.reply, *code, *assignment) : showKey(context, document.reply, *code);
}
