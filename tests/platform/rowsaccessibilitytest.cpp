// SPDX-License-Identifier: MIT
#include "platform/rowsaccessibility.h"

#include "platform/rowsview.h"
#include "platform/tableview.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int manyRows = 20000;

/// Lines that are formatted when they are asked for; counts the questions.
class Lines : public TableViewDataSource
{
public:
    int numberOfRowsInTableView(TableView *) override { return count; }
    QVariant tableViewObjectValueForTableColumnRow(TableView *, const QString &column, int row) override
    {
        ++questions;
        return u"%1 %2"_s.arg(column).arg(row);
    }
    void tableViewSetObjectValueForTableColumnRow(TableView *, const QVariant &, const QString &, int) override {}
    void tableViewSelectionDidChange(TableView *) override {}

    int count = manyRows;
    int questions = 0;
};

/// Visits all objects from `object` down as a screen reader does, and returns their number.
int walk(QAccessibleInterface *object)
{
    int count = 1;
    (void)object->text(QAccessible::Name);
    (void)object->text(QAccessible::Description);
    (void)object->state();
    (void)object->rect();
    for (int index = 0; index < object->childCount(); ++index) {
        QAccessibleInterface *child = object->child(index);
        if (!child || object->indexOfChild(child) != index)
            return -1;
        count += walk(child);
    }
    return count;
}

} // namespace

class RowsAccessibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mWindow.reset(); }
    void walkCostsTheVisibleRows();
    void childrenAreTheHeaderAndTheRowsInView();
    void countsHiddenRowsOut();
    void everyRowIsReachedThroughTheTable();
    void onlyTheViewWithTheFocusHasAFocusedCell();
    void editorIsAChild();
    void removedRowsBecomeInvalid();
    void treesWithoutHierarchyAreTables_data();
    void treesWithoutHierarchyAreTables();

private:
    [[nodiscard]] QAccessibleInterface *rows() const { return QAccessible::queryAccessibleInterface(mTable); }
    [[nodiscard]] int rowsInView() const
    {
        return mTable->viewport()->height() / mTable->verticalHeader()->defaultSectionSize() + 2;
    }

    Lines mLines;
    std::unique_ptr<QWidget> mWindow;
    TableView *mTable = nullptr;
    QPushButton *mButton = nullptr;
};

