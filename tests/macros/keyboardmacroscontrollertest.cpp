// SPDX-License-Identifier: MIT
// The tab as a whole: its content, and its reaction to the main controller.
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/pulldownbutton.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
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
    void contextMenusOfDisabledTablesAreDisabled();
    void readingANameShowsTheEventPartAgain();
    void newMacrosEndASelectionWithoutARow();
    void linesFollowAMacroThatAnotherClientChanged();
    void linesOfARunningRecordingAreNotReplaced();
    void picturesDistinguishPressReleaseAndDelay();
    void emptyListsShowAHint();
    void everyControlIsReachedByTabAndHasAName();
    void fieldsOfTheSheetsHaveNames();
    void menusOfferTheirCommandsInOrder();
    void rightClickOpensTheMenu_data();
    void rightClickOpensTheMenu();
    void macroListSelectsOneRowAtMost();
    void readingANameUpdatesTheEventButtons();
    void linesOtherThanTextsKeepTheirRows();
    void recordsOtherThanMacrosKeepTheirRows();
    void linesOfAnotherMacroAreNotShownWithoutAnAnswer();
    void controlsStayOffUntilARecordingEnds_data();
    void controlsStayOffUntilARecordingEnds();
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
    QCOMPARE(mDelegate->calls, QStringList());
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

void KeyboardMacrosControllerTest::contextMenusOfDisabledTablesAreDisabled()
{
    fill({u"A"_s}, 0);
    mController->setControlsState(false);
    const std::unique_ptr<QMenu> listMenu(outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s)->makeContextMenu());
    QVERIFY(enabledTags(listMenu->actions()).isEmpty());
    const std::unique_ptr<QMenu> eventMenu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QVERIFY(enabledTags(eventMenu->actions()).isEmpty());
}

void KeyboardMacrosControllerTest::readingANameShowsTheEventPartAgain()
{
    fill({u"A"_s}, 0);
    mController->setStateOfMacroDetailsTableWithState(true);
    QCOMPARE(mController->tableViewObjectValueForTableColumnRow(list(), u"macroName"_s, 0), QVariant(u"A"_s));
    for (const QString &name : eventPart)
        QVERIFY2(!outlet(name)->isHidden(), qPrintable(name));
}

void KeyboardMacrosControllerTest::newMacrosEndASelectionWithoutARow()
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

void KeyboardMacrosControllerTest::picturesDistinguishPressReleaseAndDelay()
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

void KeyboardMacrosControllerTest::emptyListsShowAHint()
{
    mDelegate->lines.clear();
    mController->refreshTableDisplay();
    QCOMPARE(list()->placeholderText(), u"There are no macros yet."_s);
    QCOMPARE(outlet<QLabel>(u"mNoMacroLabel"_s)->text(), u"Add a macro, then record its events."_s);
    auto *first = outlet<QPushButton>(u"mFirstMacro"_s);
    QVERIFY(!first->isHidden());
    QVERIFY(first->isEnabled());
    mController->setControlsState(false);
    QVERIFY(!first->isEnabled());
    mController->setControlsState(true);
    fill({u"A"_s});
    QVERIFY(first->isHidden());
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
    const QStringList order{u"mMacroTableView"_s,        u"mAddMacro"_s,          u"mDeleteMacro"_s,
                            u"mSettingsMacro"_s,         u"mZoomOutTimeline"_s,   u"mZoomInTimeline"_s,
                            u"mFitTimeline"_s,           u"mMacroTimelineView"_s,
                            u"mReleaseKeysAtEnd"_s, // the macro leaves a button down
                            u"mMacroDetailsTableView"_s, u"mAddMacroDetails"_s,   u"mDeleteMacroDetails"_s,
                            u"mSettingsMacroDetails"_s,  u"mTryMacro"_s,          u"mRecordMacroDetails"_s};
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
    QCOMPARE(names.size(), order.size()); // all names differ
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
    QCOMPARE(nameOf(u"mInputMacroEvent"_s), u"Press the key for this event:"_s);
}

