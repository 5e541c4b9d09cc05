// SPDX-License-Identifier: MIT
// "profile add", "copy", "rename", "delete", "restore", "import", "export" and "bind": what changes the profiles
// themselves, by the rules of the configurator's profiles tab.
#include "base/exportpath.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"
#include "cli/commandtable.h"
#include "cli/factoryprofile.h"
#include "cli/mappingrepair.h"
#include "cli/recordchoice.h"
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

/// 'profile 2 "Game"', for what is printed.
QString words(int number, const QVariantList &profiles)
{
    return u"profile %1 \"%2\""_s.arg(number).arg(
        profiles.value(number).toMap().value(SettingsKeys::profileName).toString());
}

/// The profile that the first argument names, and the document it is in.
struct ChosenProfile
{
    QVariantMap document;
    QVariantList profiles;
    int number = 0;

    [[nodiscard]] QVariantMap record() const { return profiles.at(number).toMap(); }
};

/// Absent when there is none; `failure` is then the exit code, and the reason has been said.
std::optional<ChosenProfile> choose(CommandContext &context, ExitCode &failure)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok()) {
        failure = context.console.fail(document.failure, document.reason);
        return {};
    }
    const QVariantList profiles = profilesOf(document.reply);
    QString problem;
    const auto number = existingRecordNumber(context.arguments.first(), profiles, profileKind, problem);
    if (!number) {
        failure = context.console.fail(ExitCode::usage, problem);
        return {};
    }
    return ChosenProfile{.document = document.reply, .profiles = profiles, .number = *number};
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
    context.console.print(words(shown, profiles) + u' ' + outcome);
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
        return context.console.fail(ExitCode::usage, u"a profile needs a name"_s);
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
    const auto chosen = choose(context, failure);
    return chosen ? addRecord(context, ProfileFile::importedRecord(chosen->record(), chosen->profiles)) : failure;
}

ExitCode renameProfile(CommandContext &context)
{
    const QString &name = context.arguments.at(1);
    if (name.isEmpty())
        return context.console.fail(ExitCode::usage, u"a profile needs a name"_s);
    ExitCode failure = ExitCode::ok;
    const auto chosen = choose(context, failure);
    if (!chosen)
        return failure;
    QVariantList others = chosen->profiles;
    others.removeAt(chosen->number);
    return updateRecord(context, chosen->number,
                        {{SettingsKeys::profileName, uniqueName(others, SettingsKeys::profileName, name)}},
                        u"is renamed"_s);
}

ExitCode deleteProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = choose(context, failure);
    if (!chosen)
        return failure;
    DaemonClient::Answer answer =
        context.daemon.sendChecked(Command::deleteProfile, {{DaemonProtocol::profileId, chosen->number}});
    if (answer.ok())
        answer =
            repairMappings(context.daemon, chosen->document, chosen->number, KeyMappings::Assignment::switchProfile);
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    context.console.print(words(chosen->number, chosen->profiles) + u" is deleted"_s);
    return ExitCode::ok;
}

ExitCode restoreProfile(CommandContext &context)
{
    std::optional<QVariantMap> record = factoryProfile();
    if (!record)
        return context.console.fail(ExitCode::usage, u"the factory settings cannot be read"_s);
    ExitCode failure = ExitCode::ok;
    const auto chosen = choose(context, failure);
    if (!chosen)
        return failure;
    record->insert(SettingsKeys::profileName, chosen->record().value(SettingsKeys::profileName));
    return updateRecord(context, chosen->number, *record, u"has the factory settings"_s);
}

ExitCode importProfile(CommandContext &context)
{
    const QString &path = context.arguments.first();
    const std::optional<QVariantMap> record = PropertyList::readPropertyListFile(path);
    if (!record)
        return context.console.fail(ExitCode::usage, u"\"%1\" cannot be read or is no profile file"_s.arg(path));
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok())
        return context.console.fail(document.failure, document.reason);
    return addRecord(context, ProfileFile::importedRecord(*record, profilesOf(document.reply)));
}

ExitCode exportProfile(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto chosen = choose(context, failure);
    if (!chosen)
        return failure;
    const QString path = exportPath(context.arguments.at(1), ProfileFile::suffix);
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(chosen->record());
    if (!data || !PropertyList::writeFileAtomically(path, *data))
        return context.console.fail(ExitCode::noOutput, u"cannot write \"%1\""_s.arg(path));
    context.console.print(words(chosen->number, chosen->profiles) + u" is in "_s + path);
    return ExitCode::ok;
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
    const auto chosen = choose(context, failure);
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
