// SPDX-License-Identifier: MIT
#include "profiles/profilefile.h"

#include "base/settingskeys.h"
#include "base/uniquename.h"

QVariantMap ProfileFile::importedRecord(QVariantMap record, const QVariantList &profiles)
{
    const QVariant name = record.value(SettingsKeys::profileName);
    const bool isNamed = name.typeId() == QMetaType::QString && !name.toString().isEmpty();
    record.insert(SettingsKeys::profileName,
                  uniqueName(profiles, SettingsKeys::profileName, isNamed ? name.toString() : QString(untitledName)));
    return record;
}
