// SPDX-License-Identifier: MIT
#include "platform/scrollingmenu.h"
#include "platform/popupbutton.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QScreen>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

namespace {

constexpr int manyItems = 256;

} // namespace

class ScrollingMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mMenu.reset(); }

    void manyItemsAreInOneColumn();
    void opensAtTheMarkedItem();
    void marksOneItemAtMost();
    void typingFindsTheItem_data();
    void typingFindsTheItem();
    void typingSkipsItemsThatCannotBeChosen();
    void openingAgainBeginsANewText();
    void returnChoosesTheFoundItem();

private:
    QAction *add(const QString &title);
    QString activeTitle() const { return mMenu->activeAction() ? menuItemTitle(mMenu->activeAction()) : QString(); }
    void open();

    std::unique_ptr<ScrollingMenu> mMenu;
};

void ScrollingMenuTest::init()
{
    mMenu = std::make_unique<ScrollingMenu>();
}

QAction *ScrollingMenuTest::add(const QString &title)
{
    QAction *item = addMenuItem(mMenu.get(), title, static_cast<int>(mMenu->actions().size()));
    mMenu->addChoice(item);
    return item;
}

void ScrollingMenuTest::open()
{
    mMenu->popup({0, 0});
    QVERIFY(QTest::qWaitForWindowExposed(mMenu.get()));
}

void ScrollingMenuTest::manyItemsAreInOneColumn()
{
    for (int number = 0; number < manyItems; ++number)
        add(u"Macro %1"_s.arg(number));
    open();
    std::set<int> columns;
    const QList<QAction *> items = mMenu->actions();
    for (const QAction *item : items)
        columns.insert(mMenu->actionGeometry(const_cast<QAction *>(item)).left());
    QCOMPARE(columns.size(), 1U);
    QVERIFY(mMenu->height() <= mMenu->screen()->geometry().height());
    // All items can be reached.
    QTest::keyClick(mMenu.get(), Qt::Key_End);
    QCOMPARE(activeTitle(), u"Macro 255"_s);
    QVERIFY(mMenu->rect().contains(mMenu->actionGeometry(items.last())));
    QTest::keyClick(mMenu.get(), Qt::Key_Home);
    QCOMPARE(activeTitle(), u"Macro 0"_s);
}

void ScrollingMenuTest::opensAtTheMarkedItem()
{
    for (int number = 0; number < manyItems; ++number)
        add(u"Macro %1"_s.arg(number));
    QAction *marked = mMenu->actions().at(200);
    mMenu->markItem(marked);
    open();
    QTRY_COMPARE(mMenu->activeAction(), marked);
    QVERIFY(marked->isChecked());
    QVERIFY(mMenu->rect().contains(mMenu->actionGeometry(marked)));
}

void ScrollingMenuTest::marksOneItemAtMost()
{
    QAction *first = add(u"First"_s);
    QAction *second = add(u"Second"_s);
    QVERIFY(!mMenu->markedItem());
    mMenu->markItem(first);
    mMenu->markItem(second);
    QVERIFY(!first->isChecked());
    QCOMPARE(mMenu->markedItem(), second);
    mMenu->markItem(nullptr);
    QVERIFY(!second->isChecked());
    QVERIFY(!mMenu->markedItem());
}

void ScrollingMenuTest::typingFindsTheItem_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("found");
    QTest::newRow("first letter") << u"h"_s << u"Heal"_s;
    QTest::newRow("same letter again") << u"hh"_s << u"heavy burst"_s;
    QTest::newRow("same letter, back to the first") << u"hhhh"_s << u"Heal"_s;
    QTest::newRow("several letters") << u"hast"_s << u"Haste"_s;
    QTest::newRow("capitals") << u"HAST"_s << u"Haste"_s;
    QTest::newRow("blank within the text") << u"heavy b"_s << u"heavy burst"_s;
    QTest::newRow("double letter") << u"aa"_s << u"Aardvark"_s;
    QTest::newRow("nothing fits, stays at what fitted") << u"heax"_s << u"Heal"_s;
    QTest::newRow("letter of no item") << u"z"_s << QString();
    QTest::newRow("ampersand in the title") << u"R&"_s << u"R&D"_s;
}

void ScrollingMenuTest::typingFindsTheItem()
{
    QFETCH(QString, typed);
    for (const char *title : {"Attack", "Aardvark", "Heal", "heavy burst", "Haste", "R&D"})
        add(QString::fromLatin1(title));
    open();
    QTest::keyClicks(mMenu.get(), typed);
    QTEST(activeTitle(), "found");
    QVERIFY(mMenu->isVisible());
}

void ScrollingMenuTest::typingSkipsItemsThatCannotBeChosen()
{
    add(u"Heal"_s)->setVisible(false);
    add(u"Heavy"_s)->setEnabled(false);
    add(u"Heat"_s);
    open();
    QTest::keyClicks(mMenu.get(), u"he"_s);
    QCOMPARE(activeTitle(), u"Heat"_s);
}

void ScrollingMenuTest::openingAgainBeginsANewText()
{
    add(u"Heal"_s);
    add(u"Attack"_s);
    open();
    QTest::keyClicks(mMenu.get(), u"h"_s);
    mMenu->close();
    open();
    QTest::keyClicks(mMenu.get(), u"a"_s); // not "ha"
    QCOMPARE(activeTitle(), u"Attack"_s);
}

void ScrollingMenuTest::returnChoosesTheFoundItem()
{
    add(u"Attack"_s);
    QAction *heal = add(u"Heal"_s);
    int chosen = 0;
    connect(heal, &QAction::triggered, this, [&chosen] { ++chosen; });
    open();
    QTest::keyClicks(mMenu.get(), u"h"_s);
    QTest::keyClick(mMenu.get(), Qt::Key_Return);
    QCOMPARE(chosen, 1);
    QVERIFY(!mMenu->isVisible());
}

QTEST_MAIN(ScrollingMenuTest)
#include "scrollingmenutest.moc"
