// SPDX-License-Identifier: MIT
#include "base/applicationmatch.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using ApplicationMatch::Strength;

namespace {

// Programs that start applications instead of being one.
constexpr std::array launchers{
    "bash"_L1, "dash"_L1, "env"_L1,    "flatpak"_L1, "gjs"_L1,  "java"_L1, "mono"_L1, "node"_L1,
    "perl"_L1, "php"_L1,  "python"_L1, "python3"_L1, "ruby"_L1, "sh"_L1,   "snap"_L1, "wine"_L1,
};

QString text(const QVariantMap &appInfo, QLatin1StringView key)
{
    const QVariant value = appInfo.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

bool isSame(const QString &a, const QString &b)
{
    return !a.isEmpty() && a.compare(b, Qt::CaseInsensitive) == 0;
}

QString withoutSuffix(const QString &entryId)
{
    constexpr auto suffix = ".desktop"_L1;
    return entryId.endsWith(suffix) ? entryId.chopped(suffix.size()) : entryId;
}

QString fileName(const QString &path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

bool isWindow(const QString &word, const FrontApplication &application)
{
    return isSame(word, application.windowClass) || isSame(word, application.windowInstance);
}

bool isEntry(const QString &word, const FrontApplication &application)
{
    return isSame(withoutSuffix(word), withoutSuffix(application.desktopEntry));
}

bool isExecutable(const QString &executable, const FrontApplication &application)
{
    const QString file = fileName(executable);
    if (std::ranges::find(launchers, file) != launchers.end())
        return false;
    // Different paths may still be one program: /usr/bin/game is often a link into /opt.
    return isSame(file, fileName(application.executable)) || isWindow(file, application);
}

} // namespace

Strength ApplicationMatch::strengthOf(const QVariantMap &appInfo, const FrontApplication &application)
{
    const QString identifier = text(appInfo, SettingsKeys::identifier);
    if (isEntry(identifier, application))
        return Strength::identifier;
    if (isWindow(text(appInfo, SettingsKeys::signature), application) || isWindow(identifier, application))
        return Strength::signature;
    if (isExecutable(text(appInfo, SettingsKeys::executable), application))
        return Strength::executable;
    const QString name = text(appInfo, SettingsKeys::application);
    return isWindow(name, application) || isEntry(name, application) ? Strength::name : Strength::none;
}

std::optional<int> ApplicationMatch::boundProfile(const QVariantList &profiles, const FrontApplication &application,
                                                  int active)
{
    if (application.isNone())
        return {};
    std::optional<int> best;
    Strength bestStrength = Strength::none;
    for (int index = 0; index < profiles.size(); ++index) {
        const QVariantMap profile = profiles.at(index).toMap();
        if (ProfileRecord::autoSwitchValue(profile) == 0)
            continue;
        const Strength strength = strengthOf(ProfileRecord::appInfo(profile), application);
        const bool isBetter = strength > bestStrength || (strength == bestStrength && index == active);
        if (strength != Strength::none && isBetter) {
            best = index;
            bestStrength = strength;
        }
    }
    return best;
}
