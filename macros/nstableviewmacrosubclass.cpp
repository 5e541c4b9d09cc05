// SPDX-License-Identifier: MIT
#include "macros/nstableviewmacrosubclass.h"

#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"

#include <QMenu>

QMenu *NSTableViewMacroSubClass::makeContextMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("macrosContextMenu"));
    if (!mKeyboardMacrosController)
        return menu;
    addMenuCommands(menu, MacroCommands::ofList(), [controller = mKeyboardMacrosController](const QAction *item) {
        controller->clickMacroSettingsMenuItem(item);
    });
    const QList<QAction *> items = menu->actions();
    for (QAction *item : items)
        item->setEnabled(isEnabled() && MacroCommands::isEnabledForList(item->data().toInt(), selectedRow() >= 0));
    return menu;
}

void NSTableViewMacroSubClass::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
