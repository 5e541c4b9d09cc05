// SPDX-License-Identifier: MIT
#include "platform/helpviewer.h"

#include "platform/helpwindow.h"

#include <QDir>
#include <QPointer>

namespace {

struct RegisteredBook
{
    QString title;
    QString folder;
};

RegisteredBook registeredBook;
QPointer<HelpWindow> viewer;

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
        viewer = new HelpWindow(registeredBook.title, registeredBook.folder);
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        viewer->setAttribute(Qt::WA_QuitOnClose, false);
    }
    viewer->gotoPage(page);
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
}
