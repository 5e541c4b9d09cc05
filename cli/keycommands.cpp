// SPDX-License-Identifier: MIT
// "key": lists the keys; shows and changes the assignment of a key in the active profile.
#include "base/document.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keyassignments.h"
#include "cli/keydescription.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

void listKeys(CommandContext &context)
{
    QJsonArray list;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const QStringList names = keyNames(row.code);
        const bool isModifier = modifierBit(row.code) != 0;
        if (context.hasOption(Options::json)) {
            list.append(QJsonObject{{u"key"_s, keyName(row.code)},
                                    {u"code"_s, row.code},
                                    {u"names"_s, QJsonArray::fromStringList(names)},
                                    {u"modifier"_s, isModifier}});
            continue;
        }
        // Two spaces, because names contain single spaces, and one is a comma.
        const QString code = u"0x"_s + QString::number(row.code, 16).rightJustified(2, u'0');
        context.console.print((QStringList{code} + names).join(u"  "_s) + (isModifier ? u"  (modifier)"_s : QString()));
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
}

void showKey(CommandContext &context, const QVariantMap &document, int code)
{
    if (context.hasOption(Options::json))
        context.console.printJson(keyAsJson(document, code));
    else
        context.console.print(keyName(code) + u": "_s + describeKey(document, code));
}

/// Checks the words after "key KEY" and the options for this kind.
CommandResult<void> checkWords(const CommandContext &context, const AssignmentKind &kind)
{
    const bool hasArgument = context.arguments.size() > 2;
    if (hasArgument && kind.argument.isEmpty())
        return wrongUsage(u"\"key KEY %1\" takes nothing more"_s.arg(kind.word));
    if (!hasArgument && !kind.argument.isEmpty())
        return wrongUsage(u"\"key KEY %1\" needs %2"_s.arg(kind.word, kind.argument));
    for (const QLatin1StringView option : {Options::modifiers, Options::repeat}) {
        if (context.hasOption(option) && kind.option != option)
            return wrongUsage(u"\"key KEY %1\" takes no option %2"_s.arg(kind.word, option));
    }
    return {};
}

CommandResult<void> assignKey(CommandContext &context, const QVariantMap &document, int code,
                              const AssignmentKind &kind)
{
    const Result<NewAssignment> made = kind.make({.keyCode = code,
                                                  .argument = context.arguments.value(2),
                                                  .optionValue = context.optionValue(kind.option),
                                                  .document = document});
    if (!made)
        return wrongUsage(made.error().message);
    const QVariantMap keys =
        KeyMappings::withEntry(ProfileRecord::keys(Document(document).activeProfile()), KeyLayout::codeText(code),
                               made->assignment, made->param1, made->param2);
    const CommandResult<QVariantMap> reply = context.daemon.sendChecked(
        DaemonProtocol::Command::updateProfile,
        {{DaemonProtocol::profileId, Document(document).activeProfileIndex()},
         {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{SettingsKeys::keys, keys}}}},
        u"the key %1 cannot be changed"_s.arg(keyName(code)));
    if (!reply)
        return reply.error();
    // The daemon may hold something else than was asked for.
    showKey(context, reply->value(DaemonProtocol::returnDictionary).toMap(), code);
    return {};
}

} // namespace

CommandResult<void> showOrAssignKey(CommandContext &context)
{
    if (context.hasOption(Options::list)) {
        if (!context.arguments.isEmpty() || context.hasOption(Options::modifiers) || context.hasOption(Options::repeat))
            return wrongUsage(u"\"key --list\" takes nothing more than --json"_s);
        listKeys(context);
        return {};
    }
    if (context.arguments.isEmpty())
        return wrongUsage(u"\"key\" needs KEY or --list (see kestractl help key)"_s);
    const QString keyText = context.arguments.first();
    const std::optional<int> code = keyCodeForName(keyText);
    if (!code)
        return wrongUsage(u"the keyboard has no key \"%1\" (see kestractl key --list)"_s.arg(keyText));
    const AssignmentKind *kind = nullptr;
    if (context.arguments.size() > 1) {
        kind = findAssignmentKind(context.arguments.at(1));
        if (!kind)
            return wrongUsage(u"\"%1\" is not an assignment (see kestractl help key)"_s.arg(context.arguments.at(1)));
        if (const CommandResult<void> checked = checkWords(context, *kind); !checked)
            return checked;
    } else if (context.hasOption(Options::modifiers) || context.hasOption(Options::repeat)) {
        return wrongUsage(u"--modifiers and --repeat go with an assignment (see kestractl help key)"_s);
    }
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    if (kind)
        return assignKey(context, *document, *code, *kind);
    showKey(context, *document, *code);
    return {};
}

QList<CommandForm> keyCommandForms()
{
    QList<CommandForm> forms{
        {.words = u"--list [--json]"_s, .help = u"list the keys and modifier keys, with all their names"_s},
        {.words = u"KEY [--json]"_s, .help = u"show what a key does in the active profile"_s}};
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
