// SPDX-License-Identifier: MIT
// "profile add", "copy", "rename", "delete", "restore", "import", "export" and "bind": what changes the profiles
// themselves, by the rules of the configurator's profiles tab.
#include "base/settingskeys.h"
#include "base/uniquename.h"
#include "cli/commandtable.h"
#include "cli/factoryprofile.h"
#include "cli/recordcommands.h"
#include "platform/applicationinformation.h"
#include "profiles/applicationbinding.h"
#include "profiles/profilefile.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

QVariantList profilesOf(const QVariantMap &document)
{
    return document.value(SettingsKeys::profiles).toList();
}

/// Sends a change of the profiles and prints the profile `number` (negative: counted from the end) as the daemon now
/// holds it, with `outcome` behind it.
ExitCode change(CommandContext &context, Command command, const QVariantMap &request, int number,
                const QString &outcome)
{
    const DaemonClient::Answer answer = context.daemon.sendChecked(command, request);
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    const QVariantList profiles = profilesOf(answer.reply.value(DaemonProtocol::returnDictionary).toMap());
    const int shown = number < 0 ? static_cast<int>(profiles.size()) + number : number;
    context.console.print(recordWords(profileKind, shown, profiles.value(shown).toMap()) + u' ' + outcome);
    return ExitCode::ok;
}

ExitCode addRecord(CommandContext &context, const QVariantMap &record)
{
    return change(context, Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record}}, -1,
                  u"is active"_s);
}

ExitCode updateRecord(CommandContext &context, int number, const QVariantMap &changes, const QString &outcome)
{
    return change(context, Command::updateProfile,
                  {{DaemonProtocol::profileId, number}, {DaemonProtocol::deviceSettingsDictionary, changes}}, number,
                  outcome);
}

/// The desktop entry with this id, or the path itself.
QString applicationPath(const QString &application)
{
    if (application.contains(u'/') || QFileInfo::exists(application))
        return QFileInfo(application).absoluteFilePath();
    const QString file = application.endsWith(".desktop"_L1) ? application : application + u".desktop"_s;
    return QStandardPaths::locate(QStandardPaths::ApplicationsLocation, file);
}

} // namespace

ExitCode addProfile(CommandContext &context)
{
    const QString name = context.arguments.value(0, QString(ProfileFile::untitledName));
    if (name.isEmpty())
        return failWithoutName(context, profileKind);
    std::optional<QVariantMap> record = factoryProfile();
    if (!record)
        return context.console.fail(ExitCode::usage, u"the factory settings cannot be read"_s);
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    record->insert(SettingsKeys::profileName, uniqueName(profilesOf(document.reply), SettingsKeys::profileName, name));
    return addRecord(context, *record);
}

ExitCode copyProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, profileKind, failure);
    return chosen ? addRecord(context, ProfileFile::importedRecord(chosen->record(), chosen->records)) : failure;
}

ExitCode renameProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecordToRename(context, profileKind, failure);
    if (!chosen)
        return failure;
    return updateRecord(context, chosen->number,
                        {{SettingsKeys::profileName, chosen->freeName(context.arguments.at(1))}}, u"is renamed"_s);
}

ExitCode deleteProfile(CommandContext &context)
{
    return deleteRecord(context, profileKind);
}

ExitCode restoreProfile(CommandContext &context)
{
    std::optional<QVariantMap> record = factoryProfile();
    if (!record)
        return context.console.fail(ExitCode::usage, u"the factory settings cannot be read"_s);
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, profileKind, failure);
    if (!chosen)
        return failure;
    record->insert(SettingsKeys::profileName, chosen->record().value(SettingsKeys::profileName));
    return updateRecord(context, chosen->number, *record, u"has the factory settings"_s);
}

ExitCode importProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto record = readRecordFile(context, profileKind, failure);
    if (!record)
        return failure;
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    return addRecord(context, ProfileFile::importedRecord(*record, profilesOf(document.reply)));
}

ExitCode exportProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, profileKind, failure);
    return chosen ? exportRecord(context, *chosen, chosen->record()) : failure;
}

ExitCode bindProfile(CommandContext &context)
{
    const bool isBound = context.arguments.size() > 1;
    if (isBound == context.hasOption(Options::off))
        return context.console.fail(ExitCode::usage, u"\"profile bind\" needs either an application or --off"_s);
    QVariantMap information;
    if (isBound) {
        const QString &application = context.arguments.at(1);
        const auto read = ApplicationInformation::read(applicationPath(application));
        if (!read)
            return context.console.fail(
                ExitCode::usage, u"\"%1\" is neither a desktop entry nor an application bundle"_s.arg(application));
        information = *read;
    }
    ExitCode failure = ExitCode::ok;
    const auto chosen = chooseRecord(context, profileKind, failure);
    if (!chosen)
        return failure;
    const QVariantMap appInfo = chosen->record().value(SettingsKeys::appInfo).toMap();
    if (!isBound)
        return updateRecord(
            context, chosen->number,
            {{SettingsKeys::appInfo, ApplicationBinding::unbound(appInfo)}, {SettingsKeys::autoSwitchOn, false}},
            u"follows no application"_s);
    const QVariantMap bound = ApplicationBinding::bound(appInfo, information);
    return updateRecord(context, chosen->number, {{SettingsKeys::appInfo, bound}, {SettingsKeys::autoSwitchOn, 1}},
                        u"follows "_s + bound.value(SettingsKeys::application).toString());
}
