// SPDX-License-Identifier: MIT
#include "platform/flowlayout.h"
#include "tests/support/testmain.h"

#include <QTest>
#include <QWidget>

class FlowLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void breaksRowsThatAreFull_data();
    void breaksRowsThatAreFull();
    void startsRowsAtTheLeft();
    void prefersOneRowAndNeedsTheWidestItem();
    void skipsHiddenItems();
    void returnsItsItems();

private:
    [[nodiscard]] QList<QRect> places() const;

    std::unique_ptr<QWidget> mPage;
    FlowLayout *mLayout = nullptr;
    QList<QWidget *> mItems;
};

void FlowLayoutTest::init()
{
    mPage = std::make_unique<QWidget>();
    mLayout = new FlowLayout(mPage.get(), 10, 5);
    mItems.clear();
    for (const QSize size : {QSize(40, 20), QSize(60, 10), QSize(30, 20)}) {
        auto *item = new QWidget;
        item->setFixedSize(size);
        mLayout->addWidget(item);
        mItems += item;
    }
}

QList<QRect> FlowLayoutTest::places() const
{
    QList<QRect> result;
    for (const QWidget *item : mItems)
        result += item->geometry();
    return result;
}

void FlowLayoutTest::breaksRowsThatAreFull_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QList<QRect>>("expected");
    // A lower item is centred in its row.
    const QRect first(0, 0, 40, 20);
    QTest::newRow("one row") << 150 << 20 << QList{first, QRect(50, 5, 60, 10), QRect(120, 0, 30, 20)};
    QTest::newRow("wider") << 170 << 20 << QList{QRect(10, 0, 40, 20), QRect(60, 5, 60, 10), QRect(130, 0, 30, 20)};
    QTest::newRow("one pixel too few") << 149 << 45
                                       << QList{QRect(19, 0, 40, 20), QRect(69, 5, 60, 10), QRect(59, 25, 30, 20)};
    QTest::newRow("one in each row") << 60 << 60
                                     << QList{QRect(10, 0, 40, 20), QRect(0, 25, 60, 10), QRect(15, 40, 30, 20)};
    QTest::newRow("too narrow") << 20 << 60 << QList{first, QRect(0, 25, 60, 10), QRect(0, 40, 30, 20)};
}

void FlowLayoutTest::breaksRowsThatAreFull()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QCOMPARE(mLayout->heightForWidth(width), height);
    mLayout->setGeometry(QRect(0, 0, width, height));
    QTEST(places(), "expected");
}

void FlowLayoutTest::startsRowsAtTheLeft()
{
    QWidget page;
    auto *layout = new FlowLayout(&page, 10, 5, FlowLayout::Rows::fromTheLeft);
    QList<QWidget *> items;
    for (const QSize size : {QSize(40, 20), QSize(60, 20)}) {
        items += new QWidget;
        items.last()->setFixedSize(size);
        layout->addWidget(items.last());
    }
    layout->setGeometry(QRect(0, 0, 90, 45));
    QCOMPARE(items[0]->geometry(), QRect(0, 0, 40, 20));
    QCOMPARE(items[1]->geometry(), QRect(0, 25, 60, 20));
}

void FlowLayoutTest::prefersOneRowAndNeedsTheWidestItem()
{
    QCOMPARE(mLayout->sizeHint(), QSize(150, 20));
    QCOMPARE(mLayout->minimumSize(), QSize(60, 20));
    mLayout->setContentsMargins(1, 2, 3, 4);
    QCOMPARE(mLayout->sizeHint(), QSize(154, 26));
    QCOMPARE(mLayout->minimumSize(), QSize(64, 26));
    QCOMPARE(mLayout->heightForWidth(154), 26);
    QCOMPARE(mLayout->heightForWidth(153), 51);
}

void FlowLayoutTest::skipsHiddenItems()
{
    mItems[1]->hide();
    QCOMPARE(mLayout->sizeHint(), QSize(80, 20));
    mLayout->setGeometry(QRect(0, 0, 80, 20));
    QCOMPARE(mItems[2]->geometry(), QRect(50, 0, 30, 20));
}

void FlowLayoutTest::returnsItsItems()
{
    QCOMPARE(mLayout->count(), 3);
    QCOMPARE(mLayout->itemAt(3), nullptr);
    QCOMPARE(mLayout->takeAt(-1), nullptr);
    const std::unique_ptr<QLayoutItem> taken(mLayout->takeAt(1));
    QCOMPARE(taken->widget(), mItems[1]);
    QCOMPARE(mLayout->count(), 2);
    QCOMPARE(mLayout->itemAt(1)->widget(), mItems[2]);
}

QTEST_MAIN(FlowLayoutTest)
#include "flowlayouttest.moc"
