// SPDX-License-Identifier: MIT
#include "platform/popupbutton.h"

#include "base/visibletext.h"
#include "platform/mnemonics.h"
#include "platform/popupaccessibility.h"
#include "platform/scrollingmenu.h"

#include <QAction>
#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QStyleOptionComboBox>
#include <QStylePainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char titleProperty[] = "title";

/// `title` as a button or an item shows it: on one line, and without tabs, which would begin a column of shortcuts.
QString shownTitle(const QString &title)
{
    return visibleText(title, u' ');
}

void setMenuItemTitle(QAction *item, const QString &title)
{
    item->setProperty(titleProperty, title);
    item->setText(Mnemonics::escaped(shownTitle(title)));
}

} // namespace

QAction *addMenuItem(QMenu *menu, const QString &title, int tag)
{
    QAction *item = menu->addAction(QString());
    setMenuItemTitle(item, title);
    item->setData(tag);
    return item;
}

QString menuItemTitle(const QAction *item)
{
    return item->property(titleProperty).toString();
}

int menuItemTag(const QAction *item)
{
    return item->data().toInt();
}

PopUpButton::PopUpButton(QWidget *parent)
    : QPushButton(parent), mMenu(new ScrollingMenu(this)), mGroup(new QActionGroup(this))
{
    PopUpAccessibility::install();
    // QPushButton::setMenu() would open the menu in a nested event loop and block the caller.
    connect(this, &QAbstractButton::pressed, this, &PopUpButton::openMenu);
    connect(mMenu, &QMenu::aboutToHide, this, [this] { setDown(false); });
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QString PopUpButton::itemTitleAtIndex(int index) const
{
    const QAction *item = itemAtIndex(index);
    return item ? menuItemTitle(item) : QString();
}

QAction *PopUpButton::itemAtIndex(int index) const
{
    return mItems.value(index);
}

QMenu *PopUpButton::submenuAtIndex(int index) const
{
    const QAction *item = itemAtIndex(index);
    return item ? item->menu() : nullptr;
}

void PopUpButton::removeAllItems()
{
    while (!mItems.isEmpty()) {
        setSubmenuAtIndex(0, nullptr);
        delete mItems.takeFirst();
    }
    mSelectedIndex = -1;
    mOtherTitle = QString();
    showSelection();
    updateGeometry();
}

void PopUpButton::addItemWithTitle(const QString &title, int tag)
{
    QAction *item = addMenuItem(mMenu, title, tag);
    item->setCheckable(true);
    // In an exclusive group, the selected item has a mark and the others have no empty box.
    mGroup->addAction(item);
    connect(item, &QAction::triggered, this, [this, item] { pick(item); });
    mItems.append(item);
    if (mSelectedIndex < 0)
        mSelectedIndex = 0;
    showSelection();
    updateGeometry();
}

void PopUpButton::setItemTitleAtIndex(int index, const QString &title)
{
    if (QAction *item = itemAtIndex(index); item && menuItemTitle(item) != title) {
        setMenuItemTitle(item, title);
        showSelection();
        updateGeometry();
    }
}

void PopUpButton::setSubmenuAtIndex(int index, QMenu *submenu)
{
    QAction *item = itemAtIndex(index);
    if (!item || item->menu() == submenu)
        return;
    QMenu *earlier = item->menu();
    if (submenu)
        submenu->setParent(mMenu, submenu->windowFlags());
    item->setMenu(submenu);
    // Qt enables and disables an item with its menu. The previous menu may have been disabled, together with the
    // button.
    item->setEnabled(!submenu || submenu->isEnabled());
    if (earlier) {
        earlier->hide();
        earlier->deleteLater(); // one of its items may be the one being handled
    }
}

void PopUpButton::selectItemAtIndex(int index)
{
    if (!itemAtIndex(index))
        return;
    mSelectedIndex = index;
    mOtherTitle = QString();
    showSelection();
}

void PopUpButton::setShownTitle(const QString &title)
{
    mOtherTitle = title;
    showSelection();
}

void PopUpButton::openMenu()
{
    setDown(true);
    mMenu->setMinimumWidth(width());
    popUp(mapToGlobal(rect().bottomLeft()));
}

void PopUpButton::openMenuAt(const QPoint &position)
{
    if (!isEnabled())
        return;
    mMenu->setMinimumWidth(0);
    popUp(position);
}

void PopUpButton::popUp(const QPoint &position)
{
    mMenu->popup(position);
    // Arrow keys start from the active item. An item with a sub-menu would open it at once.
    if (QAction *item = itemAtIndex(mSelectedIndex); item && !item->menu())
        mMenu->setActiveAction(item);
}

void PopUpButton::pick(QAction *item)
{
    selectItemAtIndex(static_cast<int>(mItems.indexOf(item)));
    Q_EMIT itemPicked(mSelectedIndex);
}

void PopUpButton::showSelection()
{
    for (qsizetype index = 0; index < mItems.size(); ++index)
        mItems[index]->setChecked(index == mSelectedIndex && mOtherTitle.isNull());
    const QString title = shownTitle(mOtherTitle.isNull() ? titleOfSelectedItem() : mOtherTitle);
    if (title == mShownTitle)
        return;
    mShownTitle = title;
    setText(Mnemonics::escaped(title));
    PopUpAccessibility::reportValue(this);
    update();
}

QSize PopUpButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int widestTitle = 0;
    for (const QAction *item : mItems)
        widestTitle = std::max(widestTitle, metrics.horizontalAdvance(shownTitle(menuItemTitle(item))));
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = false;
    const QSize contents(widestTitle + metrics.averageCharWidth() * 2, metrics.height() + 2);
    const QSize hint = style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
    // The button cuts off a long name instead of widening the window; the menu shows the whole name.
    return {std::min(hint.width(), metrics.averageCharWidth() * 48), hint.height()};
}

QSize PopUpButton::minimumSizeHint() const
{
    const QSize hint = sizeHint();
    return {std::min(hint.width(), fontMetrics().averageCharWidth() * 16), hint.height()};
}

void PopUpButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = false;
    option.frame = true;
    option.subControls = QStyle::SC_All;
    if (isDown() || mMenu->isVisible()) {
        option.activeSubControls = QStyle::SC_ComboBoxArrow;
        option.state |= QStyle::State_Sunken;
    }
    const QRect textRect = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = fontMetrics().elidedText(mShownTitle, Qt::ElideRight, textRect.width() - 4);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void PopUpButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter: openMenu(); return;
    default: QPushButton::keyPressEvent(event);
    }
}

void PopUpButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    QPushButton::changeEvent(event);
}
