// SPDX-License-Identifier: MIT
// "profile …": the profiles that the daemon keeps, by the rules of the configurator's profiles tab.
#include "base/document.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"
#include "cli/commandtable.h"
#include "cli/factoryprofile.h"
#include "cli/keydescription.h"
#include "cli/linewords.h"
#include "cli/recordcommands.h"
#include "platform/applicationinformation.h"
#include "profiles/applicationbinding.h"
#include "profiles/profilefile.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

RecordRow rowOf(const QVariantMap &document, int index, const QVariantMap &record)
{
    const QString name = ProfileRecord::name(record);
    const bool isActive = index == Document(document).activeProfileIndex();
    return {.line = QChar(isActive ? u'*' : u' ') + numberedLine(index, name),
            .object = {{u"index"_s, index},
                       {u"name"_s, name},
                       {u"active"_s, isActive},
                       {u"application"_s, ApplicationBinding::applicationOf(record)}}};
}

/// Sends a change of the profiles and prints the profile with `index` (negative: counted from the end) as the daemon
/// now holds it, with `outcome` behind it. `failure` begins the message of a refusal.
CommandResult<void> change(CommandContext &context, Command command, const QVariantMap &request, int index,
                           const QString &outcome, const QString &failure)
{
    const CommandResult<QVariantMap> reply = context.daemon.sendChecked(command, request, failure);
    if (!reply)
        return reply.error();
    const QVariantList profiles = Document(reply->value(DaemonProtocol::returnDictionary).toMap()).profiles();
    const int shown = index < 0 ? static_cast<int>(profiles.size()) + index : index;
    context.console.print(recordWords(profileKind, shown, profiles.value(shown).toMap()) + u' ' + outcome);
    return {};
}

CommandResult<void> addRecord(CommandContext &context, const QVariantMap &record)
{
    const QString name = ProfileRecord::name(record);
    return change(context, Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record}}, -1,
                  u"is active"_s, u"profile \"%1\" cannot be added"_s.arg(name));
}

CommandResult<void> updateRecord(CommandContext &context, const ChosenRecord &chosen, const QVariantMap &changes,
                                 const QString &outcome)
{
    return change(context, Command::updateProfile,
                  {{DaemonProtocol::profileId, chosen.index}, {DaemonProtocol::deviceSettingsDictionary, changes}},
                  chosen.index, outcome, chosen.words() + u" cannot be changed"_s);
}

/// The desktop entry with this ID, or the path itself.
QString applicationPath(const QString &application)
{
    if (application.contains(u'/') || QFileInfo::exists(application))
        return QFileInfo(application).absoluteFilePath();
    const QString file = application.endsWith(".desktop"_L1) ? application : application + u".desktop"_s;
    return QStandardPaths::locate(QStandardPaths::ApplicationsLocation, file);
}

} // namespace

CommandResult<void> listProfiles(CommandContext &context)
{
    return listRecords(context, profileKind, rowOf);
}

CommandResult<void> switchToProfile(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, profileKind);
    if (!chosen)
        return chosen.error();
    const CommandResult<QVariantMap> reply =
        context.daemon.sendChecked(Command::switchProfile, {{DaemonProtocol::profileId, chosen->index}},
                                   chosen->words() + u" cannot become active"_s);
    if (!reply)
        return reply.error();
    context.console.print(chosen->words() + u" is active"_s);
    return {};
}

CommandResult<void> addProfile(CommandContext &context)
{
    const QString name = context.arguments.value(0, QString(ProfileFile::untitledName));
    if (name.isEmpty())
        return missingName(profileKind);
    const CommandResult<QVariantMap> factory = factoryProfile();
    if (!factory)
        return factory.error();
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    QVariantMap record = *factory;
    record.insert(SettingsKeys::profileName,
                  uniqueName(Document(*document).profiles(), SettingsKeys::profileName, name));
    return addRecord(context, record);
}

CommandResult<void> copyProfile(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, profileKind);
    if (!chosen)
        return chosen.error();
    return addRecord(context, ProfileFile::importedRecord(chosen->record(), chosen->records));
}

CommandResult<void> renameProfile(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecordToRename(context, profileKind);
    if (!chosen)
        return chosen.error();
    const QString name = chosen->freeName(context.arguments.at(1));
    return updateRecord(context, *chosen, {{SettingsKeys::profileName, name}}, u"is renamed"_s);
}

CommandResult<void> deleteProfile(CommandContext &context)
{
    return deleteRecord(context, profileKind);
}

CommandResult<void> restoreProfile(CommandContext &context)
{
    const CommandResult<QVariantMap> factory = factoryProfile();
    if (!factory)
        return factory.error();
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, profileKind);
    if (!chosen)
        return chosen.error();
    QVariantMap record = *factory;
    record.insert(SettingsKeys::profileName, ProfileRecord::name(chosen->record()));
    return updateRecord(context, *chosen, record, u"has the factory settings"_s);
}

CommandResult<void> importProfile(CommandContext &context)
{
    const CommandResult<QVariantMap> record = readRecordFile(context, profileKind);
    if (!record)
        return record.error();
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    return addRecord(context, ProfileFile::importedRecord(*record, Document(*document).profiles()));
}

CommandResult<void> exportProfile(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, profileKind);
    if (!chosen)
        return chosen.error();
    return exportRecord(context, *chosen, chosen->record());
}

CommandResult<void> bindProfile(CommandContext &context)
{
    const bool isBound = context.arguments.size() > 1;
    if (isBound == context.hasOption(Options::off))
        return wrongUsage(u"\"profile bind\" needs either an application or --off"_s);
    QVariantMap information;
    if (isBound) {
        const QString &application = context.arguments.at(1);
        const auto read = ApplicationInformation::read(applicationPath(application));
        if (!read)
            return wrongUsage(u"\"%1\" is neither a desktop entry nor an application bundle"_s.arg(application));
        information = *read;
    }
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, profileKind);
    if (!chosen)
        return chosen.error();
    const QVariantMap appInfo = ProfileRecord::appInfo(chosen->record());
    if (!isBound)
        return updateRecord(
            context, *chosen,
            {{SettingsKeys::appInfo, ApplicationBinding::unbound(appInfo)}, {SettingsKeys::autoSwitchOn, false}},
            u"follows no application"_s);
    const QVariantMap changes{{SettingsKeys::appInfo, ApplicationBinding::bound(appInfo, information)},
                              {SettingsKeys::autoSwitchOn, 1}};
    return updateRecord(context, *chosen, changes, u"follows "_s + ApplicationBinding::applicationOf(changes));
}

QList<CommandForm> bindProfileForms()
{
    return {{.words = u"N|NAME APPLICATION"_s, .help = u"make a profile active while an application is in front"_s},
            {.words = u"N|NAME --off"_s, .help = u"make a profile follow no application"_s}};
}
