// SPDX-License-Identifier: MIT
#include "platform/helpviewer.h"

#include <QDesktopServices>
#include <QDir>
#include <QPointer>
#include <QTextBrowser>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

struct HelpBook
{
    QString title;
    QString folder;
};

HelpBook registeredBook;
QPointer<QTextBrowser> viewer;

} // namespace

void HelpViewer::registerBook(const QString &title, const QString &folder)
{
    if (QDir(folder).exists())
        registeredBook = {title, folder};
}

void HelpViewer::gotoPage(const QString &page)
{
    if (registeredBook.folder.isEmpty())
        return;
    if (!viewer) {
        viewer = new QTextBrowser;
        viewer->setObjectName(u"helpViewer"_s);
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        viewer->setAttribute(Qt::WA_QuitOnClose, false);
        viewer->setOpenExternalLinks(true);
        viewer->resize(760, 640);
    }
    viewer->setWindowTitle(registeredBook.title);
    viewer->setSource(QUrl::fromLocalFile(QDir(registeredBook.folder).filePath(page)));
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
}
