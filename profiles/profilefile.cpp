// SPDX-License-Identifier: MIT
#include "profiles/profilefile.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"

bool ProfileFile::holdsProfile(const QVariantMap &record)
{
    return ProfileRecord::givenName(record) || ProfileRecord::ownKeys(record);
}

QVariantMap ProfileFile::importedRecord(QVariantMap record, const QVariantList &profiles)
{
    const QString name = ProfileRecord::givenName(record).value_or(QString());
    record.insert(SettingsKeys::profileName,
                  uniqueName(profiles, SettingsKeys::profileName, name.isEmpty() ? QString(untitledName) : name));
    return record;
}
