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
    void staysAwayWhenItWasTakenDownBeforeItsWindowAppears_data();
    void staysAwayWhenItWasTakenDownBeforeItsWindowAppears();
    void followsItsWindow();
    void tellsItsEndOnce();
    void canBeBegunAgainByItsEnd();
    void isShownAgainWhenItIsUp();
    void endsAfterItWasOrderedOut();
    void saysNothingWhenItIsNotUp();
    void pressesTheCancelButtonOnEscape();
    void staysOnEscapeWithoutCancelButton();
    void pressesTheCloseButtonWhenItIsClosed();
    void returnsTheButtonsOfAnAlert_data();
    void returnsTheButtonsOfAnAlert();
    void answersReturnAndEscapeInAnAlert();
    void longNamesFitIntoAnAlert_data();
    void longNamesFitIntoAnAlert();

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

void SheetTest::staysAwayWhenItWasTakenDownBeforeItsWindowAppears_data()
{
    QTest::addColumn<bool>("isEnded");
    QTest::newRow("ended") << true;
    QTest::newRow("ordered out") << false;
}

void SheetTest::staysAwayWhenItWasTakenDownBeforeItsWindowAppears()
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

    // Another window's is not to be moved by this one.
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

void SheetTest::tellsItsEndOnce()
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

void SheetTest::canBeBegunAgainByItsEnd()
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

void SheetTest::isShownAgainWhenItIsUp()
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

void SheetTest::saysNothingWhenItIsNotUp()
{
    Sheet sheet;
    sheet.orderOut();
    sheet.endSheet(3);
    QVERIFY(!sheet.isVisible());
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

QTEST_MAIN(SheetTest)
#include "sheettest.moc"