void RowsAccessibilityTest::init()
{
    mLines.count = manyRows;
    mLines.questions = 0;
    mWindow = std::make_unique<QWidget>();
    mTable = new TableView;
    mTable->addColumn({u"first"_s, u"First"_s, TableCell::text, true, true});
    mTable->addColumn({u"second"_s, u"Second"_s, TableCell::text, false, true});
    mTable->setDataSource(&mLines);
    mButton = new QPushButton(u"Beside"_s);
    auto *column = new QVBoxLayout(mWindow.get());
    column->addWidget(mTable);
    column->addWidget(mButton);
    mWindow->resize(400, 300);
    mWindow->show();
    mWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void RowsAccessibilityTest::walkCostsTheVisibleRows()
{
    constexpr int columns = 2;
    constexpr int questionsPerCell = 40; // by painting, for the texts, flags and the size
    QVERIFY(!mWindow->grab().isNull());
    QVERIFY2(mLines.questions <= 4 * questionsPerCell * columns * rowsInView(),
             qPrintable(QString::number(mLines.questions)));
    mLines.questions = 0;
    const int objects = walk(rows());
    QVERIFY(objects > columns * 3);
    QVERIFY2(objects <= 1 + columns + columns * rowsInView(), qPrintable(QString::number(objects)));
    QVERIFY2(mLines.questions <= questionsPerCell * columns * rowsInView(),
             qPrintable(QString::number(mLines.questions)));
    // The same after a jump to the end.
    mTable->scrollToBottom();
    mLines.questions = 0;
    QVERIFY(walk(rows()) <= 1 + columns + columns * rowsInView());
    QVERIFY2(mLines.questions <= questionsPerCell * columns * rowsInView(),
             qPrintable(QString::number(mLines.questions)));
}

void RowsAccessibilityTest::childrenAreTheHeaderAndTheRowsInView()
{
    QCOMPARE(rows()->role(), QAccessible::Table);
    QCOMPARE(rows()->child(0)->text(QAccessible::Name), u"First"_s);
    QCOMPARE(rows()->child(0)->role(), QAccessible::ColumnHeader);
    QCOMPARE(rows()->child(2)->text(QAccessible::Name), u"first 0"_s);
    QCOMPARE(rows()->child(3)->text(QAccessible::Name), u"second 0"_s);
    mTable->verticalScrollBar()->setValue(500);
    QCOMPARE(rows()->child(2)->text(QAccessible::Name), u"first 500"_s);
    QCOMPARE(rows()->childAt(rows()->child(4)->rect().center().x(), rows()->child(4)->rect().center().y()),
             rows()->child(4));
    mTable->horizontalHeader()->hide();
    QCOMPARE(rows()->child(0)->text(QAccessible::Name), u"first 500"_s);
}

void RowsAccessibilityTest::countsHiddenRowsOut()
{
    mTable->showOnly([](int row) { return row == 3 || row == 700; });
    QCOMPARE(rows()->childCount(), 2 + 2 * 2);
    QCOMPARE(rows()->child(2)->text(QAccessible::Name), u"first 3"_s);
    QCOMPARE(rows()->child(4)->text(QAccessible::Name), u"first 700"_s);
    QCOMPARE(rows()->indexOfChild(rows()->child(5)), 5);
    QAccessibleInterface *hidden = rows()->tableInterface()->cellAt(4, 0);
    QVERIFY(hidden->state().invisible);
    QCOMPARE(rows()->indexOfChild(hidden), -1);
    mTable->showOnly([](int) { return false; });
    QCOMPARE(rows()->childCount(), 2);
}

void RowsAccessibilityTest::everyRowIsReachedThroughTheTable()
{
    QAccessibleTableInterface *table = rows()->tableInterface();
    QVERIFY(table);
    QCOMPARE(table->rowCount(), manyRows);
    QCOMPARE(table->columnCount(), 2);
    QAccessibleInterface *last = table->cellAt(manyRows - 1, 1);
    QVERIFY(last);
    QCOMPARE(last->text(QAccessible::Name), u"second 19999"_s);
    QVERIFY(last->state().invisible);
    QCOMPARE(last->tableCellInterface()->rowIndex(), manyRows - 1);
    QCOMPARE(last->tableCellInterface()->columnHeaderCells().value(0)->text(QAccessible::Name), u"Second"_s);
    QVERIFY(!table->cellAt(manyRows, 0));
    QVERIFY(!table->cellAt(0, 2));
    QVERIFY(table->selectRow(7));
    QCOMPARE(mTable->selectedRow(), 7);
    QCOMPARE(table->selectedRows(), QList<int>{7});
    table->cellAt(9, 0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(mTable->selectedRow(), 9);
}

void RowsAccessibilityTest::onlyTheViewWithTheFocusHasAFocusedCell()
{
    mTable->setFocus();
    mTable->selectRow(1);
    QAccessibleInterface *cell = rows()->tableInterface()->cellAt(1, 0);
    QVERIFY(cell->state().focused);
    QCOMPARE(rows()->focusChild(), cell);
    mButton->setFocus();
    QVERIFY(!cell->state().focused);
    QVERIFY(cell->state().selected);
    mTable->setFocus();
    QVERIFY(cell->state().focused);
    mTable->hide();
    QVERIFY(!cell->state().focused);
    QVERIFY(cell->state().invisible);
}

void RowsAccessibilityTest::editorIsAChild()
{
    mTable->setFocus();
    mTable->addColumn({u"name"_s, u"Name"_s, TableCell::text, true, true});
    mTable->selectRow(1);
    mTable->editColumnRow(2, 1, true);
    auto *editor = mTable->findChild<QLineEdit *>(u"cellEditor"_s);
    QVERIFY(editor);
    QAccessibleInterface *last = rows()->child(rows()->childCount() - 1);
    QCOMPARE(last->object(), editor);
    QCOMPARE(rows()->indexOfChild(last), rows()->childCount() - 1);
    QVERIFY(!rows()->tableInterface()->cellAt(1, 2)->state().focused);
    QVERIFY(last->state().focused);
}

void RowsAccessibilityTest::removedRowsBecomeInvalid()
{
    QAccessibleInterface *cell = rows()->tableInterface()->cellAt(5, 0);
    QVERIFY(cell->isValid());
    const QAccessible::Id id = QAccessible::uniqueId(cell);
    mLines.count = 3;
    mTable->reloadData();
    QAccessibleInterface *now = QAccessible::accessibleInterface(id);
    QVERIFY(!now || !now->isValid());
    QCOMPARE(rows()->childCount(), 2 + 3 * 2);
}

void RowsAccessibilityTest::treesWithoutHierarchyAreTables_data()
{
    QTest::addColumn<bool>("isEarly");
    QTest::newRow("a tool comes later") << false;
    // Qt then asks for the interface of a tree while it makes the tree.
    QTest::newRow("a tool is there before the tree") << true;
}

void RowsAccessibilityTest::treesWithoutHierarchyAreTables()
{
    QFETCH(bool, isEarly);
    QAccessible::setActive(isEarly);
    const auto noTool = qScopeGuard([] { QAccessible::setActive(false); });
    RowsView<QTreeWidget> tree;
    tree.setHeaderLabels({u"Name"_s, u"State"_s});
    new QTreeWidgetItem(&tree, {u"Board"_s, u"ready"_s});
    tree.resize(300, 200);
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QAccessibleInterface *object = QAccessible::queryAccessibleInterface(&tree);
    QCOMPARE(object->childCount(), 4);
    QCOMPARE(object->child(1)->text(QAccessible::Name), u"State"_s);
    QCOMPARE(object->child(3)->text(QAccessible::Name), u"ready"_s);
    QCOMPARE(walk(object), 5);
    // The view reports what changes.
    QAccessible::setActive(true);
    tree.setCurrentItem(tree.topLevelItem(0));
    QVERIFY(object->child(2)->state().selected);
    QCOMPARE(object->child(2)->role(), QAccessible::Cell);
    tree.clear();
    QCOMPARE(walk(object), 3);
}

QTEST_MAIN(RowsAccessibilityTest)
#include "rowsaccessibilitytest.moc"
