// SPDX-License-Identifier: MIT
#include "macros/nstableviewmacrodetailssubclass.h"

#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"

#include <QMenu>

QMenu *NSTableViewMacroDetailsSubClass::makeContextMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("macroDetailsContextMenu"));
    if (!mKeyboardMacrosController)
        return menu;
    addMenuCommands(menu, MacroCommands::ofEventList(), [controller = mKeyboardMacrosController](const QAction *item) {
        controller->clickMacroDetailsSettingsMenuItem(item);
    });
    const TableView *list = mKeyboardMacrosController->macroTableView();
    const bool isListEnabled = list->isEnabled();
    const MacroCommands::EventListState state{numberOfRows(), selectedRow(), list->selectedRow()};
    const QList<QAction *> items = menu->actions();
    for (QAction *item : items)
        item->setEnabled(isListEnabled && MacroCommands::isEnabledInEventContextMenu(item->data().toInt(), state));
    return menu;
}

bool NSTableViewMacroDetailsSubClass::performKeyEquivalent(const QKeyEvent *)
{
    return !mKeyboardMacrosController || mKeyboardMacrosController->macroTableView()->editedRow() < 0;
}

void NSTableViewMacroDetailsSubClass::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
