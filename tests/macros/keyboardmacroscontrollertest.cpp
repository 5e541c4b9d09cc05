// SPDX-License-Identifier: MIT
// The tab as a whole: what it shows, and how it follows the main controller.
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "tests/macros/macrostesting.h"

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSet>
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
    void fetchingANameShowsTheEventPartAgain();
    void newMacrosEndASelectionWhoseRowIsGone();
    void linesFollowAMacroThatAnotherClientChanged();
    void linesOfARunningRecordingAreNotReplaced();
    void picturesTellPressReleaseAndDelay();
    void emptyListsSayWhatToDo();
    void everyControlIsReachedByTabAndHasAName();
    void fieldsOfTheSheetsHaveNames();
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

void KeyboardMacrosControllerTest::fetchingANameShowsTheEventPartAgain()
{
    fill({u"A"_s}, 0);
    mController->setStateOfMacroDetailsTableWithState(true);
    QCOMPARE(mController->tableViewObjectValueForTableColumnRow(list(), u"macroName"_s, 0), QVariant(u"A"_s));
    for (const QString &name : eventPart)
        QVERIFY2(!outlet(name)->isHidden(), qPrintable(name));
}

void KeyboardMacrosControllerTest::newMacrosEndASelectionWhoseRowIsGone()
{
    fill({u"A"_s, u"B"_s}, 1);
    mController->setMMacrosSettingsArray({macroNamed(u"A"_s)});
    mController->updateTableWithNewMacro();
    QCOMPARE(list()->selectedRow(), -1);
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isHidden());
}

void KeyboardMacrosControllerTest::linesFollowAMacroThatAnotherClientChanged()
{
    fill({u"A"_s, u"B"_s}, 0);
    mDelegate->refresh();
    QVERIFY(mDelegate->calls.isEmpty());
    QVariantMap changed = macroNamed(u"A"_s);
    changed[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{mDelegate->event}}};
    mDelegate->macros[0] = changed;
    mDelegate->refresh();
    QCOMPARE(mDelegate->calls, QStringList{u"details 0"_s});
    mDelegate->macros.removeFirst();
    mDelegate->refresh();
    QCOMPARE(mDelegate->calls, (QStringList{u"details 0"_s, u"details 0"_s}));
}

void KeyboardMacrosControllerTest::linesOfARunningRecordingAreNotReplaced()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    mDelegate->calls.clear();
    QVariantMap changed = macroNamed(u"A"_s);
    changed[u"macroID"_s] = 9;
    mDelegate->macros[0] = changed;
    mDelegate->refresh();
    mController->updateTableWithNewMacro();
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->macroDetailsArray(), QStringList{u"Key Press A"_s});
}

void KeyboardMacrosControllerTest::picturesTellPressReleaseAndDelay()
{
    mDelegate->lines.append(u"Left Button up\n"_s);
    fill({u"A"_s}, 0);
    QList<QImage> pictures;
    for (const int row : {0, 2, 1, 4, 5}) {
        const auto icon = events()->model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>();
        QVERIFY(!icon.isNull());
        pictures.append(icon.pixmap(16, 16).toImage());
    }
    QVERIFY(pictures.at(0) != pictures.at(1));
    QVERIFY(pictures.at(0) != pictures.at(2));
    QVERIFY(pictures.at(1) != pictures.at(2));
    QCOMPARE(pictures.at(3), pictures.at(0));
    QCOMPARE(pictures.at(4), pictures.at(1));
    QVERIFY(!list()->model()->index(0, 0).data(Qt::DecorationRole).isValid());
}

void KeyboardMacrosControllerTest::emptyListsSayWhatToDo()
{
    mDelegate->lines.clear();
    mController->refreshTableDisplay();
    QCOMPARE(list()->placeholderText(), u"There are no macros yet."_s);
    QCOMPARE(outlet<QLabel>(u"mNoMacroLabel"_s)->text(), u"Add a macro, then record what it is to play."_s);
    fill({u"A"_s});
    QCOMPARE(list()->placeholderText(), QString());
    QCOMPARE(outlet<QLabel>(u"mNoMacroLabel"_s)->text(), u"Select a macro to see its events."_s);
    list()->selectRow(0);
    QVERIFY(events()->placeholderText().startsWith(u"This macro has no events"_s));
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QVERIFY(events()->placeholderText().startsWith(u"Recording"_s));
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QVERIFY(events()->placeholderText().startsWith(u"This macro has no events"_s));
}

void KeyboardMacrosControllerTest::everyControlIsReachedByTabAndHasAName()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    const QStringList order{
        u"mMacroTableView"_s,        u"mAddMacro"_s,        u"mDeleteMacro"_s,        u"mSettingsMacro"_s,
        u"mMacroDetailsTableView"_s, u"mAddMacroDetails"_s, u"mDeleteMacroDetails"_s, u"mSettingsMacroDetails"_s,
        u"mRecordMacroDetails"_s};
    list()->setFocus();
    QStringList reached;
    QSet<QString> names;
    for (qsizetype i = 0; i < order.size(); ++i) {
        QWidget *control = QApplication::focusWidget();
        reached.append(control->objectName());
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
        names.insert(accessible->text(QAccessible::Name));
        QTest::keyClick(control, Qt::Key_Tab);
    }
    QCOMPARE(reached, order);
    QCOMPARE(names.size(), order.size()); // no two are called alike
    QVERIFY(!names.contains(QString()));
}

void KeyboardMacrosControllerTest::fieldsOfTheSheetsHaveNames()
{
    fill({u"A"_s}, 0);
    const auto nameOf = [this](const QString &field) {
        return QAccessible::queryAccessibleInterface(outlet(field))->text(QAccessible::Name);
    };
    events()->selectRow(1);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    QCOMPARE(nameOf(u"mInputMacroDelay"_s), u"Delay in milliseconds:"_s);
    outlet<QPushButton>(u"mMacroDelayCancel"_s)->click();
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    QCOMPARE(nameOf(u"mInputMacroEvent"_s), u"Press the key that this event is to use:"_s);
}

QTEST_MAIN(KeyboardMacrosControllerTest)
#include "keyboardmacroscontrollertest.moc"
