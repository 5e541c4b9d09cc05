// SPDX-License-Identifier: MIT
#include "keys/assignmentclip.h"

#include "base/plistnumbers.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"

#include <QMimeData>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

const QString mimeType = u"application/x-quill-kestra-assignment"_s;
constexpr QLatin1StringView recordNameKey{"RecordName"};

bool isKnown(Assignment assignment)
{
    return assignment == Assignment::defaultKey
           || KeyMappings::checkPopUpAssignmentIndexForValue(static_cast<qint32>(assignment))
                  != KeyMappings::defaultKeyPosition;
}

// A program has a path, every other assignment a number.
bool hasParameters(const KeyMappings::Entry &entry)
{
    return entry.is(Assignment::launchProgram) == !entry.programPath.isEmpty();
}

} // namespace

QMimeData *AssignmentClip::toMimeData(const QString &text) const
{
    auto *data = new QMimeData;
    data->setText(text);
    const QVariantMap content{{SettingsKeys::command, static_cast<qint32>(assignment)},
                              {SettingsKeys::param1, param1},
                              {SettingsKeys::param2, param2},
                              {recordNameKey, recordName}};
    if (const std::optional<QByteArray> bytes = PropertyList::writeBinary(content))
        data->setData(mimeType, *bytes);
    return data;
}

std::optional<AssignmentClip> AssignmentClip::fromMimeData(const QMimeData *data)
{
    if (!data || !data->hasFormat(mimeType))
        return std::nullopt;
    const QByteArray bytes = data->data(mimeType);
    const std::optional<QVariant> root = PropertyList::read(bytes);
    if (!root || root->typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap content = root->toMap();
    const KeyMappings::Entry entry = KeyMappings::readEntry(content);
    AssignmentClip clip{.assignment = static_cast<Assignment>(entry.command),
                        .param1 = entry.param1,
                        .param2 = entry.param2,
                        .recordName = content.value(recordNameKey).toString()};
    if (clip.assignment == Assignment::launchProgram) {
        clip.param1 = entry.programPath;
        clip.param2 = QString();
    }
    return isKnown(clip.assignment) && hasParameters(entry) ? std::optional(clip) : std::nullopt;
}
