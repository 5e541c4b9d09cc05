// SPDX-License-Identifier: MIT
// The tab as a whole: what it shows, and how it follows the main controller.
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "tests/macros/macrostesting.h"

#include <QKeyEvent>
#include <QMenu>
#include <QTest>

using namespace MacrosTesting;

class KeyboardMacrosControllerTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithTheEventPartHidden();
    void selectingAMacroShowsItsLines();
    void deselectingHidesTheEventPart();
    void controlsFollowTheirState();
    void groupsOfControlsFollowTheirState();
    void macrosRecordedOnTheKeyboardAppear();
    void keyEquivalentsReachOnlyTheNameEditor();
    void contextMenusOfDisabledTablesAreAllOff();
};

void KeyboardMacrosControllerTest::startsWithTheEventPartHidden()
{
    for (const QString &name : eventPart)
        QVERIFY2(outlet(name)->isHidden(), qPrintable(name));
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QCOMPARE(mController->macrosWindow(), mWindow.get());
    QCOMPARE(mController->macroDelegate(), mDelegate.get());
    QCOMPARE(mCenter->observationCount(mController.get(), u"MacroSequence271"_s), 1);
    QCOMPARE(mCenter->observationCount(mController.get(), u"SingleKeyEvent1048"_s), 1);
}

void KeyboardMacrosControllerTest::selectingAMacroShowsItsLines()
{
    fill({u"A"_s, u"B"_s});
    const QRect cell = list()->visualRect(list()->model()->index(1, 0));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(mDelegate->calls, QStringList{u"details 1"_s});
    for (const QString &name : eventPart)
        QVERIFY2(outlet(name)->isVisible(), qPrintable(name));
    QCOMPARE(events()->model()->rowCount(), 5);
    QCOMPARE(events()->model()->index(1, 0).data().toString(), u"0.020 seconds delay"_s);
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void KeyboardMacrosControllerTest::deselectingHidesTheEventPart()
{
    fill({u"A"_s}, 0);
    list()->deselectAll();
    for (const QString &name : eventPart)
        QVERIFY2(outlet(name)->isHidden(), qPrintable(name));
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardMacrosControllerTest::controlsFollowTheirState()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    for (const bool isEnabled : {false, true}) {
        mController->setControlsState(isEnabled);
        for (const QString &name : tableButtons + tables + QStringList{u"mRecordMacroDetails"_s})
            QVERIFY2(outlet(name)->isEnabled() == isEnabled, qPrintable(name));
    }
    events()->deselectAll();
    mController->setControlsState(true);
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void KeyboardMacrosControllerTest::groupsOfControlsFollowTheirState()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    for (const bool isOn : {false, true}) {
        mController->setStateOfTableButtonsWithState(isOn);
        for (const QString &name : tableButtons)
            QVERIFY2(outlet(name)->isEnabled() == isOn, qPrintable(name));
        QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
        mController->setStateOfMacroTableWithState(isOn);
        for (const QString &name : tables)
            QVERIFY2(outlet(name)->isEnabled() == isOn, qPrintable(name));
        mController->setStateOfMacroDetailsTableWithState(isOn);
        for (const QString &name : eventPart)
            QVERIFY2(outlet(name)->isHidden() == isOn, qPrintable(name));
    }
}

void KeyboardMacrosControllerTest::macrosRecordedOnTheKeyboardAppear()
{
    fill({u"A"_s}, 0);
    mController->setMMacrosSettingsArray({macroNamed(u"A"_s), macroNamed(u"B"_s)});
    mController->updateTableWithNewMacro();
    QCOMPARE(list()->model()->rowCount(), 2);
    QCOMPARE(list()->selectedRow(), 0);
    QCOMPARE(mDelegate->calls, QStringList{u"details 0"_s});
}

void KeyboardMacrosControllerTest::keyEquivalentsReachOnlyTheNameEditor()
{
    fill({u"A"_s}, 0);
    auto *table = outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s);
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_K, Qt::ControlModifier);
    QVERIFY(table->performKeyEquivalent(&press));
    list()->editColumnRow(0, 0, true);
    QVERIFY(!table->performKeyEquivalent(&press));
}

void KeyboardMacrosControllerTest::contextMenusOfDisabledTablesAreAllOff()
{
    fill({u"A"_s}, 0);
    mController->setControlsState(false);
    const std::unique_ptr<QMenu> listMenu(outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s)->makeContextMenu());
    QVERIFY(enabledTags(listMenu->actions()).isEmpty());
    const std::unique_ptr<QMenu> eventMenu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QVERIFY(enabledTags(eventMenu->actions()).isEmpty());
}

QTEST_MAIN(KeyboardMacrosControllerTest)
#include "keyboardmacroscontrollertest.moc"
