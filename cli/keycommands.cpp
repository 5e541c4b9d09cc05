// SPDX-License-Identifier: MIT
// "key": what a key does in the active profile, and every assignment it can be given.
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keyassignments.h"
#include "cli/keydescription.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"

using namespace Qt::StringLiterals;

namespace {

ExitCode showKey(CommandContext &context, const QVariantMap &document, int code)
{
    if (context.hasOption(Options::json))
        context.console.printJson(keyAsJson(document, code));
    else
        context.console.print(keyName(code) + u": "_s + describeKey(document, code));
    return ExitCode::ok;
}

/// What is wrong with the words after "key KEY" for this kind; empty when they fit.
QString problemOfWords(const CommandContext &context, const AssignmentKind &kind)
{
    const bool hasArgument = context.arguments.size() > 2;
    if (hasArgument && kind.argument.isEmpty())
        return u"\"key KEY %1\" takes nothing more"_s.arg(kind.word);
    if (!hasArgument && !kind.argument.isEmpty())
        return u"\"key KEY %1\" needs %2"_s.arg(kind.word, kind.argument);
    for (const QLatin1StringView option : {Options::modifiers, Options::repeat}) {
        if (context.hasOption(option) && kind.option != option)
            return u"\"key KEY %1\" takes no option %2"_s.arg(kind.word, option);
    }
    return {};
}

ExitCode assignKey(CommandContext &context, const QVariantMap &document, int code, const AssignmentKind &kind)
{
    const NewAssignment made = kind.make({.keyCode = code,
                                          .argument = context.arguments.value(2),
                                          .optionValue = context.optionValue(kind.option),
                                          .document = document});
    if (made.isRefused())
        return context.console.fail(ExitCode::usage, made.problem);
    const QVariantMap keys =
        KeyMappings::withEntry(activeProfileRecord(document).value(SettingsKeys::keys).toMap(),
                               KeyLayout::codeText(code), made.assignment, made.param1, made.param2);
    const DaemonClient::Answer answer = context.daemon.sendChecked(
        DaemonProtocol::Command::updateProfile,
        {{DaemonProtocol::profileId, activeProfileIndex(document)},
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
    const AssignmentKind *kind = nullptr;
    if (context.arguments.size() > 1) {
        kind = findAssignmentKind(context.arguments.at(1));
        if (!kind)
            return context.console.fail(
                ExitCode::usage, u"\"%1\" is no assignment (see kestractl help key)"_s.arg(context.arguments.at(1)));
        const QString problem = problemOfWords(context, *kind);
        if (!problem.isEmpty())
            return context.console.fail(ExitCode::usage, problem);
    } else if (context.hasOption(Options::modifiers) || context.hasOption(Options::repeat)) {
        return context.console.fail(ExitCode::usage,
                                    u"--modifiers and --repeat go with an assignment (see kestractl help key)"_s);
    }
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    return kind ? assignKey(context, document.reply, *code, *kind) : showKey(context, document.reply, *code);
}

QList<CommandForm> keyCommandForms()
{
    QList<CommandForm> forms{{.words = u"KEY [--json]"_s, .help = u"show what a key does in the active profile"_s}};
    for (const AssignmentKind &kind : assignmentKinds()) {
        QString words = u"KEY "_s + kind.word;
        if (!kind.argument.isEmpty())
            words += u' ' + kind.argument;
        if (!kind.option.isEmpty())
            words += u" [%1 %2]"_s.arg(kind.option, kind.optionValue);
        forms += {.words = words, .help = kind.help};
    }
    return forms;
}
