// SPDX-License-Identifier: MIT
#include "profiles/profilefile.h"

#include "base/settingskeys.h"
#include "base/uniquename.h"

QString ProfileFile::freeName(const QVariantList &profiles, const QString &name)
{
    QStringList names;
    for (const QVariant &profile : profiles)
        names.append(profile.toMap().value(SettingsKeys::profileName).toString());
    return uniqueName(names, name);
}

QVariantMap ProfileFile::importedRecord(QVariantMap record, const QVariantList &profiles)
{
    const QVariant name = record.value(SettingsKeys::profileName);
    const bool isNamed = name.typeId() == QMetaType::QString && !name.toString().isEmpty();
    record.insert(SettingsKeys::profileName, freeName(profiles, isNamed ? name.toString() : QString(untitledName)));
    return record;
}
