// SPDX-License-Identifier: MIT
#include "platform/installedapplications.h"

#include "platform/desktopentry.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList listOf(const QString &text)
{
    return text.split(u';', Qt::SkipEmptyParts);
}

/// As in the description of OnlyShowIn and NotShowIn: the first desktop that either names decides.
bool isForThisDesktop(const DesktopEntry &entry)
{
    const QStringList onlyIn = listOf(entry.text(u"OnlyShowIn"_s));
    const QStringList notIn = listOf(entry.text(u"NotShowIn"_s));
    for (const QString &desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts)) {
        if (onlyIn.contains(desktop))
            return true;
        if (notIn.contains(desktop))
            return false;
    }
    return onlyIn.isEmpty();
}

bool isShown(const DesktopEntry &entry)
{
    return entry.text(u"Type"_s) == "Application"_L1 && !entry.flag(u"Hidden"_s) && !entry.flag(u"NoDisplay"_s)
           && !entry.flag(u"Terminal"_s) && isForThisDesktop(entry);
}

bool isInstalled(const DesktopEntry &entry)
{
    const QString tried = entry.text(u"TryExec"_s);
    return tried.isEmpty() || !QStandardPaths::findExecutable(tried).isEmpty();
}

std::optional<InstalledApplication> applicationOf(const QString &path, const QString &identifier)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    if (!entry || !isShown(*entry) || !isInstalled(*entry))
        return {};
    const std::optional<QStringList> commandLine = entry->commandLine();
    const QString name = entry->localText(u"Name"_s);
    if (!commandLine || name.isEmpty())
        return {};
    return InstalledApplication{
        .path = path,
        .identifier = identifier,
        .name = name,
        .icon = entry->localText(u"Icon"_s),
        .executable = ApplicationInformation::programOf(*commandLine),
        .windowClass = entry->text(u"StartupWMClass"_s),
        .searchTexts = QStringList{entry->text(u"Name"_s), entry->localText(u"GenericName"_s)}
                       + listOf(entry->localText(u"Keywords"_s)),
    };
}

/// With links that lead nowhere or to /dev/null: users hide an application of the system by such an entry of their own.
/// Sorted, because the order of a folder's files is arbitrary and two of them may have the same ID ("a/b", "a-b").
QStringList entriesBelow(const QString &folder)
{
    QStringList paths;
    QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths += files.next();
    paths.sort();
    return paths;
}

} // namespace

QList<InstalledApplication> InstalledApplications::read(const QStringList &folders)
{
    QList<InstalledApplication> applications;
    QSet<QString> identifiers;
    for (const QString &folder : folders) {
        for (const QString &path : entriesBelow(folder)) {
            const QString identifier = ApplicationInformation::desktopFileId(path, {folder});
            const qsizetype countBefore = identifiers.size();
            if (identifiers.insert(identifier); identifiers.size() == countBefore)
                continue; // of a folder with a higher rank
            if (const auto application = applicationOf(path, identifier))
                applications += *application;
        }
    }
    QCollator order{QLocale(DesktopEntry::messagesLocale())}; // with parentheses, clang 14 reads a function
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(applications, [&order](const InstalledApplication &a, const InstalledApplication &b) {
        return order.compare(a.name, b.name) < 0;
    });
    return applications;
}
