// SPDX-License-Identifier: MIT
#include "platform/sheet.h"
#include "tests/support/testmain.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class SheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mWindow.show(); }
    void belongsToItsWindowAndDoesNotBlock();
    void appearsWithItsWindow();
    void staysHiddenWhenClosedBeforeItsWindowAppears_data();
    void staysHiddenWhenClosedBeforeItsWindowAppears();
    void followsItsWindow();
    void reportsItsEndOnce();
    void canBeginAgainAtItsEnd();
    void canBeShownAgainWhileItIsOpen();
    void endsAfterItWasOrderedOut();
    void reportsNothingWhenItIsNotOpen();
    void paneIsInTheMiddleOfItsWindow();
    void paneAppearsWithItsWindow();
    void paneKeepsInputFromTheRestOfItsWindow();
    void paneKeepsAndRestoresTheFocus();
    void pressesTheCancelButtonOnEscape();
    void staysOnEscapeWithoutCancelButton();
    void pressesTheCloseButtonWhenItIsClosed();
    void returnsTheButtonsOfAnAlert_data();
    void returnsTheButtonsOfAnAlert();
    void answersReturnAndEscapeInAnAlert();
    void longNamesFitIntoAnAlert_data();
    void longNamesFitIntoAnAlert();
    void nameCannotTurnTheTextOfAnAlert();

private:
    QWidget mWindow;
};

void SheetTest::belongsToItsWindowAndDoesNotBlock()
{
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    QVERIFY(sheet.isVisible());
    QVERIFY(sheet.isUp());
    QCOMPARE(sheet.windowModality(), Qt::WindowModal);
    QCOMPARE(sheet.parentWidget(), &mWindow);
    sheet.setParent(nullptr);
}

void SheetTest::appearsWithItsWindow()
{
    mWindow.hide();
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    QVERIFY(sheet.isUp());
    QVERIFY(!sheet.isVisible());
    mWindow.show();
    QTRY_VERIFY(sheet.isVisible());
    sheet.setParent(nullptr);
}

void SheetTest::staysHiddenWhenClosedBeforeItsWindowAppears_data()
{
    QTest::addColumn<bool>("isEnded");
    QTest::newRow("ended") << true;
    QTest::newRow("ordered out") << false;
}

void SheetTest::staysHiddenWhenClosedBeforeItsWindowAppears()
{
    QFETCH(bool, isEnded);
    mWindow.hide();
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    if (isEnded)
        sheet.endSheet();
    else
        sheet.orderOut();
    QCOMPARE(sheet.isUp(), !isEnded);
    mWindow.show();
    QCoreApplication::processEvents();
    QVERIFY(!sheet.isVisible());
    sheet.setParent(nullptr);
}

void SheetTest::followsItsWindow()
{
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    const QPoint distance = sheet.pos() - mWindow.pos();
    mWindow.move(mWindow.pos() + QPoint(70, 40));
    QTRY_COMPARE(sheet.pos() - mWindow.pos(), distance);
    sheet.endSheet();
    const QPoint left = sheet.pos();
    mWindow.move(mWindow.pos() - QPoint(70, 40));
    QCoreApplication::processEvents();
    QCOMPARE(sheet.pos(), left);

    // This window must not move the sheet of another one.
    QWidget other;
    other.show();
    sheet.beginSheet(&other);
    const QPoint there = sheet.pos();
    mWindow.move(mWindow.pos() + QPoint(70, 40));
    QCoreApplication::processEvents();
    QCOMPARE(sheet.pos(), there);
    sheet.endSheet();
    sheet.setParent(nullptr);
}

void SheetTest::reportsItsEndOnce()
{
    Sheet sheet;
    QList<int> codes;
    sheet.beginSheet(&mWindow, [&](int code) { codes.append(code); });
    sheet.endSheet(7);
    sheet.endSheet(8);
    QCOMPARE(codes, QList<int>{7});
    QVERIFY(!sheet.isVisible());
    QVERIFY(!sheet.isUp());
    sheet.setParent(nullptr);
}

void SheetTest::canBeginAgainAtItsEnd()
{
    Sheet sheet;
    int ends = 0;
    sheet.beginSheet(&mWindow, [&](int) {
        ++ends;
        sheet.beginSheet(&mWindow, [&](int) { ++ends; });
    });
    sheet.endSheet();
    QCOMPARE(ends, 1);
    QVERIFY(sheet.isVisible());
    sheet.endSheet();
    QCOMPARE(ends, 2);
    QVERIFY(!sheet.isVisible());
    sheet.setParent(nullptr);
}

void SheetTest::canBeShownAgainWhileItIsOpen()
{
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    sheet.orderOut();
    QVERIFY(!sheet.isVisible());
    sheet.beginSheet(&mWindow);
    QVERIFY(sheet.isVisible());
    sheet.endSheet();
    QVERIFY(!sheet.isVisible());
    sheet.setParent(nullptr);
}

