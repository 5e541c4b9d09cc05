// SPDX-License-Identifier: MIT
#include "base/qlcoreutility.h"

#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"

std::optional<QByteArray> QlCoreUtility::convertDictionaryToData(const std::optional<QVariantMap> &dictionary)
{
    return dictionary ? PropertyList::writeBinary(*dictionary) : std::nullopt;
}

std::optional<QVariantMap> QlCoreUtility::convertDataToDictionary(const std::optional<QByteArray> &data)
{
    const std::optional<QVariant> root = data ? PropertyList::read(*data) : std::nullopt;
    if (!root || root->typeId() != QMetaType::QVariantMap)
        return {};
    return root->toMap();
}

QString QlCoreUtility::generateNameUsingDefaultName(const QVariantList &macros, const QString &defaultName)
{
    return uniqueName(macros, SettingsKeys::macroName, defaultName);
}