void KeyboardMacrosControllerTest::menusOfferTheirCommandsInOrder()
{
    fill({u"A"_s}, 0);
    using Item = std::pair<int, QString>;
    const auto itemsOf = [](const QMenu *menu) {
        QList<Item> items;
        for (const QAction *item : menu->actions())
            items.append({item->data().toInt(), item->text()});
        return items;
    };
    const QList<Item> ofList{{1, u"Rename"_s},  {2, u"New"_s},     {3, u"Import…"_s},
                             {4, u"Export…"_s}, {5, u"Delete…"_s}, {6, u"Duplicate"_s}};
    const QList<Item> ofEvents{
        {1, u"Record"_s},     {2, u"Edit…"_s},       {3, u"Delete event"_s},  {4, u"Delete all events"_s},
        {5, u"Copy delay"_s}, {6, u"No delay"_s},    {28, u"Insert…"_s},      {20, u"Type Text…"_s},
        {21, u"Cut"_s},       {22, u"Copy"_s},       {23, u"Paste"_s},        {24, u"Move up"_s},
        {25, u"Move down"_s}, {26, u"Set pause…"_s}, {27, u"Scale pauses…"_s}};
    const std::unique_ptr<QMenu> listMenu(outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s)->makeContextMenu());
    const std::unique_ptr<QMenu> eventMenu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QCOMPARE(itemsOf(outlet<PulldownButton>(u"mSettingsMacro"_s)->menu()), ofList);
    QCOMPARE(itemsOf(listMenu.get()), ofList);
    QCOMPARE(itemsOf(outlet<PulldownButton>(u"mSettingsMacroDetails"_s)->menu()), ofEvents);
    QCOMPARE(itemsOf(eventMenu.get()), ofEvents);
    for (const char *gear : {"mSettingsMacro", "mSettingsMacroDetails"}) {
        const auto *button = outlet<PulldownButton>(QLatin1StringView(gear));
        QCOMPARE(button->text(), QString());
        QVERIFY(!button->icon().isNull());
    }
}

void KeyboardMacrosControllerTest::rightClickOpensTheMenu_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("menu");
    QTest::addColumn<bool>("isEnabled");
    for (const bool isEnabled : {true, false}) {
        const char *state = isEnabled ? "on" : "off";
        QTest::addRow("list, %s", state) << u"mMacroTableView"_s << u"macrosContextMenu"_s << isEnabled;
        QTest::addRow("events, %s", state) << u"mMacroDetailsTableView"_s << u"macroDetailsContextMenu"_s << isEnabled;
    }
}

void KeyboardMacrosControllerTest::rightClickOpensTheMenu()
{
    QFETCH(QString, table);
    QFETCH(QString, menu);
    QFETCH(bool, isEnabled);
    fill({u"A"_s, u"B"_s}, 0);
    events()->selectRow(1);
    QGuiApplication::clipboard()->clear();
    mController->setControlsState(isEnabled);
    auto *clicked = outlet<TableView>(table);
    QTest::mouseClick(clicked->viewport(), Qt::RightButton, {}, QPoint(20, 5));
    const auto *opened = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(opened);
    QCOMPARE(opened->objectName(), menu);
    QCOMPARE(opened->pos(), clicked->viewport()->mapToGlobal(QPoint(20, 5)));
    // Of the events, only Paste is off: the clipboard has none.
    const qsizetype enabled = opened->actions().size() - (menu == "macroDetailsContextMenu"_L1 ? 1 : 0);
    QCOMPARE(enabledTags(opened->actions()).size(), isEnabled ? enabled : 0);
    QCOMPARE(list()->selectedRow(), 0);
    QCOMPARE(events()->selectedRow(), 1);
    QApplication::activePopupWidget()->close();
}

void KeyboardMacrosControllerTest::macroListSelectsOneRowAtMost()
{
    fill({u"A"_s, u"B"_s}, 0);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      list()->visualRect(list()->model()->index(1, 0)).center());
    QCOMPARE(list()->selectionModel()->selectedRows().size(), 1);
}

