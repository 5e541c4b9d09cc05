// SPDX-License-Identifier: MIT
#include "platform/popupbutton.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void addItems(PopUpButton &button, const QStringList &titles)
{
    for (const QString &title : titles)
        button.addItemWithTitle(title);
}

/// The value that assistive tools read.
QString valueOf(PopUpButton &button)
{
    return QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Value);
}

} // namespace

class PopUpButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectsTheFirstItemAdded();
    void selectingFromCodeIsSilent();
    void pickByTheUserSelectsAndIsAnnounced();
    void pickOfTheSelectedItemIsAnnouncedAgain();
    void ignoresIndexesWithoutAnItem();
    void titleChangesShowAtOnce();
    void anotherTitleIsShownUntilAnItemIsSelected();
    void ampersandIsNotAMnemonic();
    void titleIsShownOnOneLineInItsOwnDirection();
    void submenuItemKeepsTheSelection();
    void replacedSubmenuIsDeleted();
    void submenuMayBeReplacedFromItsOwnItem();
    void removingAllItemsLeavesNone();
    void marksTheSelectedItemInTheMenu();
    void opensByMouseAndPicksByKeyboard();
    void opensByKeyboard_data();
    void opensByKeyboard();
    void arrowsStartAtTheSelectedItem();
    void openingKeepsSubmenusClosed();
    void submenuReplacedWhileDisabledIsEnabledWithTheButton();
    void longTitlesHaveALimitedWidth();
    void opensTheSameMenuElsewhere();
    void disabledButtonOpensNoMenuElsewhere();
    void isAComboBoxForAssistiveTools();
};

void PopUpButtonTest::selectsTheFirstItemAdded()
{
    PopUpButton button;
    QCOMPARE(button.indexOfSelectedItem(), -1);
    addItems(button, {u"One"_s, u"Two"_s});
    QCOMPARE(button.numberOfItems(), 2);
    QCOMPARE(button.indexOfSelectedItem(), 0);
    QCOMPARE(button.titleOfSelectedItem(), u"One"_s);
}

void PopUpButtonTest::selectingFromCodeIsSilent()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.selectItemAtIndex(1);
    QCOMPARE(button.titleOfSelectedItem(), u"Two"_s);
    QCOMPARE(valueOf(button), u"Two"_s);
    QCOMPARE(picked.count(), 0);
}

void PopUpButtonTest::pickByTheUserSelectsAndIsAnnounced()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s, u"Three"_s});
    int selectedWhenAnnounced = -1;
    connect(&button, &PopUpButton::itemPicked, &button, [&] { selectedWhenAnnounced = button.indexOfSelectedItem(); });
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.itemAtIndex(2)->trigger();
    QCOMPARE(picked.count(), 1);
    QCOMPARE(picked.first().first().toInt(), 2);
    QCOMPARE(selectedWhenAnnounced, 2);
}

void PopUpButtonTest::pickOfTheSelectedItemIsAnnouncedAgain()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.itemAtIndex(0)->trigger();
    button.itemAtIndex(0)->trigger();
    QCOMPARE(picked.count(), 2);
    QVERIFY(button.itemAtIndex(0)->isChecked());
}

void PopUpButtonTest::ignoresIndexesWithoutAnItem()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    button.selectItemAtIndex(-1);
    button.selectItemAtIndex(1);
    button.setItemTitleAtIndex(1, u"Two"_s);
    QCOMPARE(button.indexOfSelectedItem(), 0);
    QVERIFY(button.itemTitleAtIndex(1).isEmpty());
    QVERIFY(!button.itemAtIndex(-1));
    QVERIFY(!button.submenuAtIndex(5));
}

void PopUpButtonTest::titleChangesShowAtOnce()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    button.setItemTitleAtIndex(0, u"Another"_s);
    QCOMPARE(button.itemTitleAtIndex(0), u"Another"_s);
    QCOMPARE(button.text(), u"Another"_s);
}

