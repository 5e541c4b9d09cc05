// SPDX-License-Identifier: MIT
// Dragging rows of a table with the mouse: the place of the drop, and everything that ends the drag without one.
#include "platform/rowdrag.h"
#include "platform/tableview.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Numbered rows; records the drops. No place is directly behind row 2.
class Source : public TableViewDataSource
{
public:
    int numberOfRowsInTableView(TableView *) override { return count; }
    QVariant tableViewObjectValueForTableColumnRow(TableView *, const QString &, int row) override { return row; }
    void tableViewSetObjectValueForTableColumnRow(TableView *, const QVariant &, const QString &, int) override {}
    void tableViewSelectionDidChange(TableView *) override {}
    int tableViewPlaceOfDrop(TableView *, int place) override { return place == 3 ? 2 : place; }
    void tableViewMoveSelectedRows(TableView *table, int place) override
    {
        drops += place;
        moved = table->selectedRows();
    }

    int count = 100;
    QList<int> drops;
    QList<int> moved;
};

} // namespace

class RowDragTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void dropsBetweenRows_data();
    void dropsBetweenRows();
    void dropsBelowTheLastRow();
    void movesTheSelectedRows_data();
    void movesTheSelectedRows();
    void clickSelectsOneOfSeveralRows();
    void showsThePlaceOfTheDrop();
    void dropOutsideIsRefused_data();
    void dropOutsideIsRefused();
    void edgesScroll_data();
    void edgesScroll();
    void endsWithoutADrop_data();
    void endsWithoutADrop();
    void modifiersSelect();
    void otherTablesSelectWhileDragging();

private:
    [[nodiscard]] QRect rowRect(int row) const { return mTable->visualRect(mTable->model()->index(row, 0)); }
    [[nodiscard]] QPoint upperPart(int row) const { return {40, rowRect(row).top() + 2}; }
    [[nodiscard]] QPoint lowerPart(int row) const { return {40, rowRect(row).bottom() - 2}; }
    void press(int row) { QTest::mousePress(mTable->viewport(), Qt::LeftButton, {}, rowRect(row).center()); }
    void moveTo(const QPoint &place, Qt::KeyboardModifiers modifiers = {});
    void release(const QPoint &place) { QTest::mouseRelease(mTable->viewport(), Qt::LeftButton, {}, place); }
    void drag(int row, const QPoint &place);

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<Source> mSource;
    TableView *mTable = nullptr;
    QLineEdit *mOther = nullptr;
};

void RowDragTest::init()
{
    mSource = std::make_unique<Source>();
    mWindow = std::make_unique<QWidget>();
    mTable = new TableView;
    mTable->addColumn({u"number"_s, u"Number"_s, TableCell::text, false, true});
    mTable->setAllowsSeveralRows(true);
    mTable->setAllowsMovingRows(true);
    mTable->setDataSource(mSource.get());
    mOther = new QLineEdit;
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mTable);
    layout->addWidget(mOther);
    mWindow->resize(300, 400);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    mTable->setFocus();
}

void RowDragTest::cleanup()
{
    mTable->setDataSource(nullptr);
    mWindow.reset();
    mSource.reset();
}

void RowDragTest::moveTo(const QPoint &place, Qt::KeyboardModifiers modifiers)
{
    QMouseEvent move(QEvent::MouseMove, place, mTable->viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                     modifiers);
    QCoreApplication::sendEvent(mTable->viewport(), &move);
}

void RowDragTest::drag(int row, const QPoint &place)
{
    press(row);
    moveTo(place);
    release(place);
}

void RowDragTest::dropsBetweenRows_data()
{
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isLower");
    QTest::addColumn<int>("place");
    QTest::newRow("upper part") << 5 << false << 5;
    QTest::newRow("lower part") << 5 << true << 6;
    QTest::newRow("first row") << 0 << false << 0;
    QTest::newRow("where no place is") << 2 << true << 2;
}

