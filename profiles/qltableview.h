// SPDX-License-Identifier: MIT
// The profile table, with the profile commands as its context menu. It also handles key equivalents. Owned by the
// profiles tab. Main thread only.
#pragma once

#include "platform/tableview.h"

class KeyboardProfilesController;
class QMenu;

class QLTableView : public TableView
{
    Q_OBJECT

public:
    using TableView::TableView;

    void setKeyboardProfilesController(KeyboardProfilesController *controller)
    {
        mKeyboardProfilesController = controller;
    }
    [[nodiscard]] KeyboardProfilesController *keyboardProfilesController() const { return mKeyboardProfilesController; }

    /// Returns the nine commands, enabled according to the table's state. The caller owns the menu.
    [[nodiscard]] QMenu *makeContextMenu();
    /// True when the key equivalent is consumed here: always, except while the user edits a name.
    bool performKeyEquivalent(const QKeyEvent *event) override;

protected:
    /// F2 renames and Delete deletes the selected profile, as the menus do, whichever column is current.
    void keyPressEvent(QKeyEvent *event) override;
    void rightMouseDown(const QPoint &globalPosition) override;

private:
    KeyboardProfilesController *mKeyboardProfilesController = nullptr;
};
