// SPDX-License-Identifier: MIT
#include "base/resources.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

bool holdsFactorySettings(const QVariantMap &plist)
{
    return plist.value(SettingsKeys::defaultSettings).typeId() == QMetaType::QVariantMap;
}

/// The installed file's bytes; where the copy that they replace, `old`, still has what the program remembers, with
/// that. Empty when the installed file is no good either.
QByteArray copyContent(const QString &installedPath, const QVariantMap &old)
{
    const PropertyList::FileBytes installed = PropertyList::readFileBytes(installedPath);
    std::optional<QVariantMap> plist = QlCoreUtility::convertDataToDictionary(installed.data);
    if (!plist || !holdsFactorySettings(*plist))
        return {};
    const QVariant remembered = old.value(SettingsKeys::deviceInfo);
    if (remembered.typeId() != QMetaType::QVariantMap)
        return installed.data;
    plist->insert(SettingsKeys::deviceInfo, remembered);
    return QlCoreUtility::convertDictionaryToData(plist).value_or(QByteArray());
}

} // namespace

QString resourceFolder()
{
    const QString chosen = qEnvironmentVariable("QUILL_KESTRA_RESOURCES");
    if (!chosen.isEmpty())
        return chosen;
    const QDir executableFolder(QCoreApplication::applicationDirPath());
    if (executableFolder.exists(u"resources"_s))
        return executableFolder.filePath(u"resources"_s);
    return QDir::cleanPath(executableFolder.filePath(u"../share/quill-kestra"_s));
}

QString resourcePath(const QString &fileName)
{
    return QDir(resourceFolder()).filePath(fileName);
}

QString kestraPlistPath()
{
    const QString fileName = u"Kestra.plist"_s;
    const QString installed = resourcePath(fileName);
    // Saving replaces the file by a rename, so the folder must be writable too.
    if (QFileInfo(installed).isWritable() && QFileInfo(resourceFolder()).isWritable())
        return installed;
    const QDir userFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/quill-kestra"_s);
    const QString copy = userFolder.filePath(fileName);
    const std::optional<QVariantMap> present = PropertyList::readPropertyListFile(copy);
    if (present && holdsFactorySettings(*present))
        return copy;
    const QByteArray content = copyContent(installed, present.value_or(QVariantMap()));
    // Written as a whole, so that a kill leaves no half a copy.
    if (content.isEmpty() || !userFolder.mkpath(u"."_s) || !PropertyList::writeFileAtomically(copy, content))
        return installed;
    return copy;
}

std::optional<QVariantMap> readDefaultSettings(const QString &path)
{
    const std::optional<QVariantMap> plist = PropertyList::readPropertyListFile(path);
    return plist ? std::optional(plist->value(SettingsKeys::defaultSettings).toMap()) : std::nullopt;
}
