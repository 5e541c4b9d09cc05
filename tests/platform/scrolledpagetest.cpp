// SPDX-License-Identifier: MIT
#include "platform/scrolledpage.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize leastPicture(300, 90);

/// As wide as possible and half as high, but never lower than `leastPicture`.
class PictureLayout : public QLayout
{
public:
    using QLayout::QLayout;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return width / 2; }
    int minimumHeightForWidth(int) const override { return leastPicture.height(); }
    QSize sizeHint() const override { return {400, 200}; }
    QSize minimumSize() const override { return leastPicture; }
    void addItem(QLayoutItem *) override {}
    int count() const override { return 0; }
    QLayoutItem *itemAt(int) const override { return nullptr; }
    QLayoutItem *takeAt(int) override { return nullptr; }
};

bool isWholeIn(const QWidget *part, const QWidget *viewport)
{
    return viewport->rect().contains(QRect(part->mapTo(viewport, QPoint()), part->size()));
}

} // namespace

class ScrolledPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void contentFillsThePage();
    void contentShrinksBeforeItScrolls();
    void scrollsBelowTheLeastSize();
    void growsWithItsContent();
    void wrappedTextsKeepTheirHeight();
    void focusScrollsIntoView();
    void clickMovesNothing();

private:
    std::unique_ptr<ScrolledPage> mPage;
    QWidget *mPicture = nullptr;
    QLabel *mText = nullptr;
    QPushButton *mUpper = nullptr;
    QPushButton *mLower = nullptr;
};

void ScrolledPageTest::init()
{
    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    mPicture = new QWidget;
    new PictureLayout(mPicture);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    mPicture->setSizePolicy(policy);
    mText = new QLabel(u"One"_s);
    mText->setWordWrap(true);
    mUpper = new QPushButton(u"Upper"_s);
    mLower = new QPushButton(u"Lower"_s);
    for (QWidget *part : std::initializer_list<QWidget *>{mUpper, mPicture, mText, mLower})
        column->addWidget(part);
    mPage = std::make_unique<ScrolledPage>(content);
    mPage->resize(700, 600);
    mPage->show();
    mPage->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mPage.get()));
}

void ScrolledPageTest::contentFillsThePage()
{
    QCOMPARE(mPage->widget()->size(), mPage->size());
    QCOMPARE(mPage->viewport()->size(), mPage->size()); // no scroll bars
}

void ScrolledPageTest::contentShrinksBeforeItScrolls()
{
    mPage->resize(700, 300);
    QTRY_COMPARE(mPage->widget()->size(), QSize(700, 300));
    QCOMPARE(mPage->viewport()->size(), mPage->size());
    QVERIFY(mPicture->height() < 350 && mPicture->height() >= leastPicture.height());
}

void ScrolledPageTest::scrollsBelowTheLeastSize()
{
    mPage->resize(200, 100);
    QTRY_COMPARE(mPage->widget()->width(), leastPicture.width());
    QTRY_COMPARE(mPicture->height(), leastPicture.height());
    QCOMPARE(mPage->horizontalScrollBar()->maximum(), mPage->widget()->width() - mPage->viewport()->width());
    QCOMPARE(mPage->verticalScrollBar()->maximum(), mPage->widget()->height() - mPage->viewport()->height());
    QVERIFY(mPage->verticalScrollBar()->maximum() > 0);
}

void ScrolledPageTest::growsWithItsContent()
{
    mPage->resize(700, 260);
    QTRY_COMPARE(mPage->verticalScrollBar()->maximum(), 0);
    mText->setText(u"One\nTwo\nThree\nFour\nFive\nSix\nSeven\nEight\nNine\nTen"_s);
    QTRY_VERIFY(mPage->verticalScrollBar()->maximum() > 0);
    mText->setText(u"One"_s);
    QTRY_COMPARE(mPage->verticalScrollBar()->maximum(), 0);
}

void ScrolledPageTest::wrappedTextsKeepTheirHeight()
{
    mText->setText(u"Many words that do not fit into one line of the page. "_s.repeated(3));
    mPage->resize(320, 150);
    QTRY_VERIFY(mText->height() > 2 * mText->fontMetrics().height());
    QTRY_VERIFY(mText->height() >= mText->heightForWidth(mText->width()));
}

void ScrolledPageTest::focusScrollsIntoView()
{
    mPage->resize(200, 110);
    QTRY_VERIFY(mPage->verticalScrollBar()->maximum() > 0);
    QVERIFY(!isWholeIn(mLower, mPage->viewport()));
    mLower->setFocus(Qt::OtherFocusReason);
    QCOMPARE(mPage->verticalScrollBar()->value(), mPage->verticalScrollBar()->maximum());
    QTest::keyClick(mLower, Qt::Key_Tab);
    QVERIFY(mUpper->hasFocus());
    QCOMPARE(mPage->verticalScrollBar()->value(), 0);
}

void ScrolledPageTest::clickMovesNothing()
{
    mUpper->setFocus();
    mPage->resize(400, 110);
    QTRY_VERIFY(mPage->verticalScrollBar()->maximum() > 0);
    const int hidden = mPage->verticalScrollBar()->maximum() - mLower->height() / 2;
    mPage->verticalScrollBar()->setValue(hidden); // shows the button's upper half
    QSignalSpy clicked(mLower, &QPushButton::clicked);
    const QPoint place = mLower->mapTo(mPage.get(), QPoint(20, 2));
    // Through the window, as the desktop does: the application then knows that a button is down.
    QTest::mouseClick(mPage->windowHandle(), Qt::LeftButton, {}, place);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(mLower->hasFocus());
    QCOMPARE(mPage->verticalScrollBar()->value(), hidden);
}

QTEST_MAIN(ScrolledPageTest)
#include "scrolledpagetest.moc"