void SheetTest::endsAfterItWasOrderedOut()
{
    Sheet sheet;
    int ends = 0;
    sheet.beginSheet(&mWindow, [&](int) { ++ends; });
    sheet.orderOut();
    QCOMPARE(ends, 0);
    QVERIFY(sheet.isUp());
    sheet.endSheet();
    QCOMPARE(ends, 1);
    sheet.setParent(nullptr);
}

void SheetTest::reportsNothingWhenItIsNotOpen()
{
    Sheet sheet;
    sheet.orderOut();
    sheet.endSheet(3);
    QVERIFY(!sheet.isVisible());
}

void SheetTest::paneIsInTheMiddleOfItsWindow()
{
    QWidget window;
    window.resize(600, 400);
    auto *sheet = new Sheet(&window, Sheet::Place::insideWindow);
    (new QVBoxLayout(sheet))->addWidget(new QPushButton(u"a button"_s));
    window.show();
    QVERIFY(!sheet->isVisible());
    sheet->beginSheet(&window);
    QVERIFY(sheet->isVisible());
    QVERIFY(!sheet->isWindow());
    const auto distance = [&] { return (sheet->geometry().center() - window.rect().center()).manhattanLength(); };
    QVERIFY(distance() <= 2);
    QVERIFY(window.rect().contains(sheet->geometry()));
    window.resize(900, 300);
    QTRY_VERIFY(distance() <= 2);
    sheet->endSheet();
    QVERIFY(!sheet->isVisible());
}

void SheetTest::paneAppearsWithItsWindow()
{
    QWidget window;
    auto *sheet = new Sheet(&window, Sheet::Place::insideWindow);
    sheet->beginSheet(&window);
    QVERIFY(!sheet->isVisible());
    window.show();
    QTRY_VERIFY(sheet->isVisible());
}

void SheetTest::paneKeepsInputFromTheRestOfItsWindow()
{
    QWidget window;
    window.resize(600, 400);
    auto *below = new QPushButton(u"below"_s, &window);
    auto *sheet = new Sheet(&window, Sheet::Place::insideWindow);
    auto *inside = new QPushButton(u"inside"_s);
    (new QVBoxLayout(sheet))->addWidget(inside);
    QSignalSpy belowClicked(below, &QPushButton::clicked);
    QSignalSpy insideClicked(inside, &QPushButton::clicked);
    const auto useBelow = [below] {
        QTest::mouseClick(below, Qt::LeftButton);
        QTest::keyClick(below, Qt::Key_Space);
    };
    window.show();
    useBelow();
    QCOMPARE(belowClicked.count(), 2);
    sheet->beginSheet(&window);
    useBelow();
    QCOMPARE(belowClicked.count(), 2);
    QTest::mouseClick(inside, Qt::LeftButton);
    QCOMPARE(insideClicked.count(), 1);
    QPushButton other(u"in another window"_s);
    QSignalSpy otherClicked(&other, &QPushButton::clicked);
    other.show();
    QTest::mouseClick(&other, Qt::LeftButton);
    QCOMPARE(otherClicked.count(), 1);
    sheet->endSheet();
    useBelow();
    QCOMPARE(belowClicked.count(), 4);
}

void SheetTest::paneKeepsAndRestoresTheFocus()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *before = new QPushButton(u"before"_s);
    auto *after = new QPushButton(u"after"_s);
    layout->addWidget(before);
    layout->addWidget(after);
    auto *sheet = new Sheet(&window, Sheet::Place::insideWindow);
    sheet->setFocusPolicy(Qt::StrongFocus);
    auto *first = new QPushButton(u"first"_s);
    auto *second = new QPushButton(u"second"_s);
    auto *sheetLayout = new QVBoxLayout(sheet);
    sheetLayout->addWidget(first);
    sheetLayout->addWidget(second);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    after->setFocus();
    sheet->beginSheet(&window);
    const auto focusAfter = [&window](Qt::Key key) {
        QTest::keyClick(window.focusWidget(), key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        return window.focusWidget();
    };
    QCOMPARE(window.focusWidget(), sheet);
    QCOMPARE(focusAfter(Qt::Key_Tab), first);
    QCOMPARE(focusAfter(Qt::Key_Tab), second);
    QCOMPARE(focusAfter(Qt::Key_Tab), sheet);
    QCOMPARE(focusAfter(Qt::Key_Backtab), second);
    QCOMPARE(focusAfter(Qt::Key_Backtab), first);
    sheet->endSheet();
    QCOMPARE(window.focusWidget(), after);
}

