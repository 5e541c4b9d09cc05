// SPDX-License-Identifier: MIT
// "profile list" and "profile switch".
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/recordchoice.h"
#include "profiles/applicationbinding.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QString profileName(const QVariant &profile)
{
    return profile.toMap().value(SettingsKeys::profileName).toString();
}

} // namespace

ExitCode listProfiles(CommandContext &context)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    const QVariantList profiles = document.reply.value(SettingsKeys::profiles).toList();
    const int active = activeProfileIndex(document.reply);
    QJsonArray list;
    for (int index = 0; index < profiles.size(); ++index) {
        const QString name = profileName(profiles.at(index));
        if (context.hasOption(Options::json))
            list.append(QJsonObject{{u"number"_s, index},
                                    {u"name"_s, name},
                                    {u"active"_s, index == active},
                                    {u"application"_s, ApplicationBinding::applicationOf(profiles.at(index).toMap())}});
        else
            context.console.print(u"%1%2  %3"_s.arg(QChar(index == active ? u'*' : u' ')).arg(index, 3).arg(name));
    }
    if (context.hasOption(Options::json))
        context.console.printJson(list);
    return ExitCode::ok;
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
    context.console.print(u"profile %1 \"%2\" is active"_s.arg(*number).arg(profileName(profiles.value(*number))));
    return ExitCode::ok;
}
