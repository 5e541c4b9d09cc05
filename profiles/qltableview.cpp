// SPDX-License-Identifier: MIT
#include "profiles/qltableview.h"

#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"

#include <QKeyEvent>
#include <QMenu>

namespace {

bool isKeyEquivalent(const QKeyEvent *event)
{
    // Tab with modifiers moves the focus and is no command.
    return (event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) && event->key() != Qt::Key_Tab &&
           event->key() != Qt::Key_Backtab;
}

} // namespace

QMenu *QLTableView::makeContextMenu()
{
    auto *menu = new QMenu(this);
    if (!mKeyboardProfilesController)
        return menu;
    addMenuCommands(menu, ProfileCommands::all(), [controller = mKeyboardProfilesController, menu](int tag) {
        const QList<QAction *> items = menu->actions();
        for (const QAction *item : items) {
            if (item->data().toInt() == tag)
                controller->selectMenuItem(item);
        }
    });
    const ProfileCommands::State state = mKeyboardProfilesController->commandState();
    const QList<QAction *> items = menu->actions();
    for (QAction *item : items)
        item->setEnabled(isEnabled() && ProfileCommands::isEnabledInContextMenu(item->data().toInt(), state));
    return menu;
}

bool QLTableView::performKeyEquivalent(const QKeyEvent *) const
{
    return editedRow() < 0;
}

bool QLTableView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (isKeyEquivalent(key) && performKeyEquivalent(key)) {
            event->accept();
            return true;
        }
    }
    return TableView::event(event);
}

void QLTableView::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setObjectName(QStringLiteral("profilesContextMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