void KeyboardMacrosControllerTest::readingANameUpdatesTheEventButtons()
{
    fill({u"A"_s}, 0);
    mController->setStateOfTableButtonsWithState(false);
    (void)mController->tableViewObjectValueForTableColumnRow(list(), u"macroName"_s, 0);
    QVERIFY(outlet(u"mAddMacroDetails"_s)->isEnabled());
    QVERIFY(outlet(u"mSettingsMacroDetails"_s)->isEnabled());
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled()); // no event is selected
}

/// Commands address an event by its row. A skipped line would send them to the wrong event.
void KeyboardMacrosControllerTest::linesOtherThanTextsKeepTheirRows()
{
    const QVariantList strange{5, QVariantMap{{u"x"_s, 1}}, QVariantList{1}, QByteArray("\xff\x00", 2),
                               u"Key Press A"_s};
    mDelegate->lines = strange;
    fill({u"A"_s}, 0);
    QCOMPARE(events()->numberOfRows(), strange.size());
    QCOMPARE(mController->macroDetailsArray().at(4), u"Key Press A"_s);
    events()->selectRow(4);
    QVERIFY(outlet(u"mDeleteMacroDetails"_s)->isEnabled());

    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, strange}});
    mController->recordEvents({{u"messagesArray"_s, QVariantMap{{u"x"_s, 1}}}});
    mController->recordEvents({});
    QCOMPARE(events()->numberOfRows(), 2 * strange.size());
}

/// Commands also address a macro by its row.
void KeyboardMacrosControllerTest::recordsOtherThanMacrosKeepTheirRows()
{
    mDelegate->macros = {5, QVariantMap{{u"MacroName"_s, QVariantList{1}}, {u"sequence"_s, u"x"_s}}, u"text"_s};
    fill({u"A"_s}, 3);
    QCOMPARE(list()->numberOfRows(), 4);
    QCOMPARE(list()->model()->index(0, 0).data().toString(), QString());
    QCOMPARE(list()->model()->index(3, 0).data().toString(), u"A"_s);
    list()->selectRow(0);
    QCOMPARE(mDelegate->calls, QStringList{u"details 0"_s});
    mController->tableViewSetObjectValueForTableColumnRow(list(), u"X"_s, u"macroName"_s, 0);
    mController->tableViewSetObjectValueForTableColumnRow(list(), u"X"_s, u"macroName"_s, 4);
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"Untitled Macro"_s));
    QCOMPARE(list()->numberOfRows(), 5);
}

void KeyboardMacrosControllerTest::linesOfAnotherMacroAreNotShownWithoutAnAnswer()
{
    fill({u"A"_s, u"B"_s}, 0);
    QCOMPARE(mController->macroDetailsArray().size(), 5);
    mDelegate->answers = false;
    list()->selectRow(1);
    QCOMPARE(mDelegate->calls, QStringList{u"details 1"_s});
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QCOMPARE(events()->numberOfRows(), 0);
    mDelegate->answers = true;
    list()->selectRow(0);
    QCOMPARE(events()->numberOfRows(), 5);
}

void KeyboardMacrosControllerTest::controlsStayOffUntilARecordingEnds_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end");
    QTest::newRow("new recording") << u"mRecordMacroDetails"_s << u"mRecordMacroDetails"_s;
    QTest::newRow("appended recording") << u"mAddMacroDetails"_s << u"mRecordMacroDetails"_s;
    QTest::newRow("event sheet") << QString() << u"mMacroEventEditCancel"_s;
}

/// A restarted daemon announces the keyboard again, even in the middle of a recording.
void KeyboardMacrosControllerTest::controlsStayOffUntilARecordingEnds()
{
    QFETCH(QString, start);
    QFETCH(QString, end);
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    if (start.isEmpty())
        choose("mSettingsMacroDetails", MacroCommands::edit);
    else
        outlet<QPushButton>(start)->click();
    mController->setControlsState(true);
    mDelegate->refresh();
    for (const QString &name : tableButtons + tables)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
    outlet<QPushButton>(end)->click();
    for (const QString &name : tables)
        QVERIFY2(outlet(name)->isEnabled(), qPrintable(name));
    QVERIFY(outlet(u"mAddMacro"_s)->isEnabled());
}

QTEST_MAIN(KeyboardMacrosControllerTest)
#include "keyboardmacroscontrollertest.moc"
