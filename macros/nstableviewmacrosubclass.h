// SPDX-License-Identifier: MIT
// The table of the macro list, with the macro commands as its context menu. Owned by the macros tab. Main thread only.
#pragma once

#include "platform/tableview.h"

class KeyboardMacrosController;
class QMenu;

class NSTableViewMacroSubClass : public TableView
{
    Q_OBJECT

public:
    using TableView::TableView;

    void setKeyboardMacrosController(KeyboardMacrosController *controller) { mKeyboardMacrosController = controller; }
    [[nodiscard]] KeyboardMacrosController *keyboardMacrosController() const { return mKeyboardMacrosController; }

    /// Returns the commands, enabled according to the state of the tab. The caller owns the menu.
    [[nodiscard]] QMenu *makeContextMenu();

protected:
    void rightMouseDown(const QPoint &globalPosition) override;

private:
    KeyboardMacrosController *mKeyboardMacrosController = nullptr;
};
