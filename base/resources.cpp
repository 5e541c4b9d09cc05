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

/// True if both have the same factory settings, including the types of all values.
bool haveSameFactorySettings(const QVariantMap &one, const QVariantMap &other)
{
    return PropertyList::writeBinary(one.value(SettingsKeys::defaultSettings))
           == PropertyList::writeBinary(other.value(SettingsKeys::defaultSettings));
}

/// Returns the content for the user's copy: `plist` with the values that the program stored in the older copy, `old`.
/// `installed` has the bytes of `plist`. Empty when the content cannot be serialised.
QByteArray copyContent(const QByteArray &installed, QVariantMap plist, const QVariantMap &old)
{
    const QVariant remembered = old.value(SettingsKeys::deviceInfo);
    if (remembered.typeId() != QMetaType::QVariantMap)
        return installed;
    plist.insert(SettingsKeys::deviceInfo, remembered);
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
    // Saving replaces the file by a rename, so the folder must also be writable.
    if (QFileInfo(installed).isWritable() && QFileInfo(resourceFolder()).isWritable())
        return installed;
    const QDir userFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/quill-kestra"_s);
    const QString copy = userFolder.filePath(fileName);
    const QVariantMap present = PropertyList::readPropertyListFile(copy).valueOr({});
    const QByteArray bytes = PropertyList::readFileBytes(installed).valueOr(QByteArray());
    const QVariantMap factory = QlCoreUtility::convertDataToDictionary(bytes).value_or(QVariantMap());
    // The copy is also used when it cannot be brought up to date.
    const QString fallback = holdsFactorySettings(present) ? copy : installed;
    if (!holdsFactorySettings(factory) || haveSameFactorySettings(present, factory))
        return fallback;
    const QByteArray content = copyContent(bytes, factory, present);
    // Written as a whole: a kill leaves no partial copy.
    if (content.isEmpty() || !userFolder.mkpath(u"."_s) || !PropertyList::writeFileAtomically(copy, content))
        return fallback;
    return copy;
}

std::optional<QVariantMap> readDefaultSettings(const QString &path)
{
    const auto plist = PropertyList::readPropertyListFile(path);
    return plist ? std::optional(plist->value(SettingsKeys::defaultSettings).toMap()) : std::nullopt;
}
