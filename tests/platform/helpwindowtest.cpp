// SPDX-License-Identifier: MIT
#include "platform/helpwindow.h"
#include "platform/helpviewer.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

class HelpWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { mWindow.reset(); }

    void opensAtTheRequestedPage_data();
    void opensAtTheRequestedPage();
    void listsTheContentsAndFollowsThePage();
    void goesBackAndForward();
    void linksLeadToTheirPages();
    void findsPagesAndMarksTheWords();
    void returnOpensTheBestResult();
    void reportsThatNothingIsFound();
    void typingAQueryKeepsThePage();
    void isUsableByKeyboardOnly();
    void followsTheColorsOfTheDesktop();
    void linksAreVisibleOnADarkDesktopWithDarkLinks();
    void everyControlHasAName();
    void viewerShowsOneWindow();
    void viewerWithoutABookShowsNothing();

private:
    QTextBrowser *browser() const { return mWindow->findChild<QTextBrowser *>(u"helpBrowser"_s); }
    QListWidget *list() const { return mWindow->findChild<QListWidget *>(u"helpList"_s); }
    QLineEdit *searchField() const { return mWindow->findChild<QLineEdit *>(u"helpSearch"_s); }
    QAbstractButton *button(const char *name) const
    {
        return mWindow->findChild<QAbstractButton *>(QLatin1StringView(name));
    }
    /// Of the first link of the page.
    QColor linkColor() const;
    QString shown() const { return browser()->source().fileName(); }
    static QWidgetList viewers();

    QString mFolder;
    std::unique_ptr<HelpWindow> mWindow;
};

void HelpWindowTest::initTestCase()
{
    QVERIFY(installEnglishTexts());
    mFolder = qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/help/en"_s;
}

void HelpWindowTest::init()
{
    mWindow = std::make_unique<HelpWindow>(u"Book"_s, mFolder);
    mWindow->gotoPage(u"index.html"_s);
    mWindow->show();
    mWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

QWidgetList HelpWindowTest::viewers()
{
    QWidgetList found = QApplication::topLevelWidgets();
    found.removeIf([](const QWidget *widget) { return widget->objectName() != "helpViewer"_L1; });
    return found;
}

void HelpWindowTest::opensAtTheRequestedPage_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("heading");
    QTest::newRow("first") << u"index.html"_s << u"index.html"_s << u"Quill Kestra"_s;
    QTest::newRow("another") << u"macros.html"_s << u"macros.html"_s << u"Macros"_s;
    QTest::newRow("none such") << u"none.html"_s << u"index.html"_s << u"Quill Kestra"_s;
    QTest::newRow("outside the book") << u"../Kestra.plist"_s << u"index.html"_s << u"Quill Kestra"_s;
}

void HelpWindowTest::opensAtTheRequestedPage()
{
    QFETCH(QString, asked);
    HelpWindow window(u"Book"_s, mFolder);
    window.gotoPage(asked);
    const auto *page = window.findChild<QTextBrowser *>(u"helpBrowser"_s);
    QTEST(page->source().fileName(), "page");
    QFETCH(QString, heading);
    QVERIFY(page->toPlainText().startsWith(heading));
    QCOMPARE(window.windowTitle(), u"Book"_s);
}

void HelpWindowTest::listsTheContentsAndFollowsThePage()
{
    QVERIFY(list()->count() >= 12);
    QCOMPARE(list()->currentItem()->text(), u"Quill Kestra Expert MMO Gaming Keyboard"_s);
    QCOMPARE(list()->item(1)->text(), u"Getting started"_s);
    for (int row = list()->count() - 1; row >= 0; --row) {
        list()->setCurrentRow(row);
        QVERIFY2(browser()->toPlainText().startsWith(list()->item(row)->text()), qPrintable(list()->item(row)->text()));
    }
    mWindow->gotoPage(u"lighting.html"_s);
    QCOMPARE(list()->currentItem()->text(), u"Lighting"_s);
}

void HelpWindowTest::goesBackAndForward()
{
    QVERIFY(!button("helpBack")->isEnabled());
    QVERIFY(!button("helpForward")->isEnabled());
    mWindow->gotoPage(u"keys.html"_s);
    mWindow->gotoPage(u"macros.html"_s);
    mWindow->gotoPage(u"macros.html"_s); // is there already
    button("helpBack")->click();
    QCOMPARE(shown(), u"keys.html"_s);
    QCOMPARE(list()->currentItem()->text(), u"Keys"_s);
    QTest::keyClick(browser(), Qt::Key_Left, Qt::AltModifier); // visibly goes down and up, which takes a moment
    QTRY_COMPARE(shown(), u"index.html"_s);
    QVERIFY(!button("helpBack")->isEnabled());
    QTest::keyClick(browser(), Qt::Key_Right, Qt::AltModifier);
    QTRY_COMPARE(shown(), u"keys.html"_s);
    button("helpForward")->click();
    QCOMPARE(shown(), u"macros.html"_s);
    QVERIFY(!button("helpForward")->isEnabled());
    button("helpContents")->click();
    QCOMPARE(shown(), u"index.html"_s);
}

void HelpWindowTest::linksLeadToTheirPages()
{
    QTest::keyClick(browser(), Qt::Key_Tab); // to the first link
    QTest::keyClick(browser(), Qt::Key_Return);
    QCOMPARE(shown(), u"getting-started.html"_s);
    browser()->setSource(browser()->source().resolved(QUrl(u"profiles.html#restore"_s)));
    QCOMPARE(list()->currentItem()->text(), u"Profiles"_s);
    QVERIFY(browser()->verticalScrollBar()->value() > 0);
}