void SheetTest::pressesTheCancelButtonOnEscape()
{
    Sheet sheet;
    QPushButton cancel(&sheet);
    QSignalSpy clicked(&cancel, &QPushButton::clicked);
    sheet.setCancelButton(&cancel);
    sheet.beginSheet(&mWindow);
    QTest::keyClick(&sheet, Qt::Key_Escape);
    QCOMPARE(clicked.count(), 1);
    sheet.close();
    QCOMPARE(clicked.count(), 2);
    sheet.setParent(nullptr);
}

void SheetTest::staysOnEscapeWithoutCancelButton()
{
    Sheet sheet;
    sheet.beginSheet(&mWindow);
    QTest::keyClick(&sheet, Qt::Key_Escape);
    QVERIFY(sheet.isVisible());
    QVERIFY(!sheet.close());
    QVERIFY(sheet.isVisible());
    sheet.setParent(nullptr);
}

void SheetTest::pressesTheCloseButtonWhenItIsClosed()
{
    Sheet sheet;
    QPushButton quit(&sheet);
    QSignalSpy clicked(&quit, &QPushButton::clicked);
    sheet.setCloseButton(&quit);
    sheet.beginSheet(&mWindow);
    QTest::keyClick(&sheet, Qt::Key_Escape);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(sheet.close());
    QCOMPARE(clicked.count(), 1);
    sheet.setParent(nullptr);
}

void SheetTest::returnsTheButtonsOfAnAlert_data()
{
    QTest::addColumn<QString>("alternative");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("code");
    QTest::newRow("the only button") << QString() << u"alertDefaultButton"_s << 1000;
    QTest::newRow("the first of two") << u"Cancel"_s << u"alertDefaultButton"_s << 1000;
    QTest::newRow("the second of two") << u"Cancel"_s << u"alertAlternativeButton"_s << 1001;
}

void SheetTest::returnsTheButtonsOfAnAlert()
{
    QFETCH(QString, alternative);
    QFETCH(QString, button);
    QFETCH(int, code);
    QList<int> codes;
    const QPointer<Sheet> alert =
        showAlert({u"Title"_s, u"Text"_s, u"OK"_s, alternative}, &mWindow, [&](int ended) { codes.append(ended); });
    QVERIFY(alert->isVisible());
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Title"_s);
    QCOMPARE(alert->findChild<QLabel *>(u"alertDescription"_s)->text(), u"Text"_s);
    QCOMPARE(alert->findChildren<QPushButton *>().size(), alternative.isEmpty() ? 1 : 2);
    alert->findChild<QPushButton *>(button)->click();
    QCOMPARE(codes, QList<int>{code});
    QTRY_VERIFY(!alert);
}

void SheetTest::answersReturnAndEscapeInAnAlert()
{
    QList<int> codes;
    const auto note = [&](int code) { codes.append(code); };
    QTest::keyClick(showAlert({u"Title"_s, u"Text"_s, u"OK"_s, u"Cancel"_s}, &mWindow, note), Qt::Key_Return);
    QTest::keyClick(showAlert({u"Title"_s, u"Text"_s, u"OK"_s, u"Cancel"_s}, &mWindow, note), Qt::Key_Escape);
    QCOMPARE(codes, (QList<int>{1000, 1001}));
}

void SheetTest::longNamesFitIntoAnAlert_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("many words") << u"Start "_s + u"many words "_s.repeated(1000) + u"End"_s;
    QTest::newRow("one word") << u"Start"_s + QString(10'000, u'm') + u"End"_s;
    QTest::newRow("many lines") << u"Start"_s + u"line\n"_s.repeated(1000) + u"End"_s;
    QTest::newRow("many kinds of lines") << u"Start"_s + u"a\rb\u0085c\u2028d\u2029"_s.repeated(1000) + u"End"_s;
}

void SheetTest::longNamesFitIntoAnAlert()
{
    QFETCH(QString, name);
    QCOMPARE(nameInAlert(u"A name as people give it"_s), u"A name as people give it"_s);
    const QString shown = nameInAlert(name);
    QVERIFY(shown.startsWith(u"Start"_s) && shown.endsWith(u"End"_s));
    QVERIFY(shown.contains(u'…') && !shown.contains(u'\n'));
    Sheet *alert = showAlert({u"Delete “%1”?"_s.arg(shown), u"Text"_s, u"OK"_s, u"Cancel"_s}, &mWindow);
    QVERIFY(QTest::qWaitForWindowExposed(alert));
    const auto *title = alert->findChild<QLabel *>(u"alertTitle"_s);
    QVERIFY(title->height() >= title->heightForWidth(title->width()));
    QVERIFY(alert->width() < 800);
    delete alert;
}

void SheetTest::nameCannotTurnTheTextOfAnAlert()
{
    QCOMPARE(nameInAlert(u"Game\u202eexe\u2066.\r\n\u2028x"_s), u"Game exe .   x"_s);
}

QTEST_MAIN(SheetTest)
#include "sheettest.moc"
