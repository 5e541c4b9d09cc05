// SPDX-License-Identifier: MIT
// "profile list" and "profile switch".
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/recordchoice.h"
#include "cli/recordcommands.h"
#include "profiles/applicationbinding.h"

using namespace Qt::StringLiterals;

namespace {

RecordRow rowOf(const QVariantMap &document, int number, const QVariantMap &record)
{
    const QString name = record.value(SettingsKeys::profileName).toString();
    const bool isActive = number == activeProfileIndex(document);
    return {.line = u"%1%2  %3"_s.arg(QChar(isActive ? u'*' : u' ')).arg(number, 3).arg(name),
            .object = {{u"number"_s, number},
                       {u"name"_s, name},
                       {u"active"_s, isActive},
                       {u"application"_s, ApplicationBinding::applicationOf(record)}}};
}

} // namespace

ExitCode listProfiles(CommandContext &context)
{
    return listRecords(context, profileKind, rowOf);
}

ExitCode switchToProfile(CommandContext &context)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    const QVariantList profiles = document.reply.value(SettingsKeys::profiles).toList();
    QString problem;
    const std::optional<int> number = recordNumber(context.arguments.first(), profiles, profileKind, problem);
    if (!number)
        return context.console.fail(ExitCode::usage, problem);
    const DaemonClient::Answer answer =
        context.daemon.sendChecked(DaemonProtocol::Command::switchProfile, {{DaemonProtocol::profileId, *number}});
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(recordWords(profileKind, *number, profiles.value(*number).toMap()) + u" is active"_s);
    return ExitCode::ok;
}