void RowDragTest::dropsBetweenRows()
{
    QFETCH(int, target);
    QFETCH(bool, isLower);
    QFETCH(int, place);
    drag(7, isLower ? lowerPart(target) : upperPart(target));
    QCOMPARE(mSource->drops, QList<int>{place});
    QCOMPARE(mSource->moved, QList<int>{7});
}

void RowDragTest::dropsBelowTheLastRow()
{
    mSource->count = 4;
    mTable->reloadData();
    drag(1, QPoint(40, rowRect(3).bottom() + 60));
    QCOMPARE(mSource->drops, QList<int>{4});
}

void RowDragTest::movesTheSelectedRows_data()
{
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("moved");
    QTest::newRow("one of several") << QList<int>{1, 4, 5} << 4 << QList<int>{1, 4, 5};
    QTest::newRow("another row") << QList<int>{1, 4, 5} << 6 << QList<int>{6};
    QTest::newRow("none selected") << QList<int>{} << 6 << QList<int>{6};
}

void RowDragTest::movesTheSelectedRows()
{
    QFETCH(QList<int>, selected);
    QFETCH(int, row);
    QFETCH(QList<int>, moved);
    mTable->selectRows(selected);
    drag(row, upperPart(8));
    QCOMPARE(mSource->drops, QList<int>{8});
    QCOMPARE(mSource->moved, moved);
    // The next press begins anew.
    drag(0, upperPart(9));
    QCOMPARE(mSource->moved, QList<int>{0});
}

void RowDragTest::clickSelectsOneOfSeveralRows()
{
    mTable->selectRows({1, 4, 5});
    press(4);
    moveTo(rowRect(4).center() + QPoint(1, 0)); // a hand that is not quite still
    QCOMPARE(mTable->selectedRows(), (QList<int>{1, 4, 5}));
    release(rowRect(4).center());
    QCOMPARE(mTable->selectedRows(), QList<int>{4});
    QCOMPARE(mSource->drops, QList<int>());
}

void RowDragTest::showsThePlaceOfTheDrop()
{
    const auto shown = [this] { return mTable->viewport()->grab().toImage(); };
    // The line between the rows has one colour from one side to the other.
    const auto hasLineAt = [](const QImage &image, int y, QRgb color) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != color)
                return false;
        }
        return true;
    };
    const QRgb color = mTable->palette().color(QPalette::Text).rgb();
    press(7);
    const int y = rowRect(5).top();
    QVERIFY(!hasLineAt(shown(), y, color));
    moveTo(upperPart(5));
    QVERIFY(hasLineAt(shown(), y, color));
    moveTo(QPoint(-30, y));
    QVERIFY(!hasLineAt(shown(), y, color));
    moveTo(upperPart(5));
    release(upperPart(5));
    QVERIFY(!hasLineAt(shown(), y, color));
}

void RowDragTest::dropOutsideIsRefused_data()
{
    QTest::addColumn<QPoint>("beyond");
    QTest::newRow("left") << QPoint(-1, 0);
    QTest::newRow("right") << QPoint(1, 0);
    QTest::newRow("above") << QPoint(0, -1);
    QTest::newRow("below") << QPoint(0, 1);
}

void RowDragTest::dropOutsideIsRefused()
{
    QFETCH(QPoint, beyond);
    const QSize size = mTable->viewport()->size();
    const QPoint middle(size.width() / 2, size.height() / 2);
    mTable->selectRows({1, 4});
    drag(4, middle + QPoint(beyond.x() * size.width(), beyond.y() * size.height()));
    QCOMPARE(mSource->drops, QList<int>());
    QCOMPARE(mTable->selectedRows(), (QList<int>{1, 4}));
}