void PopUpButtonTest::anotherTitleIsShownUntilAnItemIsSelected()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    button.addItemWithTitle(u"Two"_s);
    button.setShownTitle(u"Neither & nor"_s);
    QCOMPARE(button.text(), u"Neither && nor"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Value), u"Neither & nor"_s);
    QCOMPARE(button.indexOfSelectedItem(), 0);
    QCOMPARE(button.titleOfSelectedItem(), u"One"_s);
    QVERIFY(!button.itemAtIndex(0)->isChecked());
    button.setItemTitleAtIndex(0, u"Another"_s);
    QCOMPARE(button.text(), u"Neither && nor"_s);
    button.itemAtIndex(0)->trigger();
    QCOMPARE(button.text(), u"Another"_s);
    QVERIFY(button.itemAtIndex(0)->isChecked());
    button.setShownTitle(u"Neither"_s);
    button.selectItemAtIndex(1);
    QCOMPARE(button.text(), u"Two"_s);
}

void PopUpButtonTest::ampersandIsNotAMnemonic()
{
    PopUpButton button;
    button.addItemWithTitle(u"Cut & Paste"_s);
    QCOMPARE(button.itemTitleAtIndex(0), u"Cut & Paste"_s);
    QCOMPARE(button.itemAtIndex(0)->text(), u"Cut && Paste"_s);
}

void PopUpButtonTest::titleIsShownOnOneLineInItsOwnDirection()
{
    const QString title = u"One\nof\u2028two\r\u202ethree\t\u009b"_s;
    PopUpButton button;
    button.addItemWithTitle(title);
    QCOMPARE(button.itemTitleAtIndex(0), title); // the program compares with it
    const QString shown = u"One of two  three  "_s;
    QCOMPARE(button.text(), shown);
    QCOMPARE(valueOf(button), shown);
    QCOMPARE(button.itemAtIndex(0)->text(), shown);
    button.setItemTitleAtIndex(0, u"A\u2067B"_s);
    QCOMPARE(button.text(), u"A B"_s);
    QCOMPARE(button.itemAtIndex(0)->text(), u"A B"_s);
}

void PopUpButtonTest::submenuItemKeepsTheSelection()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    auto *submenu = new QMenu;
    QAction *item = addMenuItem(submenu, u"Inner"_s, 7);
    button.setSubmenuAtIndex(1, submenu);
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    QSignalSpy inner(item, &QAction::triggered);
    item->trigger();
    QCOMPARE(inner.count(), 1);
    QCOMPARE(picked.count(), 0);
    QCOMPARE(button.indexOfSelectedItem(), 0);
    QCOMPARE(menuItemTag(item), 7);
    QCOMPARE(menuItemTitle(item), u"Inner"_s);
}

void PopUpButtonTest::replacedSubmenuIsDeleted()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    QPointer<QMenu> first = new QMenu;
    button.setSubmenuAtIndex(0, first);
    auto *second = new QMenu;
    button.setSubmenuAtIndex(0, second);
    QCOMPARE(button.submenuAtIndex(0), second);
    QTRY_VERIFY(first.isNull());
}

void PopUpButtonTest::submenuMayBeReplacedFromItsOwnItem()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    auto *submenu = new QMenu;
    QAction *item = addMenuItem(submenu, u"Inner"_s, 1);
    button.setSubmenuAtIndex(0, submenu);
    connect(item, &QAction::triggered, &button, [&] { button.setSubmenuAtIndex(0, new QMenu); });
    item->trigger();
    QVERIFY(button.submenuAtIndex(0) != submenu);
}

void PopUpButtonTest::removingAllItemsLeavesNone()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    button.setSubmenuAtIndex(1, new QMenu);
    button.removeAllItems();
    QCOMPARE(button.numberOfItems(), 0);
    QCOMPARE(button.indexOfSelectedItem(), -1);
    QVERIFY(button.popUpMenu()->isEmpty());
    QVERIFY(button.text().isEmpty());
}

void PopUpButtonTest::marksTheSelectedItemInTheMenu()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    button.selectItemAtIndex(1);
    QVERIFY(!button.itemAtIndex(0)->isChecked());
    QVERIFY(button.itemAtIndex(1)->isChecked());
    // One of several choices, not a check box.
    QVERIFY(button.itemAtIndex(1)->actionGroup());
    QVERIFY(button.itemAtIndex(1)->actionGroup()->isExclusive());
    QCOMPARE(button.itemAtIndex(0)->actionGroup(), button.itemAtIndex(1)->actionGroup());
}

void PopUpButtonTest::opensByMouseAndPicksByKeyboard()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::mousePress(&button, Qt::LeftButton);
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    button.popUpMenu()->setActiveAction(button.itemAtIndex(1));
    QTest::keyClick(button.popUpMenu(), Qt::Key_Return);
    QTRY_COMPARE(picked.count(), 1);
    QCOMPARE(button.indexOfSelectedItem(), 1);
    QVERIFY(!button.isDown());
}

