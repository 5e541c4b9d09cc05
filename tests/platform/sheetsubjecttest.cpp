// SPDX-License-Identifier: MIT
#include "platform/sheetsubject.h"
#include "tests/support/testmain.h"

#include "platform/sheet.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class SheetSubjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mWindow.show(); }
    void alertWithAnotherSubjectIsCancelled();
    void sheetWithAnotherSubjectIsCancelled();
    void otherDialogEndsNeitherWithOKNorWithCancel();
    void dialogWithTheSameSubjectStays();
    void endedDialogIsLeftAlone();
    void destroyedDialogIsForgotten();
    void lastRegisteredDialogApplies();

private:
    Sheet *alert(QList<int> &codes)
    {
        return showAlert({u"Title"_s, u"Text"_s, u"OK"_s, u"Cancel"_s}, &mWindow,
                         [&codes](int code) { codes.append(code); });
    }

    QWidget mWindow;
    SheetSubject mSubject;
};

void SheetSubjectTest::alertWithAnotherSubjectIsCancelled()
{
    QList<int> codes;
    const QPointer<Sheet> shown = alert(codes);
    mSubject.note(shown, u"Work"_s);
    mSubject.endUnless(u"Play"_s);
    QCOMPARE(codes, QList<int>{alertSecondButtonReturn});
    QTRY_VERIFY(!shown);
}

void SheetSubjectTest::sheetWithAnotherSubjectIsCancelled()
{
    Sheet sheet;
    QPushButton cancel(&sheet);
    sheet.setCancelButton(&cancel);
    // The end of the sheet refreshes its subject, as when the cancel button sends a command.
    int presses = 0;
    connect(&cancel, &QPushButton::clicked, &sheet, [&] {
        ++presses;
        mSubject.endUnless(3);
        sheet.endSheet();
    });
    sheet.beginSheet(&mWindow);
    mSubject.note(&sheet, 1);
    mSubject.endUnless(2);
    QCOMPARE(presses, 1);
    QVERIFY(!sheet.isUp());
    sheet.setParent(nullptr);
}

void SheetSubjectTest::otherDialogEndsNeitherWithOKNorWithCancel()
{
    QDialog dialog(&mWindow);
    QSignalSpy finished(&dialog, &QDialog::finished);
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    dialog.open();
    mSubject.note(&dialog, 1);
    mSubject.endUnless(QVariant());
    QVERIFY(!dialog.isVisible());
    QCOMPARE(finished, QList<QVariantList>{{SheetSubject::outdatedReturn}});
    QVERIFY(accepted.isEmpty() && rejected.isEmpty());
}

void SheetSubjectTest::dialogWithTheSameSubjectStays()
{
    QList<int> codes;
    Sheet *shown = alert(codes);
    mSubject.note(shown, QVariantList{7, u"Work"_s});
    mSubject.endUnless(QVariantList{7, u"Work"_s});
    QVERIFY(shown->isUp());
    mSubject.endUnless(QVariantList{8, u"Work"_s});
    QVERIFY(!shown->isUp());
}

void SheetSubjectTest::endedDialogIsLeftAlone()
{
    Sheet sheet;
    QPushButton cancel(&sheet);
    QSignalSpy clicked(&cancel, &QPushButton::clicked);
    sheet.setCancelButton(&cancel);
    sheet.beginSheet(&mWindow);
    mSubject.note(&sheet, 1);
    sheet.endSheet();
    mSubject.endUnless(2);
    QVERIFY(clicked.isEmpty());
    sheet.setParent(nullptr);

    QDialog dialog(&mWindow);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    mSubject.note(&dialog, 1);
    dialog.accept();
    mSubject.endUnless(2);
    QCOMPARE(finished, QList<QVariantList>{{int(QDialog::Accepted)}});
}

void SheetSubjectTest::destroyedDialogIsForgotten()
{
    auto *dialog = new QDialog(&mWindow);
    dialog->open();
    mSubject.note(dialog, 1);
    delete dialog;
    mSubject.endUnless(2);
    QVERIFY(!mWindow.findChild<QDialog *>());
}

void SheetSubjectTest::lastRegisteredDialogApplies()
{
    QDialog first(&mWindow);
    QDialog second(&mWindow);
    first.open();
    mSubject.note(&first, 1);
    second.open();
    mSubject.note(&second, 2);
    mSubject.endUnless(1);
    QVERIFY(first.isVisible());
    QVERIFY(!second.isVisible());
}

QTEST_MAIN(SheetSubjectTest)
#include "sheetsubjecttest.moc"
