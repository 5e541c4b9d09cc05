// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsrepair.h"

#include "base/settingskeys.h"
#include "daemon/settings/documentbounds.h"
#include "daemon/settings/requestreader.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/textnumbers.h"
#include "macros/macrorecord.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using SettingsKeys::Key;

/// The list under `key`, at most `maximum` entries of it.
QVariantList repairedList(const QVariantMap &document, Key key, qsizetype maximum, QStringList &repairs)
{
    const std::optional<QVariantList> list = RequestReader::array(document, key);
    if (!list) {
        repairs += u"\"%1\" was missing or not an array, and is empty"_s.arg(key);
        return {};
    }
    if (list->size() > maximum)
        repairs += u"of %1 entries of \"%2\", the first %3 stay"_s.arg(list->size()).arg(key).arg(maximum);
    return list->first(std::min(maximum, list->size()));
}

/// `record` without the fields that a profile cannot have.
QVariantMap withGoodFields(const QVariantMap &record)
{
    QVariantMap good;
    for (auto field = record.constBegin(); field != record.constEnd(); ++field) {
        if (SettingsDocument::isWellFormedProfile(QVariantMap{{field.key(), field.value()}}))
            good.insert(field.key(), field.value());
    }
    return good;
}

QVariantMap repairedProfile(QVariantMap record, const QString &defaultName)
{
    if (const auto keys = RequestReader::dictionary(record, SettingsKeys::keys)) {
        QVariantMap goodKeys = *keys;
        goodKeys.removeIf([](auto entry) { return entry.value().typeId() != QMetaType::QVariantMap; });
        record.insert(SettingsKeys::keys, goodKeys);
    }
    QVariantMap good = withGoodFields(record);
    if (record.contains(SettingsKeys::profileName) && !good.contains(SettingsKeys::profileName))
        good.insert(SettingsKeys::profileName, defaultName);
    return good;
}

QVariantList repairedProfiles(const QVariantMap &document, QStringList &repairs)
{
    QVariantList profiles = repairedList(document, SettingsKeys::profiles, SettingsDocument::maximumProfiles, repairs);
    for (qsizetype index = 0; index < profiles.size(); ++index) {
        QVariant &profile = profiles[index];
        if (SettingsDocument::isWellFormedProfile(profile))
            continue;
        const QString defaultName = u"Profile %1"_s.arg(index + 1);
        if (profile.typeId() == QMetaType::QVariantMap) {
            repairs += u"profile %1 had values of a wrong type, which are left out"_s.arg(index + 1);
            profile = repairedProfile(profile.toMap(), defaultName);
        } else {
            repairs += u"profile %1 was not a dictionary, and is empty"_s.arg(index + 1);
            profile = SettingsDocument::emptyProfile(defaultName);
        }
    }
    if (profiles.isEmpty()) {
        repairs += u"there was no profile, and there is an empty one"_s;
        profiles += SettingsDocument::emptyProfile(u"Default Profile"_s);
    }
    return profiles;
}

QVariantMap repairedMacro(const QVariant &value, qsizetype index, QStringList &repairs)
{
    const bool isRecord = value.typeId() == QMetaType::QVariantMap;
    QVariantMap record = value.toMap();
    if (isRecord && MacroRecord::isWellFormed(record))
        return record;
    record = TextNumbers::readInMacro(record);
    if (!RequestReader::text(record, SettingsKeys::macroName))
        record.insert(SettingsKeys::macroName, u"Macro %1"_s.arg(index + 1));
    // The pause of the macro is a number, like the pause of an event.
    if (!MacroRecord::isWellFormedEvent({{SettingsKeys::delay, record.value(SettingsKeys::delay, 0)}}))
        record.remove(SettingsKeys::delay);
    const bool hasGoodEvents = MacroRecord::isWellFormed(record);
    if (!isRecord || !hasGoodEvents)
        record = MacroRecord::withEvents(record, {});
    const QString repair = isRecord ? u"macro %1 had values of a wrong type"_s : u"macro %1 was not a dictionary"_s;
    repairs +=
        repair.arg(index + 1) + (isRecord && hasGoodEvents ? u", which are repaired"_s : u", and has no events"_s);
    return record;
}

QVariantList repairedMacros(const QVariantMap &document, QStringList &repairs)
{
    QVariantList macros = repairedList(document, SettingsKeys::macros, MacroRecord::maximumMacros, repairs);
    qsizetype eventCount = 0;
    for (qsizetype index = 0; index < macros.size(); ++index) {
        QVariantMap macro = repairedMacro(macros.at(index), index, repairs);
        const qsizetype events = MacroRecord::events(macro).size();
        if (eventCount + events > MacroRecord::maximumTotalEvents) {
            repairs += u"macro %1 had one event too many of all macros, and has none"_s.arg(index + 1);
            macro = MacroRecord::withEvents(macro, {});
        } else {
            eventCount += events;
        }
        macros[index] = macro;
    }
    return macros;
}

/// The index in `settings`, even if it is a decimal text; absent if there is none.
std::optional<int> activePosition(const QVariantMap &settings)
{
    if (const auto text = RequestReader::text(settings, SettingsKeys::activeProfile)) {
        bool isNumber = false;
        const int position = text->toInt(&isNumber);
        return isNumber ? std::optional(position) : std::nullopt;
    }
    return RequestReader::number(settings, SettingsKeys::activeProfile);
}

QVariantMap repairedDeviceSettings(const QVariantMap &document, qsizetype profileCount, QStringList &repairs)
{
    const auto settings = RequestReader::dictionary(document, SettingsKeys::deviceSettings);
    if (!settings)
        repairs += u"\"%1\" was missing or not a dictionary, and is empty"_s.arg(SettingsKeys::deviceSettings);
    QVariantMap repaired = settings.value_or(QVariantMap());
    if (SettingsDocument::isPosition(repaired.value(SettingsKeys::activeProfile), profileCount))
        return repaired;
    const int wanted = activePosition(repaired).value_or(0);
    const int position = SettingsDocument::isPosition(wanted, profileCount) ? wanted : 0;
    repaired.insert(SettingsKeys::activeProfile, position);
    repairs +=
        u"\"%1\" was not a position in \"%2\", and is %3"_s.arg(SettingsKeys::activeProfile, SettingsKeys::profiles)
            .arg(position);
    return repaired;
}

} // namespace

std::optional<RepairedSettings> repairedSettings(const QVariantMap &document)
{
    if (!RequestReader::array(document, SettingsKeys::profiles) && !RequestReader::array(document, SettingsKeys::macros)
        && !RequestReader::dictionary(document, SettingsKeys::deviceSettings))
        return {};
    if (SettingsDocument::validate(document))
        return RepairedSettings{.document = document, .repairs = {}};
    RepairedSettings result{.document = document, .repairs = {}};
    const QVariantList profiles = repairedProfiles(document, result.repairs);
    result.document.insert(SettingsKeys::profiles, profiles);
    result.document.insert(SettingsKeys::macros, repairedMacros(document, result.repairs));
    result.document.insert(SettingsKeys::deviceSettings,
                           repairedDeviceSettings(document, profiles.size(), result.repairs));
    if (const int count = leaveOutTheLargest(result.document); count > 0)
        result.repairs += u"the document was too large or nested too deeply, and %1 values are left out"_s.arg(count);
    return result;
}