void HelpWindowTest::findsPagesAndMarksTheWords()
{
    QTest::keyClicks(searchField(), u"spectrum"_s);
    QVERIFY(list()->count() >= 1);
    QVERIFY2(list()->item(0)->text().startsWith(u"Lighting\n"_s), qPrintable(list()->item(0)->text()));
    QVERIFY(list()->item(0)->text().contains(u"spectrum"_s, Qt::CaseInsensitive));
    QTest::keyClick(searchField(), Qt::Key_Return);
    QCOMPARE(shown(), u"lighting.html"_s);
    const QList<QTextEdit::ExtraSelection> marks = browser()->extraSelections();
    QVERIFY(!marks.isEmpty());
    for (const QTextEdit::ExtraSelection &mark : marks)
        QCOMPARE(mark.cursor.selectedText().toLower(), u"spectrum"_s);
    searchField()->clear();
    QVERIFY(browser()->extraSelections().isEmpty());
    QVERIFY(list()->count() >= 12);
    QCOMPARE(shown(), u"lighting.html"_s);
}

void HelpWindowTest::returnOpensTheBestResult()
{
    QTest::keyClicks(searchField(), u"profile"_s);
    QVERIFY(list()->count() > 1);
    list()->setCurrentRow(0);
    const QString best = shown();
    list()->setCurrentRow(list()->count() - 1);
    QVERIFY(shown() != best);
    QTest::keyClick(searchField(), Qt::Key_Return);
    QCOMPARE(shown(), best);
    QCOMPARE(QApplication::focusWidget(), list());
}

void HelpWindowTest::reportsThatNothingIsFound()
{
    searchField()->setText(u"xylophone"_s);
    QCOMPARE(list()->count(), 1);
    QCOMPARE(list()->item(0)->text(), u"Nothing found"_s);
    QTest::keyClick(searchField(), Qt::Key_Return);
    QCOMPARE(shown(), u"index.html"_s);
}

void HelpWindowTest::typingAQueryKeepsThePage()
{
    const QSignalSpy changes(browser(), &QTextBrowser::sourceChanged);
    QTest::keyClicks(searchField(), u"macro"_s);
    QVERIFY(list()->count() > 1);
    QVERIFY(changes.isEmpty());
}

void HelpWindowTest::isUsableByKeyboardOnly()
{
    QTest::keyClick(browser(), Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), searchField());
    QTest::keyClicks(QApplication::focusWidget(), u"profile"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), list());
    const QString first = shown();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QVERIFY(shown() != first);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), browser());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(searchField()->text().isEmpty());
    QVERIFY(mWindow->isVisible());
    QTest::keyClick(browser(), Qt::Key_Home, Qt::AltModifier);
    QTRY_COMPARE(shown(), u"index.html"_s);
    QTest::keyClick(browser(), Qt::Key_Escape);
    QVERIFY(!mWindow->isVisible());
}

QColor HelpWindowTest::linkColor() const
{
    for (QTextBlock block = browser()->document()->begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (at.fragment().charFormat().isAnchor())
                return at.fragment().charFormat().foreground().color();
        }
    }
    return {};
}

void HelpWindowTest::followsTheColorsOfTheDesktop()
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    QPalette dark = before;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Link, QColor(120, 200, 255));
    QApplication::setPalette(dark);
    QTRY_COMPARE(linkColor(), QColor(120, 200, 255));
    QCOMPARE(shown(), u"index.html"_s);
    const QImage picture = browser()->viewport()->grab().toImage();
    QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::black));
}

void HelpWindowTest::linksAreVisibleOnADarkDesktopWithDarkLinks()
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    QCOMPARE(linkColor(), before.color(QPalette::Link));
    QPalette dark = before;
    dark.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Link, Qt::blue);
    QApplication::setPalette(dark);
    QTRY_VERIFY(linkColor().lightness() > 180);
    QCOMPARE(linkColor().hslHue(), QColor(Qt::blue).hslHue());
    // The same applies to a page that is opened after it.
    mWindow->gotoPage(u"keys.html"_s);
    mWindow->gotoPage(u"index.html"_s);
    QVERIFY(linkColor().lightness() > 180);
}

void HelpWindowTest::everyControlHasAName()
{
    QVERIFY(!searchField()->accessibleName().isEmpty());
    QVERIFY(!list()->accessibleName().isEmpty());
    for (const char *name : {"helpBack", "helpForward", "helpContents"}) {
        QVERIFY(!button(name)->text().isEmpty());
        QVERIFY(button(name)->toolTip().contains(u"Alt+"_s));
    }
}

void HelpWindowTest::viewerShowsOneWindow()
{
    mWindow.reset();
    HelpViewer::registerBook(u"Registered"_s, mFolder);
    HelpViewer::registerBook(u"Not there"_s, mFolder + u"/none"_s);
    HelpViewer::gotoPage(u"keys.html"_s);
    HelpViewer::gotoPage(u"files.html"_s);
    QCOMPARE(viewers().size(), 1);
    QWidget *viewer = viewers().first();
    QCOMPARE(viewer->windowTitle(), u"Registered"_s);
    QVERIFY(viewer->isVisible());
    QCOMPARE(viewer->findChild<QTextBrowser *>(u"helpBrowser"_s)->source().fileName(), u"files.html"_s);
    viewer->close();
    QTRY_VERIFY(viewers().isEmpty());
}

void HelpWindowTest::viewerWithoutABookShowsNothing()
{
    HelpWindow window(u"Empty"_s, mFolder + u"/none"_s);
    window.gotoPage(u"index.html"_s);
    window.show();
    QCOMPARE(window.findChild<QListWidget *>(u"helpList"_s)->count(), 0);
}

QTEST_MAIN(HelpWindowTest)
#include "helpwindowtest.moc"