void PopUpButtonTest::opensByKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Down") << Qt::Key_Down;
    QTest::newRow("Up") << Qt::Key_Up;
    QTest::newRow("Return") << Qt::Key_Return;
}

void PopUpButtonTest::opensByKeyboard()
{
    QFETCH(Qt::Key, key);
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::keyPress(&button, key); // returns although the menu is open
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    QVERIFY(button.isDown());
    button.popUpMenu()->hide();
    QVERIFY(!button.isDown());
}

void PopUpButtonTest::arrowsStartAtTheSelectedItem()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s});
    button.selectItemAtIndex(1);
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::keyPress(&button, Qt::Key_Space);
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    QTest::keyClick(button.popUpMenu(), Qt::Key_Down);
    QTest::keyClick(button.popUpMenu(), Qt::Key_Return);
    QCOMPARE(picked.count(), 1);
    QCOMPARE(button.indexOfSelectedItem(), 2);
}

void PopUpButtonTest::openingKeepsSubmenusClosed()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    auto *submenu = new QMenu;
    submenu->addAction(u"Inner"_s);
    button.setSubmenuAtIndex(1, submenu);
    button.selectItemAtIndex(1);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    button.openMenu();
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    QVERIFY(!submenu->isVisible());
    QVERIFY(!button.popUpMenu()->activeAction());
}

void PopUpButtonTest::submenuReplacedWhileDisabledIsEnabledWithTheButton()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    button.setSubmenuAtIndex(1, new QMenu);
    button.setEnabled(false);
    button.setSubmenuAtIndex(1, new QMenu);
    button.setEnabled(true);
    QVERIFY(button.itemAtIndex(1)->isEnabled());
    QVERIFY(button.submenuAtIndex(1)->isEnabled());
}

void PopUpButtonTest::longTitlesHaveALimitedWidth()
{
    PopUpButton button;
    button.addItemWithTitle(u"One"_s);
    const int narrow = button.sizeHint().width();
    button.addItemWithTitle(QString(30, u'w'));
    QVERIFY(button.sizeHint().width() > narrow);
    button.addItemWithTitle(QString(5000, u'w'));
    QVERIFY(button.sizeHint().width() < 1000);
}

void PopUpButtonTest::opensTheSameMenuElsewhere()
{
    PopUpButton button;
    addItems(button, {u"One"_s, u"Two"_s});
    QSignalSpy picked(&button, &PopUpButton::itemPicked);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    button.openMenuAt(QPoint(120, 90));
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    QCOMPARE(button.popUpMenu()->pos(), QPoint(120, 90));
    QTest::keyClick(button.popUpMenu(), Qt::Key_Down);
    QTest::keyClick(button.popUpMenu(), Qt::Key_Return);
    QCOMPARE(picked.count(), 1);
    QCOMPARE(button.indexOfSelectedItem(), 1);
}

void PopUpButtonTest::disabledButtonOpensNoMenuElsewhere()
{
    PopUpButton button;
    addItems(button, {u"One"_s});
    button.setEnabled(false);
    button.openMenuAt(QPoint(120, 90));
    QVERIFY(!button.popUpMenu()->isVisible());
}

void PopUpButtonTest::isAComboBoxForAssistiveTools()
{
    PopUpButton button;
    button.setAccessibleName(u"Choice"_s);
    addItems(button, {u"One"_s, u"Cut & Paste"_s});
    button.selectItemAtIndex(1);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&button);
    QCOMPARE(accessible->role(), QAccessible::ComboBox);
    QCOMPARE(accessible->text(QAccessible::Name), u"Choice"_s);
    QCOMPARE(accessible->text(QAccessible::Value), u"Cut & Paste"_s);
    QVERIFY(accessible->textInterface());
    QCOMPARE(accessible->textInterface()->text(0, accessible->textInterface()->characterCount()), u"Cut & Paste"_s);
    QVERIFY(accessible->state().collapsed);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QTRY_VERIFY(button.popUpMenu()->isVisible());
    QVERIFY(accessible->state().expanded);
}

QTEST_MAIN(PopUpButtonTest)
#include "popupbuttontest.moc"
