// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsdocument.h"

#include "base/document.h"
#include "base/plistnumbers.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "daemon/settings/treesize.h"
#include "macros/macrorecord.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int greatestMacroId = 2'000'000'000; // far from overflow; a greater one in a file is replaced by a new one

bool isAbsentOr(QMetaType::Type type, const QVariantMap &dictionary, QLatin1StringView key)
{
    const auto found = dictionary.constFind(key);
    return found == dictionary.constEnd() || found->typeId() == type;
}

Result<void> validateMacros(const QVariantList &macros)
{
    if (macros.size() > MacroRecord::maximumMacros)
        return Error{u"%1 macros"_s.arg(macros.size())};
    qsizetype eventCount = 0;
    for (qsizetype index = 0; index < macros.size(); ++index) {
        if (macros.at(index).typeId() != QMetaType::QVariantMap || !MacroRecord::isWellFormed(macros.at(index).toMap()))
            return Error{u"macro %1 is not a macro record"_s.arg(index + 1)};
        eventCount += MacroRecord::events(macros.at(index).toMap()).size();
    }
    if (eventCount > MacroRecord::maximumTotalEvents)
        return Error{
            u"%1 events; all macros together have at most %2"_s.arg(eventCount).arg(MacroRecord::maximumTotalEvents)};
    return {};
}

int usableMacroId(int id)
{
    return id > 0 && id <= greatestMacroId ? id : 0;
}

QVariantMap withMacroIds(QVariantMap document)
{
    QVariantList macros = Document(document).macros();
    int lastId = usableMacroId(Document(document).deviceSettings().lastMacroId());
    for (const QVariant &macro : std::as_const(macros))
        lastId = std::max(lastId, usableMacroId(MacroRecord::macroId(macro.toMap())));

    QSet<int> taken;
    for (QVariant &macro : macros) {
        QVariantMap record = macro.toMap();
        const int id = usableMacroId(MacroRecord::macroId(record));
        if (id != 0 && !taken.contains(id)) {
            taken.insert(id);
            continue;
        }
        taken.insert(++lastId);
        record.insert(SettingsKeys::macroId, lastId);
        macro = record;
    }
    document = SettingsDocument::withMacros(document, macros);
    return SettingsDocument::withDeviceSetting(document, SettingsKeys::lastMacroId, lastId);
}

} // namespace

bool SettingsDocument::isPosition(const QVariant &value, qsizetype count)
{
    const bool isWholeNumber = value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong;
    return isWholeNumber && value.toLongLong() >= 0 && value.toLongLong() < count;
}

bool SettingsDocument::isWithinBounds(const TreeSize &size)
{
    return size.nodes <= maximumNodes && size.contentBytes <= maximumContentBytes && size.depth <= maximumDepth;
}

Result<void> SettingsDocument::validate(const QVariantMap &document)
{
    if (document.value(SettingsKeys::profiles).typeId() != QMetaType::QVariantList
        || document.value(SettingsKeys::macros).typeId() != QMetaType::QVariantList
        || document.value(SettingsKeys::deviceSettings).typeId() != QMetaType::QVariantMap)
        return Error{u"\"Profiles\", \"Macros\" or \"DeviceSettings\" is missing or of the wrong type"_s};

    const QVariantList profileList = Document(document).profiles();
    if (profileList.isEmpty() || profileList.size() > maximumProfiles)
        return Error{u"%1 profiles"_s.arg(profileList.size())};
    for (qsizetype index = 0; index < profileList.size(); ++index) {
        if (!isWellFormedProfile(profileList.at(index)))
            return Error{u"profile %1 is not a profile record"_s.arg(index + 1)};
    }

    const QVariantMap deviceSettings = Document(document).deviceSettings().dictionary();
    if (!isPosition(deviceSettings.value(SettingsKeys::activeProfile), profileList.size()))
        return Error{u"\"ActiveProfile\" is not an index of \"Profiles\""_s};
    if (const Result<void> macros = validateMacros(Document(document).macros()); !macros)
        return macros;
    if (!isWithinBounds(TreeSize::of(document)))
        return Error{u"too large, or nested too deeply"_s};
    return {};
}

QVariantMap SettingsDocument::completed(QVariantMap document)
{
    document = withMacroIds(document);
    document = withDeviceSetting(document, SettingsKeys::gameMode, Document(document).deviceSettings().isGameModeOn());
    const Document read(document);
    const QVariant osd = read.activeProfile().value(SettingsKeys::profileOsdOn);
    const bool deviceHasOsd = read.deviceSettings().dictionary().contains(SettingsKeys::profileOsdOn);
    if (osd.isValid() || !deviceHasOsd)
        document =
            withDeviceSetting(document, SettingsKeys::profileOsdOn, PlistNumbers::integerValue(osd) != 0 ? 1 : 0);
    return document;
}

QVariantMap SettingsDocument::minimal()
{
    return completed({{SettingsKeys::profiles, QVariantList{emptyProfile(u"Default Profile"_s)}},
                      {SettingsKeys::macros, QVariantList()},
                      {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 0}}}});
}

QVariantMap SettingsDocument::emptyProfile(const QString &name)
{
    return {{SettingsKeys::profileName, name}, {SettingsKeys::keys, QVariantMap()}};
}

bool SettingsDocument::hasOtherProfileActive(const QVariantMap &before, const QVariantMap &after)
{
    const Document earlier(before);
    const Document later(after);
    if (earlier.activeProfile() == later.activeProfile())
        return false;
    // After a deletion, another profile may be at the same index.
    return earlier.activeProfileIndex() != later.activeProfileIndex()
           || later.profiles().size() < earlier.profiles().size();
}

QVariantMap SettingsDocument::withProfiles(QVariantMap document, const QVariantList &profiles)
{
    document.insert(SettingsKeys::profiles, profiles);
    return document;
}

QVariantMap SettingsDocument::withMacros(QVariantMap document, const QVariantList &macros)
{
    document.insert(SettingsKeys::macros, macros);
    return document;
}

QVariantMap SettingsDocument::withActiveProfile(QVariantMap document, int index)
{
    return withDeviceSetting(std::move(document), SettingsKeys::activeProfile, index);
}

QVariantMap SettingsDocument::withDeviceSetting(QVariantMap document, QLatin1StringView key, const QVariant &value)
{
    QVariantMap settings = Document(document).deviceSettings().dictionary();
    settings.insert(key, value);
    document.insert(SettingsKeys::deviceSettings, settings);
    return document;
}

bool SettingsDocument::isWellFormedProfile(const QVariant &profile)
{
    if (profile.typeId() != QMetaType::QVariantMap)
        return false;
    const QVariantMap record = profile.toMap();
    if (!isAbsentOr(QMetaType::QString, record, SettingsKeys::profileName)
        || !isAbsentOr(QMetaType::QVariantMap, record, SettingsKeys::keys)
        || !isAbsentOr(QMetaType::QVariantMap, record, SettingsKeys::appInfo)
        || !isAbsentOr(QMetaType::QVariantList, record, SettingsKeys::ledKbColors))
        return false;
    const QVariantMap keys = ProfileRecord::keys(record);
    return std::ranges::all_of(keys, [](const QVariant &entry) { return entry.typeId() == QMetaType::QVariantMap; });
}
