// SPDX-License-Identifier: MIT
#include "platform/tabview.h"
#include "tests/support/darkpalette.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QStyle>
#include <QStyleFactory>
#include <QTabBar>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }

    int count = 0;
};

/// A page that records requests for its size.
class AskedPage : public QWidget
{
public:
    QSize sizeHint() const override
    {
        isAsked = true;
        return {900, 700};
    }

    mutable bool isAsked = false;
};

QAccessibleInterface *accessibleTab(const TabView *view, int index)
{
    return QAccessible::queryAccessibleInterface(view->tabBar())->child(index);
}

void runEvents()
{
    for (int round = 0; round < 6; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

} // namespace

class TabViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Buttons and fields on a page must stay apart from it.
    void pageOfADarkDesktopIsDarkerThanItsButtons()
    {
        const QPalette before = QApplication::palette();
        const QString style = QApplication::style()->name();
        QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
        TabView view;
        view.addTab(new QWidget, u"One"_s);
        view.addTab(new QWidget, u"Two"_s);
        view.resize(300, 200);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto page = [&view] {
            runEvents(); // a changed palette reaches the widgets by events
            return view.grab().toImage().pixelColor(150, 120);
        };
        const QColor light = page();
        QApplication::setPalette(darkPalette());
        QVERIFY(page().lightness() < QApplication::palette().color(QPalette::Button).lightness());
        const QRect front = view.tabBar()->tabRect(0);
        QCOMPARE(view.grab().toImage().pixelColor(front.left() + 4, front.bottom() - 1).lightness(),
                 page().lightness());
        QApplication::setPalette(QApplication::style()->standardPalette());
        QCOMPARE(page(), light);
        QApplication::setPalette(before);
        QApplication::setStyle(style);
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void textOfTheSameSizePaintsOnlyItsLabel();
    void pageThatNeedsMoreRoomGetsIt();
    void longerTitleGetsItsRoom();
    void hiddenChangeIsLaidOutWhenShown();
    void pageReportsItsSizeWhenItBecomesVisible();
    void reportsTheCurrentTabToAssistiveTools();
    void assistiveToolsCanSelectATab();
    void reportsTheWidgetsOfItsBarAfterTheTabs();
    void removedTabIsInvalid();
    void frameLooksLikeThatOfTheBaseClass_data();
    void frameLooksLikeThatOfTheBaseClass();

private:
    std::unique_ptr<QWidget> mWindow;
    TabView *mTabView = nullptr;
    QLabel *mLabel = nullptr;
    QLabel *mNeighbour = nullptr;
};

void TabViewTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mTabView = new TabView;
    auto *page = new QWidget;
    mLabel = new QLabel(u"12"_s);
    mNeighbour = new QLabel(u"beside"_s);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(mLabel);
    layout->addWidget(mNeighbour);
    layout->addStretch();
    mTabView->addTab(page, u"One"_s);
    mTabView->addTab(new QWidget, u"Two"_s);
    (new QVBoxLayout(mWindow.get()))->addWidget(mTabView);
    mWindow->resize(400, 200);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    // The first request after the tab view is shown gets a full answer; from then on the sizes are known.
    mLabel->setText(u"34"_s);
    runEvents();
}

void TabViewTest::cleanup()
{
    mWindow.reset();
}

void TabViewTest::textOfTheSameSizePaintsOnlyItsLabel()
{
    PaintCounter ofLabel, ofNeighbour;
    mLabel->installEventFilter(&ofLabel);
    mNeighbour->installEventFilter(&ofNeighbour);
    mLabel->setText(u"56"_s);
    runEvents();
    QVERIFY(ofLabel.count > 0);
    QCOMPARE(ofNeighbour.count, 0);
}

void TabViewTest::pageThatNeedsMoreRoomGetsIt()
{
    mLabel->setMinimumHeight(500);
    QTRY_VERIFY(mWindow->height() > 500);
    QTRY_COMPARE(mLabel->height(), 500);
}

void TabViewTest::longerTitleGetsItsRoom()
{
    const int width = mTabView->tabBar()->width();
    mTabView->setTabText(0, u"A title that is a good deal longer"_s);
    QTRY_VERIFY(mTabView->tabBar()->width() > width);
}

void TabViewTest::hiddenChangeIsLaidOutWhenShown()
{
    mWindow->hide();
    mLabel->setMinimumHeight(300);
    runEvents();
    mWindow->show();
    QTRY_COMPARE(mLabel->height(), 300);
}

void TabViewTest::pageReportsItsSizeWhenItBecomesVisible()
{
    QWidget window;
    auto *tabView = new TabView;
    auto *behind = new AskedPage;
    tabView->addTab(new QWidget, u"Front"_s);
    tabView->addTab(behind, u"Behind"_s);
    (new QVBoxLayout(&window))->addWidget(tabView);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!behind->isAsked);

    tabView->setCurrentIndex(1);
    QTRY_VERIFY(behind->isAsked);
    QVERIFY(tabView->sizeHint().width() >= behind->sizeHint().width());
}

