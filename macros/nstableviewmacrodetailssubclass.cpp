// SPDX-License-Identifier: MIT
#include "macros/nstableviewmacrodetailssubclass.h"

#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"

#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <array>

QMenu *NSTableViewMacroDetailsSubClass::makeContextMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("macroDetailsContextMenu"));
    if (!mKeyboardMacrosController)
        return menu;
    addMenuCommands(menu, MacroCommands::ofEventList(), [controller = mKeyboardMacrosController](const QAction *item) {
        controller->clickMacroDetailsSettingsMenuItem(item);
    });
    const bool isListEnabled = mKeyboardMacrosController->macroTableView()->isEnabled();
    const MacroCommands::EventListState state = mKeyboardMacrosController->eventListState();
    const QList<QAction *> items = menu->actions();
    for (QAction *item : items)
        item->setEnabled(isListEnabled && MacroCommands::isEnabledInEventContextMenu(item->data().toInt(), state));
    return menu;
}

bool NSTableViewMacroDetailsSubClass::performKeyEquivalent(const QKeyEvent *event)
{
    if (mKeyboardMacrosController && mKeyboardMacrosController->macroTableView()->editedRow() >= 0)
        return false;
    if (event->type() == QEvent::KeyPress)
        perform(event);
    return true;
}

void NSTableViewMacroDetailsSubClass::perform(const QKeyEvent *event)
{
    struct KeyOfCommand
    {
        QKeySequence::StandardKey key;
        MacroCommands::EventTag tag;
    };
    constexpr std::array keys{KeyOfCommand{QKeySequence::Cut, MacroCommands::cutEvents},
                              KeyOfCommand{QKeySequence::Copy, MacroCommands::copyEvents},
                              KeyOfCommand{QKeySequence::Paste, MacroCommands::pasteEvents}};
    if (event->matches(QKeySequence::SelectAll))
        selectAll();
    const auto found =
        std::ranges::find_if(keys, [event](const KeyOfCommand &each) { return event->matches(each.key); });
    if (found != keys.end() && mKeyboardMacrosController)
        mKeyboardMacrosController->editEvents(found->tag);
}

void NSTableViewMacroDetailsSubClass::rightMouseDown(const QPoint &globalPosition)
{
    QMenu *menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
