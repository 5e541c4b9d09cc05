// SPDX-License-Identifier: MIT
#include "platform/mnemonics.h"
#include "platform/popupbutton.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// The mnemonic of `text` as Qt reads it, such as "Alt+A".
QString keyOf(const QString &text)
{
    return QKeySequence::mnemonic(text).toString();
}

} // namespace

class MnemonicsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mWindow = std::make_unique<QWidget>(); }
    void cleanup() { mWindow.reset(); }

    void prefersTheInitials();
    void givesAwayALetterThatAnotherTextNeeds();
    void putsALetterBesideATextWithoutOne_data();
    void putsALetterBesideATextWithoutOne();
    void pagesShareLettersOnlyWithTheirSurroundings();
    void surroundingsGiveAwayALetterThatAPageNeeds();
    void leavesValuesAndOtherWindowsAlone();
    void letterOnceGivenStays();
    void newTextGetsALetterAgain();
    void plainTextHasNoMark_data();
    void plainTextHasNoMark();
    void anEscapedTextHasNoLetter();
    void letterPressesTheButton();

private:
    QPushButton *addButton(const QString &text, QWidget *parent = nullptr)
    {
        return new QPushButton(text, parent ? parent : mWindow.get());
    }

    std::unique_ptr<QWidget> mWindow;
};

void MnemonicsTest::prefersTheInitials()
{
    QPushButton *add = addButton(u"Add"_s);
    QPushButton *append = addButton(u"Append"_s);
    auto *label = new QLabel(u"Delay:"_s, mWindow.get());
    label->setBuddy(new QLineEdit(mWindow.get()));
    auto *box = new QCheckBox(u"Show the delay"_s, mWindow.get());
    Mnemonics::assign(mWindow.get());
    QCOMPARE(add->text(), u"&Add"_s);
    QCOMPARE(append->text(), u"App&end"_s);
    QCOMPARE(label->text(), u"&Delay:"_s);
    QCOMPARE(box->text(), u"&Show the delay"_s);
}

void MnemonicsTest::givesAwayALetterThatAnotherTextNeeds()
{
    QPushButton *first = addButton(u"Ab"_s);
    QPushButton *second = addButton(u"A"_s);
    QPushButton *third = addButton(u"A"_s); // no letter is left
    Mnemonics::assign(mWindow.get());
    QCOMPARE(first->text(), u"A&b"_s);
    QCOMPARE(second->text(), u"&A"_s);
    QCOMPARE(third->text(), u"A"_s);
}

void MnemonicsTest::putsALetterBesideATextWithoutOne_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("button") << u"追加"_s << u"追加(&A)"_s;
    QTest::newRow("ellipsis") << u"导入…"_s << u"导入(&A)…"_s;
    QTest::newRow("colon") << u"マクロ:"_s << u"マクロ(&A):"_s;
    QTest::newRow("wide colon") << u"宏："_s << u"宏(&A)："_s;
}

void MnemonicsTest::putsALetterBesideATextWithoutOne()
{
    QFETCH(QString, text);
    QPushButton *button = addButton(text);
    button->setObjectName(u"mAddMacro"_s);
    Mnemonics::assign(mWindow.get());
    QTEST(button->text(), "shown");
    QCOMPARE(Mnemonics::plainText(button->text()), text);
}

void MnemonicsTest::pagesShareLettersOnlyWithTheirSurroundings()
{
    auto *tabs = new QTabWidget(mWindow.get());
    auto *first = new QWidget;
    auto *second = new QWidget;
    tabs->addTab(first, u"Keys"_s);
    tabs->addTab(second, u"Macros"_s);
    QPushButton *help = addButton(u"Help"_s);
    QPushButton *onFirst = addButton(u"Mix"_s, first);
    QPushButton *onSecond = addButton(u"Add"_s, second);
    QPushButton *alsoOnFirst = addButton(u"Add"_s, first);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(keyOf(tabs->tabText(0)), u"Alt+K"_s);
    QCOMPARE(keyOf(tabs->tabText(1)), u"Alt+M"_s);
    QCOMPARE(keyOf(help->text()), u"Alt+H"_s);
    QCOMPARE(keyOf(alsoOnFirst->text()), keyOf(onSecond->text())); // never visible together
    QVERIFY(!keyOf(onFirst->text()).isEmpty());
    QVERIFY(keyOf(onFirst->text()) != keyOf(tabs->tabText(1)));
}

