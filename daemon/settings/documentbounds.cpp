// SPDX-License-Identifier: MIT
#include "daemon/settings/documentbounds.h"

#include "base/document.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/treesize.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <vector>

namespace {

using SettingsKeys::Key;

constexpr std::array neededInDocument{SettingsKeys::profiles, SettingsKeys::macros, SettingsKeys::deviceSettings};
constexpr std::array neededInDevice{SettingsKeys::activeProfile};
constexpr std::array neededInProfile{SettingsKeys::keys};
constexpr std::array knownInProfile{
    SettingsKeys::appInfo,      SettingsKeys::autoSwitchOn,       SettingsKeys::profileOsdOn,
    SettingsKeys::backlightLed, SettingsKeys::ledKbColors,        SettingsKeys::ledKbEffects,
    SettingsKeys::scrollLed,    SettingsKeys::brightnessKbNormal, SettingsKeys::gameLightingOn};
constexpr std::array knownInMacro{SettingsKeys::macroId, SettingsKeys::delay, SettingsKeys::sequence};

enum class Worth { unknown, known, name };

/// A value of a record that can be left out.
struct Field
{
    QVariantMap *record;
    QString key;
    Worth worth;
    TreeSize size; // with its depth in the document

    [[nodiscard]] bool isTooDeep() const { return size.depth > SettingsDocument::maximumDepth; }
    /// The part of the bounds that it uses; the larger one.
    [[nodiscard]] double share() const
    {
        return std::max(double(size.nodes) / SettingsDocument::maximumNodes,
                        double(size.contentBytes) / SettingsDocument::maximumContentBytes);
    }
};

bool isAnyOf(std::span<const Key> keys, const QString &key)
{
    return std::ranges::find(keys, key) != keys.end();
}

Worth worthOf(const QString &key, std::span<const Key> known)
{
    if (key == SettingsKeys::profileName || key == SettingsKeys::macroName)
        return Worth::name;
    return isAnyOf(known, key) ? Worth::known : Worth::unknown;
}

/// Adds the entries of `record`, which is inside `depth` others, except those that are `needed`.
void addFields(std::vector<Field> &fields, QVariantMap &record, int depth, std::span<const Key> needed,
               const std::function<Worth(const QString &)> &worth)
{
    for (auto entry = record.constBegin(); entry != record.constEnd(); ++entry) {
        if (isAnyOf(needed, entry.key()))
            continue;
        Field field{.record = &record,
                    .key = entry.key(),
                    .worth = worth(entry.key()),
                    .size = TreeSize::ofEntry(entry.key(), entry.value())};
        if (field.worth == Worth::name) // only its text can be removed
            field.size = {.nodes = 0, .contentBytes = TreeSize::of(entry.value()).contentBytes, .depth = 1};
        field.size.depth += depth;
        fields.push_back(field);
    }
}

TreeSize difference(const TreeSize &size, const Field &field)
{
    return {.nodes = size.nodes - field.size.nodes, .contentBytes = size.contentBytes - field.size.contentBytes};
}

/// The one field without which a document of `size` fits. Of several, the one of least worth, then the largest.
/// `fields` must be in the order of their shares.
std::vector<Field>::const_iterator fieldToLeaveOut(const std::vector<Field> &fields, const TreeSize &size)
{
    auto best = fields.end();
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        if (SettingsDocument::isWithinBounds(difference(size, *field))
            && (best == fields.end() || field->worth < best->worth))
            best = field;
    }
    return best;
}

/// Removes `fields` until `size`, that of the document, is within the bounds.
int leaveOut(std::vector<Field> fields, TreeSize size)
{
    int count = 0;
    const auto leaveOutOne = [&](const Field &field) {
        size = difference(size, field);
        ++count;
        if (field.worth == Worth::name)
            field.record->insert(field.key, QString());
        else
            field.record->remove(field.key);
    };
    for (const Field &field : fields) {
        if (field.isTooDeep())
            leaveOutOne(field);
    }
    std::erase_if(fields, [](const Field &field) { return field.isTooDeep(); });
    size.depth = 0;
    std::ranges::sort(fields, std::ranges::greater(), &Field::share);
    if (SettingsDocument::isWithinBounds(size))
        return count;
    if (const auto field = fieldToLeaveOut(fields, size); field != fields.end()) {
        leaveOutOne(*field);
        return count;
    }
    for (const Field &field : fields) {
        if (SettingsDocument::isWithinBounds(size))
            break;
        leaveOutOne(field);
    }
    return count;
}

QList<QVariantMap> recordsIn(const QVariantList &list)
{
    QList<QVariantMap> records;
    for (const QVariant &value : list)
        records += value.toMap();
    return records;
}

} // namespace

int leaveOutTheLargest(QVariantMap &document)
{
    const TreeSize size = TreeSize::of(document);
    if (SettingsDocument::isWithinBounds(size))
        return 0;
    QVariantMap device = Document(document).deviceSettings().dictionary();
    QList<QVariantMap> profiles = recordsIn(Document(document).profiles());
    QList<QVariantMap> macros = recordsIn(Document(document).macros());
    std::vector<QVariantMap> keys(std::size_t(profiles.size()));

    std::vector<Field> fields;
    const auto isUnknown = [](const QString &) { return Worth::unknown; };
    addFields(fields, document, 1, neededInDocument, isUnknown);
    addFields(fields, device, 2, neededInDevice, isUnknown);
    for (qsizetype index = 0; index < profiles.size(); ++index) {
        QVariantMap &keysOfProfile = keys[std::size_t(index)];
        keysOfProfile = ProfileRecord::keys(profiles.at(index));
        addFields(fields, profiles[index], 3, neededInProfile,
                  [](const QString &key) { return worthOf(key, knownInProfile); });
        addFields(fields, keysOfProfile, 4, {}, [](const QString &) { return Worth::known; });
    }
    for (QVariantMap &macro : macros)
        addFields(fields, macro, 3, {}, [](const QString &key) { return worthOf(key, knownInMacro); });
    const int count = leaveOut(std::move(fields), size);

    for (qsizetype index = 0; index < profiles.size(); ++index) {
        if (profiles.at(index).contains(SettingsKeys::keys))
            profiles[index].insert(SettingsKeys::keys, keys[std::size_t(index)]);
    }
    document.insert(SettingsKeys::deviceSettings, device);
    document = SettingsDocument::withProfiles(document, QVariantList(profiles.begin(), profiles.end()));
    document = SettingsDocument::withMacros(document, QVariantList(macros.begin(), macros.end()));
    return count;
}