void RowDragTest::edgesScroll_data()
{
    QTest::addColumn<bool>("isDown");
    QTest::addColumn<int>("beyond");
    for (const int beyond : {-2, 30}) {
        QTest::addRow("down, %d", beyond) << true << beyond;
        QTest::addRow("up, %d", beyond) << false << beyond;
    }
}

void RowDragTest::edgesScroll()
{
    QFETCH(bool, isDown);
    QFETCH(int, beyond);
    mSource->count = 40;
    mTable->reloadData();
    QScrollBar *bar = mTable->verticalScrollBar();
    bar->setValue(isDown ? 0 : bar->maximum());
    const int row = isDown ? 3 : 37;
    press(row);
    const int height = mTable->viewport()->height();
    moveTo(QPoint(40, isDown ? height + beyond : -beyond));
    QTRY_COMPARE_WITH_TIMEOUT(bar->value(), isDown ? bar->maximum() : 0, 60'000); // without a further move
    const QPoint target = isDown ? lowerPart(39) : upperPart(0);
    moveTo(target);
    release(target);
    QCOMPARE(mSource->drops, QList<int>{isDown ? 40 : 0});
    QCOMPARE(mSource->moved, QList<int>{row});
}

void RowDragTest::endsWithoutADrop_data()
{
    QTest::addColumn<QString>("end");
    for (const char *end : {"Escape", "reload", "row by call", "rows by call", "no row", "fewer rows", "disabled",
                            "hidden", "focus", "another button"})
        QTest::newRow(end) << QString::fromLatin1(end);
}

void RowDragTest::endsWithoutADrop()
{
    QFETCH(QString, end);
    press(7);
    moveTo(upperPart(5));
    const bool goesOn = end == u"another button"_s;
    if (end == u"Escape"_s)
        QTest::keyClick(mTable, Qt::Key_Escape);
    else if (end == u"reload"_s)
        mTable->reloadData();
    else if (end == u"row by call"_s)
        mTable->selectRow(3);
    else if (end == u"rows by call"_s)
        mTable->selectRows({3, 4});
    else if (end == u"no row"_s)
        mTable->deselectAll();
    else if (end == u"disabled"_s)
        mTable->setEnabled(false);
    else if (end == u"hidden"_s)
        mTable->hide();
    else if (end == u"focus"_s)
        mOther->setFocus();
    else if (goesOn)
        QTest::mouseRelease(mTable->viewport(), Qt::RightButton, {}, upperPart(5));
    if (end == u"fewer rows"_s) {
        mSource->count = 90;
        QCOMPARE(mTable->numberOfRows(), 90);
    }
    mTable->setEnabled(true);
    mTable->show();
    const QList<int> selected = mTable->selectedRows();
    moveTo(upperPart(4));
    release(upperPart(4));
    QCOMPARE(mSource->drops, goesOn ? QList<int>{4} : QList<int>());
    QCOMPARE(mTable->selectedRows(), selected);
    // The next drag is not affected.
    mSource->drops.clear();
    drag(7, upperPart(5));
    QCOMPARE(mSource->drops, QList<int>{5});
}

void RowDragTest::modifiersSelect()
{
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier}) {
        mTable->selectRows({1, 2});
        QTest::mousePress(mTable->viewport(), Qt::LeftButton, modifier, rowRect(4).center());
        moveTo(upperPart(7), modifier);
        QTest::mouseRelease(mTable->viewport(), Qt::LeftButton, modifier, upperPart(7));
        QVERIFY(mTable->selectedRows().contains(4));
    }
    QCOMPARE(mSource->drops, QList<int>());
}

void RowDragTest::otherTablesSelectWhileDragging()
{
    mTable->setAllowsMovingRows(false);
    press(2);
    moveTo(upperPart(5));
    release(upperPart(5));
    QCOMPARE(mTable->selectedRows(), (QList<int>{2, 3, 4, 5}));
    QCOMPARE(mSource->drops, QList<int>());
}

QTEST_MAIN(RowDragTest)
#include "rowdragtest.moc"
