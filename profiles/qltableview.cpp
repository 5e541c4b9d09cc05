// SPDX-License-Identifier: MIT
#include "profiles/qltableview.h"

#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"

#include <QMenu>

QMenu *QLTableView::makeContextMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("profilesContextMenu"));
    if (!mKeyboardProfilesController)
        return menu;
    addMenuCommands(menu, ProfileCommands::all(), [controller = mKeyboardProfilesController](const QAction *item) {
        controller->selectMenuItem(item);
    });
    const ProfileCommands::State state = mKeyboardProfilesController->commandState();
    const QList<QAction *> items = menu->actions();
    for (QAction *item : items)
        item->setEnabled(isEnabled() && ProfileCommands::isEnabledInContextMenu(item->data().toInt(), state));
    return menu;
}

bool QLTableView::performKeyEquivalent(const QKeyEvent *)
{
    return editedRow() < 0;
}

void QLTableView::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
