// SPDX-License-Identifier: MIT
#include "platform/applicationinformation.h"

#include "base/propertylist.h"
#include "platform/desktopentry.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView entrySuffix{"desktop"};
constexpr QLatin1StringView bundleSuffix{"app"};
constexpr QLatin1StringView informationFile{"Contents/Info.plist"};

std::optional<QVariantMap> readEntry(const QFileInfo &file)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(file.filePath());
    if (!entry || entry->text(u"Type"_s) != "Application"_L1)
        return std::nullopt;
    QVariantMap information{
        {ApplicationInformation::resolvedPathKey, file.canonicalFilePath()},
        {ApplicationInformation::identifierKey, ApplicationInformation::desktopFileId(file.absoluteFilePath())},
        {ApplicationInformation::signatureKey, entry->text(u"StartupWMClass"_s)},
    };
    if (const QString name = entry->localText(u"Name"_s); !name.isEmpty())
        information.insert(ApplicationInformation::nameKey, name);
    if (const QString program = ApplicationInformation::programOf(entry->commandLine().value_or(QStringList()));
        !program.isEmpty())
        information.insert(ApplicationInformation::executableKey, program);
    return information;
}

std::optional<QVariantMap> readBundle(const QFileInfo &folder)
{
    const auto read = PropertyList::readPropertyListFile(QDir(folder.filePath()).filePath(informationFile));
    if (!read)
        return {};
    QVariantMap information = *read;
    information.insert(ApplicationInformation::resolvedPathKey, folder.canonicalFilePath());
    return information;
}

} // namespace

QStringList ApplicationInformation::fileTypes()
{
    return {bundleSuffix, entrySuffix};
}

std::optional<QVariantMap> ApplicationInformation::read(const QString &path)
{
    const QFileInfo file(QDir::cleanPath(path));
    if (path.isEmpty() || !file.exists())
        return std::nullopt;
    if (file.isDir())
        return readBundle(file);
    return file.suffix() == entrySuffix ? readEntry(file) : std::nullopt;
}

QString ApplicationInformation::programOf(const QStringList &commandLine)
{
    const auto isBeforeProgram = [](const QString &word) {
        return QFileInfo(word).fileName() == "env"_L1 || (word.contains(u'=') && !word.startsWith(u'/'));
    };
    const auto program = std::ranges::find_if_not(commandLine, isBeforeProgram);
    return program == commandLine.end() ? QString() : QFileInfo(*program).fileName();
}

QStringList ApplicationInformation::entryFolders()
{
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    const QString ownData = QDir::homePath() + "/.local/share"_L1;
    folders << ownData + "/applications"_L1 << ownData + "/flatpak/exports/share/applications"_L1
            << u"/var/lib/flatpak/exports/share/applications"_s << u"/var/lib/snapd/desktop/applications"_s;
    folders.removeDuplicates();
    return folders;
}

QString ApplicationInformation::desktopFileId(const QString &path, const QStringList &folders)
{
    for (const QString &folder : folders) {
        const QString below = QDir(folder).relativeFilePath(path);
        if (!below.startsWith(".."_L1) && QDir::isRelativePath(below))
            return QString(below).replace(u'/', u'-');
    }
    return QFileInfo(path).fileName();
}

QString ApplicationInformation::startFolder()
{
    const QString folderOfBundles = u"/Applications/"_s;
    if (QFileInfo(folderOfBundles).isDir())
        return folderOfBundles;
    for (const QString &folder : entryFolders()) {
        if (!QDir(folder).entryList({u"*.desktop"_s}, QDir::Files).isEmpty())
            return folder;
    }
    return QDir::rootPath();
}