void MnemonicsTest::surroundingsGiveAwayALetterThatAPageNeeds()
{
    auto *tabs = new QTabWidget(mWindow.get());
    auto *page = new QWidget;
    tabs->addTab(page, u"Ab"_s);
    tabs->addTab(new QWidget, u"Bc"_s);
    QPushButton *onPage = addButton(u"A"_s, page);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(onPage->text(), u"&A"_s);
    QCOMPARE(tabs->tabText(0), u"A&b"_s);
    QCOMPARE(tabs->tabText(1), u"B&c"_s);
}

void MnemonicsTest::leavesValuesAndOtherWindowsAlone()
{
    auto *value = new PopUpButton(mWindow.get());
    value->addItemWithTitle(u"Cut & Paste"_s);
    auto *text = new QLabel(u"R&D"_s, mWindow.get());
    QDialog dialog(mWindow.get());
    QPushButton *inDialog = addButton(u"OK"_s, &dialog);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(value->text(), u"Cut && Paste"_s);
    QCOMPARE(text->text(), u"R&D"_s);
    QCOMPARE(inDialog->text(), u"OK"_s);
    Mnemonics::assign(&dialog);
    QCOMPARE(inDialog->text(), u"&OK"_s);
}

void MnemonicsTest::letterOnceGivenStays()
{
    QPushButton *stop = addButton(u"Stop"_s);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(stop->text(), u"&Stop"_s);
    QPushButton *save = addButton(u"Save"_s);
    save->stackUnder(stop);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(stop->text(), u"&Stop"_s);
    QCOMPARE(save->text(), u"S&ave"_s);
}

void MnemonicsTest::newTextGetsALetterAgain()
{
    QPushButton *record = addButton(u"Record"_s);
    Mnemonics::setText(record, u"Stop"_s);
    QCOMPARE(record->text(), u"Stop"_s); // had none
    Mnemonics::setText(record, u"Record"_s);
    addButton(u"Rename"_s);
    Mnemonics::assign(mWindow.get());
    QCOMPARE(record->text(), u"&Record"_s);
    Mnemonics::setText(record, u"Stop"_s);
    QCOMPARE(record->text(), u"&Stop"_s);
    Mnemonics::setText(record, u"Record"_s);
    QCOMPARE(record->text(), u"&Record"_s);
}

void MnemonicsTest::anEscapedTextHasNoLetter()
{
    QCOMPARE(Mnemonics::escaped(u"R&D & Rest&&"_s), u"R&&D && Rest&&&&"_s);
    QVERIFY(QKeySequence::mnemonic(Mnemonics::escaped(u"R&D"_s)).isEmpty());
}

void MnemonicsTest::plainTextHasNoMark_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::newRow("none") << u"Add"_s << u"Add"_s;
    QTest::newRow("in the text") << u"A&dd"_s << u"Add"_s;
    QTest::newRow("beside the text") << u"追加(&A)"_s << u"追加"_s;
    QTest::newRow("ampersand") << u"R&&D"_s << u"R&&D"_s;
}

void MnemonicsTest::plainTextHasNoMark()
{
    QFETCH(QString, text);
    QTEST(Mnemonics::plainText(text), "plain");
}

void MnemonicsTest::letterPressesTheButton()
{
    QPushButton *add = addButton(u"Add"_s);
    int clicks = 0;
    connect(add, &QPushButton::clicked, this, [&clicks] { ++clicks; });
    auto *field = new QLineEdit(mWindow.get());
    auto *column = new QVBoxLayout(mWindow.get());
    column->addWidget(add);
    column->addWidget(field);
    Mnemonics::assign(mWindow.get());
    mWindow->show();
    mWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::AltModifier);
    QTRY_COMPARE(clicks, 1);
}

QTEST_MAIN(MnemonicsTest)
#include "mnemonicstest.moc"
