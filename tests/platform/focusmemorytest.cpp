// SPDX-License-Identifier: MIT
#include "platform/focusmemory.h"
#include "tests/support/testmain.h"

#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

class FocusMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void restoresTheFocus();
    void restoresItToTheFirstThatLostIt();
    void keepsTheUsersOwnChoice();
    void forgetsADestroyedOwner();

private:
    void setEnabled(QWidget *widget, bool isEnabled);

    std::unique_ptr<QWidget> mWindow;
    FocusMemory mMemory;
    QPushButton *mFirst = nullptr;
    QPushButton *mSecond = nullptr;
    QPushButton *mThird = nullptr;
};

void FocusMemoryTest::init()
{
    mMemory = {};
    mWindow = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(mWindow.get());
    for (QPushButton **button : {&mFirst, &mSecond, &mThird}) {
        *button = new QPushButton;
        layout->addWidget(*button);
    }
    mWindow->show();
    mWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    mFirst->setFocus();
}

void FocusMemoryTest::setEnabled(QWidget *widget, bool isEnabled)
{
    mMemory.change(mWindow.get(), [=] { widget->setEnabled(isEnabled); });
}

void FocusMemoryTest::restoresTheFocus()
{
    for (int time = 0; time < 2; ++time) {
        setEnabled(mFirst, false);
        QVERIFY(!mFirst->hasFocus());
        setEnabled(mFirst, false);
        QVERIFY(mSecond->hasFocus());
        setEnabled(mFirst, true);
        QVERIFY(mFirst->hasFocus());
    }
}

void FocusMemoryTest::restoresItToTheFirstThatLostIt()
{
    setEnabled(mFirst, false);
    setEnabled(mThird, false);
    QVERIFY(mSecond->hasFocus());
    setEnabled(mThird, true);
    QVERIFY(mSecond->hasFocus());
    setEnabled(mFirst, true);
    QVERIFY(mFirst->hasFocus());
}

void FocusMemoryTest::keepsTheUsersOwnChoice()
{
    setEnabled(mFirst, false);
    mThird->setFocus();
    setEnabled(mFirst, true);
    QVERIFY(mThird->hasFocus());
    mSecond->setFocus();
    setEnabled(mFirst, true); // no other change happened
    QVERIFY(mSecond->hasFocus());
}

void FocusMemoryTest::forgetsADestroyedOwner()
{
    setEnabled(mFirst, false);
    delete mFirst;
    setEnabled(mSecond, false);
    QVERIFY(mThird->hasFocus());
    setEnabled(mSecond, true);
    QVERIFY(mSecond->hasFocus());
}

QTEST_MAIN(FocusMemoryTest)
#include "focusmemorytest.moc"
