// SPDX-License-Identifier: MIT
#include "macros/macrofile.h"

#include "base/qlcoreutility.h"
#include "base/settingskeys.h"

QVariantMap MacroFile::exportedRecord(QVariantMap record)
{
    record.remove(SettingsKeys::macroId);
    return record;
}

QVariantMap MacroFile::importedRecord(QVariantMap record, const QVariantList &macros)
{
    const QVariant name = record.value(SettingsKeys::macroName);
    const bool isNamed = name.typeId() == QMetaType::QString && !name.toString().isEmpty();
    record.insert(SettingsKeys::macroName,
                  QlCoreUtility::generateNameUsingDefaultName(macros, isNamed ? name.toString() : untitledName));
    return record;
}
