// SPDX-License-Identifier: MIT
#include "platform/applicationicon.h"

#include "platform/desktopentry.h"

#include <QApplication>
#include <QFileInfo>
#include <QStyle>

using namespace Qt::StringLiterals;

QIcon ApplicationIcon::named(const QString &icon)
{
    QIcon found;
    if (!icon.startsWith(u'/'))
        found = icon.isEmpty() ? QIcon() : QIcon::fromTheme(icon);
    else if (QFileInfo(icon).isFile()) // reading a pipe would wait for a writer
        found = QIcon(icon);
    if (!found.isNull())
        return found;
    return QIcon::fromTheme(u"application-x-executable"_s, QApplication::style()->standardIcon(QStyle::SP_FileIcon));
}

QIcon ApplicationIcon::ofApplication(const QString &path)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    return named(entry ? entry->localText(u"Icon"_s) : QString());
}
