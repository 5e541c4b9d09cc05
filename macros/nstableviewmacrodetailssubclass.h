// SPDX-License-Identifier: MIT
// The table of the event list, with the event commands as its context menu. Owned by the macros tab. Main thread only.
#pragma once

#include "platform/tableview.h"

class KeyboardMacrosController;
class QMenu;

class NSTableViewMacroDetailsSubClass : public TableView
{
    Q_OBJECT

public:
    using TableView::TableView;

    void setKeyboardMacrosController(KeyboardMacrosController *controller) { mKeyboardMacrosController = controller; }
    [[nodiscard]] KeyboardMacrosController *keyboardMacrosController() const { return mKeyboardMacrosController; }

    /// Returns the commands, enabled according to the state of the tab. The caller owns the menu.
    [[nodiscard]] QMenu *makeContextMenu();
    /// True when the key equivalent is consumed here: always, except while the user edits a macro's name. The keys for
    /// selecting all, cutting, copying and pasting act.
    bool performKeyEquivalent(const QKeyEvent *event) override;

protected:
    void rightMouseDown(const QPoint &globalPosition) override;

private:
    void perform(const QKeyEvent *event);

    KeyboardMacrosController *mKeyboardMacrosController = nullptr;
};