void TabViewTest::reportsTheCurrentTabToAssistiveTools()
{
    QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(mTabView->tabBar());
    QCOMPARE(bar->role(), QAccessible::PageTabList);
    mTabView->tabBar()->setFocus();
    mTabView->setTabToolTip(1, u"The second"_s);
    mTabView->setTabEnabled(0, false);
    mTabView->setTabEnabled(0, true);
    for (const int inFront : {1, 0}) {
        mTabView->setCurrentIndex(inFront);
        for (const int index : {0, 1}) {
            QAccessibleInterface *tab = accessibleTab(mTabView, index);
            QVERIFY(tab && tab->isValid());
            QCOMPARE(tab, accessibleTab(mTabView, index));
            QCOMPARE(tab->role(), QAccessible::PageTab);
            QCOMPARE(tab->text(QAccessible::Name), mTabView->tabText(index));
            QCOMPARE(tab->text(QAccessible::Description), mTabView->tabToolTip(index));
            QCOMPARE(tab->parent(), bar);
            QCOMPARE(tab->window(), mWindow->windowHandle());
            QCOMPARE(bar->indexOfChild(tab), index);
            const QAccessible::State state = tab->state();
            QVERIFY(state.selectable && state.focusable && !state.invisible && !state.disabled);
            QCOMPARE(bool(state.selected), index == inFront);
            QCOMPARE(bool(state.focused), index == inFront && mTabView->tabBar()->hasFocus());
            const QRect place = mTabView->tabBar()->tabRect(index);
            QCOMPARE(tab->rect(), QRect(mTabView->tabBar()->mapToGlobal(place.topLeft()), place.size()));
            QCOMPARE(bar->childAt(tab->rect().center().x(), tab->rect().center().y()), tab);
        }
        QCOMPARE(bar->focusChild(), mTabView->tabBar()->hasFocus() ? accessibleTab(mTabView, inFront) : nullptr);
    }
    mTabView->setTabEnabled(1, false);
    QVERIFY(accessibleTab(mTabView, 1)->state().disabled);
    mTabView->setTabVisible(1, false);
    QVERIFY(accessibleTab(mTabView, 1)->state().invisible);
}

void TabViewTest::assistiveToolsCanSelectATab()
{
    QAccessibleActionInterface *actions = accessibleTab(mTabView, 1)->actionInterface();
    QVERIFY(actions);
    QCOMPARE(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    actions->doAction(u"something else"_s);
    QCOMPARE(mTabView->currentIndex(), 0);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(mTabView->currentIndex(), 1);
}

void TabViewTest::reportsTheWidgetsOfItsBarAfterTheTabs()
{
    QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(mTabView->tabBar());
    QVERIFY(bar->childCount() > 2); // including the buttons that scroll it
    for (int index = 2; index < bar->childCount(); ++index) {
        QVERIFY(bar->child(index) && bar->child(index)->object());
        QCOMPARE(bar->indexOfChild(bar->child(index)), index);
    }
    QVERIFY(!bar->child(-1));
    QVERIFY(!bar->child(bar->childCount()));
}

void TabViewTest::removedTabIsInvalid()
{
    QAccessibleInterface *second = accessibleTab(mTabView, 1);
    mTabView->removeTab(1);
    QVERIFY(!second->isValid());
    QVERIFY(second->state().invalid);
    QVERIFY(second->text(QAccessible::Name).isEmpty());
    QVERIFY(second->rect().isEmpty());
    second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(mTabView->currentIndex(), 0);
}

void TabViewTest::frameLooksLikeThatOfTheBaseClass_data()
{
    QTest::addColumn<qreal>("ratio");
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0})
        QTest::addRow("%g", ratio) << ratio;
}

void TabViewTest::frameLooksLikeThatOfTheBaseClass()
{
    QFETCH(qreal, ratio);
    const auto picture = [ratio](QTabWidget &tabs) {
        tabs.setStyle(QStyleFactory::create(u"Fusion"_s));
        tabs.style()->setParent(&tabs);
        tabs.setAttribute(Qt::WA_DontShowOnScreen); // laid out, but neither becomes the active one
        tabs.addTab(new QWidget, u"One"_s);
        tabs.resize(300, 700);
        tabs.show();
        QImage image((QSizeF(tabs.size()) * ratio).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        tabs.render(&image);
        return image;
    };
    TabView tabView;
    QTabWidget tabWidget;
    const QImage image = picture(tabView);
    QVERIFY(image.pixelColor(image.rect().center()) != QColor(Qt::white)); // the frame is visible
    QCOMPARE(image, picture(tabWidget));
}

QTEST_MAIN(TabViewTest)
#include "tabviewtest.moc"
