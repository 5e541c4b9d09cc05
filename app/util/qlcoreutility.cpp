// SPDX-License-Identifier: MIT
#include "app/util/qlcoreutility.h"

std::optional<QByteArray> QlCoreUtility::convertDictionaryToData(const std::optional<QVariantMap> &) { return {}; }
std::optional<QVariantMap> QlCoreUtility::convertDataToDictionary(const std::optional<QByteArray> &) { return {}; }
QString QlCoreUtility::generateNameUsingDefaultName(const QVariantList &, const QString &defaultName) { return defaultName; }
