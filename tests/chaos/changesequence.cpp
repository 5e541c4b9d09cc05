// SPDX-License-Identifier: MIT
#include "tests/chaos/changesequence.h"

#include "base/settingskeys.h"

#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int maximumProfiles = 20;
constexpr int maximumMacros = 256;

int numberOf(const QVariantMap &request, QLatin1StringView key)
{
    return request.value(key).toInt();
}

QVariantMap settingsOf(const QVariantMap &request)
{
    return request.value(DaemonProtocol::deviceSettingsDictionary).toMap();
}

SettingsOutline::Profile profileOf(const QVariantMap &record)
{
    return {.name = record.value(SettingsKeys::profileName).toString(),
            .brightness = record.value(SettingsKeys::brightnessKbNormal).toInt()};
}

Status addProfile(const QVariantMap &request, SettingsOutline &outline)
{
    if (outline.profiles.size() == maximumProfiles)
        return Status::limitReached;
    outline.profiles += profileOf(settingsOf(request));
    outline.active = static_cast<int>(outline.profiles.size()) - 1;
    return Status::ok;
}

Status updateProfile(const QVariantMap &request, SettingsOutline &outline)
{
    const int row = numberOf(request, DaemonProtocol::profileId);
    if (row >= outline.profiles.size())
        return Status::indexOutOfRange;
    outline.profiles[row] = profileOf(settingsOf(request));
    return Status::ok;
}

Status deleteProfile(const QVariantMap &request, SettingsOutline &outline)
{
    const int row = numberOf(request, DaemonProtocol::profileId);
    if (row >= outline.profiles.size())
        return Status::indexOutOfRange;
    if (outline.profiles.size() == 1)
        return Status::lastProfile;
    outline.profiles.removeAt(row);
    if (row <= outline.active)
        outline.active = std::max(0, outline.active - 1);
    return Status::ok;
}

Status switchProfile(const QVariantMap &request, SettingsOutline &outline)
{
    const int row = numberOf(request, DaemonProtocol::profileId);
    if (row >= outline.profiles.size())
        return Status::indexOutOfRange;
    outline.active = row;
    return Status::ok;
}

Status addMacro(const QVariantMap &contents, SettingsOutline &outline)
{
    if (outline.macros.size() == maximumMacros)
        return Status::limitReached;
    outline.macros += contents.value(SettingsKeys::macroName).toString();
    return Status::ok;
}

Status renameMacro(const QVariantMap &contents, SettingsOutline &outline)
{
    const int row = numberOf(contents, SettingsKeys::macroId);
    if (row >= outline.macros.size())
        return Status::indexOutOfRange;
    outline.macros[row] = contents.value(SettingsKeys::macroName).toString();
    return Status::ok;
}

Status deleteMacro(const QVariantMap &request, SettingsOutline &outline)
{
    const int row = numberOf(request, DaemonProtocol::macroId);
    if (row >= outline.macros.size())
        return Status::indexOutOfRange;
    outline.macros.removeAt(row);
    return Status::ok;
}

} // namespace

SettingsOutline SettingsOutline::of(const QVariantMap &document)
{
    SettingsOutline outline;
    for (const QVariant &profile : document.value(SettingsKeys::profiles).toList())
        outline.profiles += profileOf(profile.toMap());
    for (const QVariant &macro : document.value(SettingsKeys::macros).toList())
        outline.macros += macro.toMap().value(SettingsKeys::macroName).toString();
    const QVariantMap device = document.value(SettingsKeys::deviceSettings).toMap();
    outline.active = device.value(SettingsKeys::activeProfile).toInt();
    return outline;
}

QString SettingsOutline::text() const
{
    QStringList names;
    for (const Profile &profile : profiles)
        names += u"%1/%2"_s.arg(profile.name).arg(profile.brightness);
    return u"profiles %1, active %2, macros %3"_s.arg(names.join(u' ')).arg(active).arg(macros.join(u' '));
}

RandomChange randomChange(QRandomGenerator &random, int number)
{
    // Sometimes a row that does not exist: the daemon must refuse such a request.
    const int row = random.bounded(random.bounded(4) == 0 ? maximumProfiles : 2);
    const QString name = QString::number(number);
    const QVariantMap profile{{SettingsKeys::profileName, name}, {SettingsKeys::brightnessKbNormal, random.bounded(5)}};
    switch (random.bounded(10)) {
    case 0:
    case 1: return {Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, profile}}};
    case 2: return {Command::deleteProfile, {{DaemonProtocol::profileId, row}}};
    case 3: return {Command::switchProfile, {{DaemonProtocol::profileId, row}}};
    case 4: return {Command::deleteMacro, {{DaemonProtocol::macroId, row}}};
    case 5:
        return {Command::addMacro,
                {{DaemonProtocol::macroContents, QVariantMap{{SettingsKeys::macroName, name},
                                                             {SettingsKeys::delay, 0},
                                                             {SettingsKeys::sequence, QVariantMap()}}}}};
    case 6:
        return {Command::renameMacro,
                {{DaemonProtocol::macroContents,
                  QVariantMap{{SettingsKeys::macroName, name}, {SettingsKeys::macroId, row}}}}};
    default:
        return {Command::updateProfile,
                {{DaemonProtocol::profileId, row}, {DaemonProtocol::deviceSettingsDictionary, profile}}};
    }
}

Status apply(const RandomChange &change, SettingsOutline &outline)
{
    const QVariantMap contents = change.request.value(DaemonProtocol::macroContents).toMap();
    switch (change.command) {
    case Command::addProfile: return addProfile(change.request, outline);
    case Command::updateProfile: return updateProfile(change.request, outline);
    case Command::deleteProfile: return deleteProfile(change.request, outline);
    case Command::switchProfile: return switchProfile(change.request, outline);
    case Command::addMacro: return addMacro(contents, outline);
    case Command::renameMacro: return renameMacro(contents, outline);
    case Command::deleteMacro: return deleteMacro(change.request, outline);
    default: return Status::unknownCommand;
    }
}
