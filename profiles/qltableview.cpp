// SPDX-License-Identifier: MIT
#include "profiles/qltableview.h"

#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"

#include <QKeyEvent>
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

void QLTableView::keyPressEvent(QKeyEvent *event)
{
    const int tag = event->modifiers() != Qt::NoModifier ? 0
                    : event->key() == Qt::Key_F2         ? ProfileCommands::rename
                    : event->key() == Qt::Key_Delete     ? ProfileCommands::deleteProfile
                                                         : 0;
    if (tag == 0 || !mKeyboardProfilesController) {
        TableView::keyPressEvent(event);
        return;
    }
    if (ProfileCommands::isEnabledInContextMenu(tag, mKeyboardProfilesController->commandState()))
        mKeyboardProfilesController->runCommand(tag);
}

void QLTableView::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
