// SPDX-License-Identifier: MIT
// A pop-up button: a button that shows the title of its selected item and opens a menu of all of them. An item may
// carry a sub-menu. Main thread only.
#pragma once

#include <QList>
#include <QPushButton>

class QAction;
class QActionGroup;
class QMenu;

/// Selecting an item by selectItemAtIndex() is silent; an item picked by the user (or triggered through its QAction)
/// becomes the selected one and is then announced by itemPicked(). An item of a sub-menu announces itself through its
/// own QAction and leaves the selection as it is. Without items the selection is -1. Titles are kept unchanged and
/// shown on one line (base/visibletext.h).
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
    [[nodiscard]] QMenu *submenuAtIndex(int index) const; ///< null for an item without one
    [[nodiscard]] QMenu *popUpMenu() const { return mMenu; }

    void removeAllItems();
    /// The first item added becomes the selected one.
    void addItemWithTitle(const QString &title, int tag = 0);
    void setItemTitleAtIndex(int index, const QString &title);
    /// Takes ownership of `submenu` and deletes the item's earlier one.
    void setSubmenuAtIndex(int index, QMenu *submenu);
    /// Silent. An index without an item is ignored.
    void selectItemAtIndex(int index);
    /// Shows the menu and returns at once.
    void openMenu();

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

    QMenu *mMenu;
    QActionGroup *mGroup;
    QList<QAction *> mItems;
    int mSelectedIndex = -1;
    QString mShownTitle;
};

/// Adds an item to `menu` that shows `title` on one line (base/visibletext.h); an ampersand is not a mnemonic.
QAction *addMenuItem(QMenu *menu, const QString &title, int tag);

/// The title and the tag that addMenuItem() or a pop-up button gave to `item`.
[[nodiscard]] QString menuItemTitle(const QAction *item);
[[nodiscard]] int menuItemTag(const QAction *item);
