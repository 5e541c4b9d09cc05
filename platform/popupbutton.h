// SPDX-License-Identifier: MIT
// A pop-up button: it shows the title of its selected item and opens a menu of all items. An item may have a sub-menu.
// Main thread only.
#pragma once

#include <QList>
#include <QPushButton>

class QAction;
class QActionGroup;
class QMenu;

/// selectItemAtIndex() emits no signal. An item that the user picks, or that its QAction triggers, becomes the selected
/// one, and itemPicked() reports it. An item of a sub-menu is reported by its own QAction and leaves the selection
/// unchanged. Without items the selection is -1. Titles are stored unchanged and shown on one line
/// (base/visibletext.h).
class PopUpButton : public QPushButton
{
    Q_OBJECT

public:
    explicit PopUpButton(QWidget *parent = nullptr);

    [[nodiscard]] int numberOfItems() const { return static_cast<int>(mItems.size()); }
    [[nodiscard]] QString itemTitleAtIndex(int index) const; ///< empty for an index without an item
    [[nodiscard]] QAction *itemAtIndex(int index) const;     ///< null for an index without an item
    [[nodiscard]] int indexOfSelectedItem() const { return mSelectedIndex; }
    [[nodiscard]] QString titleOfSelectedItem() const { return itemTitleAtIndex(mSelectedIndex); }
    /// The title as the button shows it: on one line.
    [[nodiscard]] QString shownTitleOfSelectedItem() const { return mShownTitle; }
    [[nodiscard]] QMenu *submenuAtIndex(int index) const; ///< null for an item without one
    [[nodiscard]] QMenu *popUpMenu() const { return mMenu; }

    void removeAllItems();
    /// The first item added becomes the selected one.
    void addItemWithTitle(const QString &title, int tag = 0);
    void setItemTitleAtIndex(int index, const QString &title);
    /// Takes ownership of `submenu` and deletes the item's previous sub-menu.
    void setSubmenuAtIndex(int index, QMenu *submenu);
    /// Emits no signal. Ignores an index without an item.
    void selectItemAtIndex(int index);
    /// Shows `title` in place of the title of the selected item, and marks no item in the menu, until an item is
    /// selected.
    void setShownTitle(const QString &title);
    /// Shows the menu below the button and returns at once.
    void openMenu();
    /// Shows the same menu at `position` (of the screen), also if the button cannot be seen. Does nothing while the
    /// button is disabled.
    void openMenuAt(const QPoint &position);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void itemPicked(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void pick(QAction *item);
    void showSelection();
    void popUp(const QPoint &position);

    QMenu *mMenu;
    QActionGroup *mGroup;
    QList<QAction *> mItems;
    int mSelectedIndex = -1;
    QString mOtherTitle; ///< of setShownTitle(); null without one
    QString mShownTitle;
};

/// Adds an item to `menu` that shows `title` on one line (base/visibletext.h). An ampersand does not mark a mnemonic.
QAction *addMenuItem(QMenu *menu, const QString &title, int tag);

/// The title and the tag that addMenuItem() or a pop-up button gave to `item`.
[[nodiscard]] QString menuItemTitle(const QAction *item);
[[nodiscard]] int menuItemTag(const QAction *item);
