// SPDX-License-Identifier: MIT
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrodelegate.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/distributednotificationcenter.h"
#include "platform/pulldownbutton.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QVariantMap macroNamed(const QString &name)
{
    return {{u"MacroName"_s, name}, {u"delay"_s, 20}, {u"sequence"_s, QVariantMap()}};
}

QVariantList threeEvents()
{
    return {u"Key Press H"_s, u"0.020 seconds delay\n"_s, u"Key Release H"_s, u"0.120 seconds delay\n"_s,
            u"Left Button down\n"_s};
}

/// A main controller that remembers what the tab asked of it and answers with the lines and macros it holds.
class RecordingDelegate : public MacroDelegate
{
public:
    void addMacroWithSettings(const QVariantMap &macro) override
    {
        note(u"add"_s);
        record = macro;
        if (answers)
            macros.append(macro);
        refresh();
    }
    void startMacroRecordingMacroIndex(int appendFlag, int macroIndex) override
    {
        note(u"start %1 %2"_s.arg(appendFlag).arg(macroIndex));
    }
    void stopMacroRecording() override { note(u"stop"_s); }
    void saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording) override
    {
        note(u"save %1 %2"_s.arg(macroIndex).arg(isNewRecording));
        refresh();
    }
    void getMacroDetailsForMacroAtIndex(int macroIndex) override
    {
        note(u"details %1"_s.arg(macroIndex));
        if (answers)
            controller->updateSelectedMacroWithMacroDetails(lines);
    }
    void deleteMacroAtIndex(int macroIndex) override
    {
        note(u"delete %1"_s.arg(macroIndex));
        if (answers)
            macros.removeAt(macroIndex);
        refresh();
    }
    void renameMacroAtIndexWithNewName(int macroIndex, const QString &newName) override
    {
        note(u"rename %1 %2"_s.arg(macroIndex).arg(newName));
        if (answers)
            macros[macroIndex] = macroNamed(newName);
        refresh();
    }
    void removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex) override
    {
        note(u"removeEvent %1 %2"_s.arg(eventIndex).arg(macroIndex));
        lines = linesAfterRemoval;
    }
    void removeAllEventsForMacroAtIndex(int macroIndex) override
    {
        note(u"removeAll %1"_s.arg(macroIndex));
        lines.clear();
    }
    void setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay) override
    {
        note(u"allDelays %1 %2 %3"_s.arg(delay).arg(macroIndex).arg(int(hasNoDelay)));
    }
    void setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex) override
    {
        note(u"delay %1 %2 %3"_s.arg(delay).arg(eventIndex).arg(macroIndex));
    }
    void updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex, const QVariantMap &changed) override
    {
        note(u"update %1 %2"_s.arg(macroIndex).arg(eventIndex));
        record = changed;
    }
    QVariantMap getSequenceDetailsEventIndex(int macroIndex, int eventIndex) override
    {
        note(u"event %1 %2"_s.arg(macroIndex).arg(eventIndex));
        return event;
    }
    void startEditHID() override { note(u"startEditHID"_s); }
    void stopSingleKeyRecording() override { note(u"stopKey"_s); }

    void refresh()
    {
        if (!answers)
            return;
        controller->setMMacrosSettingsArray(macros);
        controller->refreshTableDisplay();
    }

    void note(const QString &call) { calls.append(call); }

    KeyboardMacrosController *controller = nullptr;
    bool answers = true; ///< false: no reply ever comes
    QVariantList macros;
    QVariantList lines = threeEvents();
    QVariantList linesAfterRemoval;
    QVariantMap event{{u"command"_s, 1}, {u"delay"_s, 20}, {u"page"_s, 9}, {u"argument"_s, 1}};
    QVariantMap record; ///< the record of the last call that carried one
    QStringList calls;
};

QList<int> enabledTags(const QList<QAction *> &items)
{
    QList<int> result;
    for (const QAction *item : items) {
        if (item->isEnabled())
            result.append(item->data().toInt());
    }
    return result;
}

const QStringList eventPart{u"mMacroAssignmentLabel"_s, u"mMacroDetailsScrollView"_s, u"mMacroDetailsTableView"_s,
                            u"mAddMacroDetails"_s,      u"mDeleteMacroDetails"_s,     u"mRecordMacroDetails"_s,
                            u"mSettingsMacroDetails"_s};
const QStringList tableButtons{u"mAddMacro"_s,        u"mDeleteMacro"_s,        u"mSettingsMacro"_s,
                               u"mAddMacroDetails"_s, u"mDeleteMacroDetails"_s, u"mSettingsMacroDetails"_s};
const QStringList tables{u"mMacroTableView"_s, u"mMacroDetailsTableView"_s};

} // namespace

class KeyboardMacrosControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(installEnglishTexts()); }
    void init();
    void cleanup();

    void startsWithTheEventPartHidden();
    void selectingAMacroShowsItsLines();
    void deselectingHidesTheEventPart();
    void namesAreMadeUnique_data();
    void namesAreMadeUnique();
    void addSendsANewRecord();
    void addingAgainNumbersTheName();
    void addOpensTheNameAndAsksForNoLines();
    void typingANameRenames();
    void renamesAsTheRuleSays_data();
    void renamesAsTheRuleSays();
    void emptyNameIsIgnored();
    void renamingFromTheMenuDisablesTheEventButtons();
    void deleteAsksFirst();
    void deletingSelectsTheNextRow_data();
    void deletingSelectsTheNextRow();
    void deletingTheOnlyMacroHidesTheEventPart();
    void recordingStartsEmptyAndDisablesTheRest();
    void stoppingSavesAndFetches();
    void appendedRecordingKeepsTheLines();
    void newLinesAreAppendedAndShown();
    void linesAfterStopAreIgnored();
    void linesArriveAsNotifications();
    void leavingTheTabStops_data();
    void leavingTheTabStops();
    void enteringTheTabResetsTheRecordButton();
    void stoppingWithoutARecordingDoesNothing();
    void deletingAnEventSelectsTheNeighbour_data();
    void deletingAnEventSelectsTheNeighbour();
    void deleteEventNeedsASelectedRow();
    void listMenusEnableCommands();
    void eventMenusEnableCommands_data();
    void eventMenusEnableCommands();
    void contextMenusOfDisabledTablesAreAllOff();
    void eventCommandsSendTheirRequest_data();
    void eventCommandsSendTheirRequest();
    void delaySheetSetsTheDelay();
    void delaySheetCancelSendsNothing();
    void delayFieldTakesSixDigits_data();
    void delayFieldTakesSixDigits();
    void eventSheetStoresTheCapturedKey();
    void eventSheetWithoutAKeyStoresNothing();
    void eventSheetCancelStoresNothing();
    void recordingAfterACancelledSheetIsSaved();
    void capturedKeyIsShown_data();
    void capturedKeyIsShown();
    void controlsFollowTheirState();
    void groupsOfControlsFollowTheirState();
    void macrosRecordedOnTheKeyboardAppear();
    void keyEquivalentsReachOnlyTheNameEditor();

private:
    void fill(const QStringList &names, int selected = -1);
    QLineEdit *editor() const;
    void choose(const char *button, int tag);
    template <typename T = QWidget> T *outlet(const QString &name) const { return mWindow->findChild<T *>(name); }
    TableView *list() const { return mController->macroTableView(); }
    TableView *events() const { return mController->macroDetailsTableView(); }

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<DistributedNotificationCenter> mCenter;
    std::unique_ptr<KeyboardMacrosController> mController;
    std::unique_ptr<RecordingDelegate> mDelegate;
};

void KeyboardMacrosControllerTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mCenter = std::make_unique<DistributedNotificationCenter>(QDBusConnection::sessionBus());
    mController = std::make_unique<KeyboardMacrosController>();
    mDelegate = std::make_unique<RecordingDelegate>();
    mDelegate->controller = mController.get();
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mController->view());
    mController->setNotificationCenter(mCenter.get());
    mController->awakeFromNib();
    mController->setMMacroDelegate(mDelegate.get());
    mController->setMMacrosWindow(mWindow.get());
    mWindow->resize(800, 450);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void KeyboardMacrosControllerTest::cleanup()
{
    mController.reset();
    mCenter.reset();
    mWindow.reset();
    mDelegate.reset();
}

void KeyboardMacrosControllerTest::fill(const QStringList &names, int selected)
{
    for (const QString &name : names)
        mDelegate->macros.append(macroNamed(name));
    mDelegate->refresh();
    list()->selectRow(selected);
    mDelegate->calls.clear();
}

QLineEdit *KeyboardMacrosControllerTest::editor() const
{
    const QList<QLineEdit *> editors = list()->findChildren<QLineEdit *>(u"cellEditor"_s);
    for (QLineEdit *candidate : editors) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

void KeyboardMacrosControllerTest::choose(const char *button, int tag)
{
    QAction *item = outlet<PulldownButton>(QLatin1StringView(button))->itemWithTag(tag);
    QVERIFY(item);
    item->trigger();
}

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

void KeyboardMacrosControllerTest::namesAreMadeUnique_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("result");
    QTest::newRow("empty list") << QStringList{} << u"N"_s;
    QTest::newRow("taken") << QStringList{u"N"_s} << u"N(2)"_s;
    QTest::newRow("taken up to 2") << QStringList{u"N"_s, u"N(2)"_s} << u"N(3)"_s;
    QTest::newRow("taken twice") << QStringList{u"N"_s, u"N"_s} << u"N(3)"_s;
}

void KeyboardMacrosControllerTest::namesAreMadeUnique()
{
    QFETCH(QStringList, names);
    QFETCH(QString, result);
    QVariantList macros;
    for (const QString &name : names)
        macros.append(macroNamed(name));
    QCOMPARE(mController->checkForDuplicateMacroNameUsingDefaultName(macros, u"N"_s), result);
}

void KeyboardMacrosControllerTest::addSendsANewRecord()
{
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"add"_s});
    QCOMPARE(mDelegate->record, (QVariantMap{{u"MacroName"_s, u"Untitled Macro"_s},
                                             {u"delay"_s, 20},
                                             {u"ResponseMsgPortName"_s, u"KeyboardConfiguratorReplyPort"_s},
                                             {u"sequence"_s, QVariantMap()}}));
}

void KeyboardMacrosControllerTest::addingAgainNumbersTheName()
{
    fill({u"Untitled Macro"_s});
    mController->clickAddMacro(nullptr);
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"Untitled Macro(2)"_s));
}

void KeyboardMacrosControllerTest::addOpensTheNameAndAsksForNoLines()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"add"_s});
    QCOMPARE(list()->selectedRow(), 1);
    QCOMPARE(list()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"Untitled Macro"_s);
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QTest::keyClicks(editor(), u"Heal"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->calls, (QStringList{u"add"_s, u"rename 1 Heal"_s}));
    QTRY_COMPARE(list()->editedRow(), -1);
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
}

void KeyboardMacrosControllerTest::typingANameRenames()
{
    fill({u"A"_s, u"B"_s}, 1);
    list()->editColumnRow(0, 1, true);
    QTest::keyClicks(editor(), u"Heal"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->calls, QStringList{u"rename 1 Heal"_s});
    QCOMPARE(list()->model()->index(1, 0).data().toString(), u"Heal"_s);
}

void KeyboardMacrosControllerTest::renamesAsTheRuleSays_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("call");
    QTest::newRow("to its own name") << 0 << u"A"_s << u"rename 0 A"_s;
    QTest::newRow("to another's name") << 1 << u"A"_s << u"rename 1 A(2)"_s;
    QTest::newRow("to a free name") << 1 << u"X"_s << u"rename 1 X"_s;
}

void KeyboardMacrosControllerTest::renamesAsTheRuleSays()
{
    QFETCH(int, row);
    QFETCH(QString, typed);
    QFETCH(QString, call);
    fill({u"A"_s, u"B"_s}, row);
    mController->tableViewSetObjectValueForTableColumnRow(list(), typed, u"macroName"_s, row);
    QCOMPARE(mDelegate->calls, QStringList{call});
}

void KeyboardMacrosControllerTest::emptyNameIsIgnored()
{
    fill({u"A"_s, u"B"_s}, 0);
    mController->tableViewSetObjectValueForTableColumnRow(list(), QString(), u"macroName"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->macrosSettingsArray(), (QVariantList{macroNamed(u"A"_s), macroNamed(u"B"_s)}));
}

void KeyboardMacrosControllerTest::renamingFromTheMenuDisablesTheEventButtons()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose("mSettingsMacro", MacroCommands::rename);
    QCOMPARE(list()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"B"_s);
    for (const char *name : {"mAddMacroDetails", "mRecordMacroDetails", "mSettingsMacroDetails"})
        QVERIFY2(!outlet(QLatin1StringView(name))->isEnabled(), name);
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_COMPARE(list()->editedRow(), -1);
    for (const char *name : {"mAddMacroDetails", "mRecordMacroDetails", "mSettingsMacroDetails"})
        QVERIFY2(outlet(QLatin1StringView(name))->isEnabled(), name);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardMacrosControllerTest::deleteAsksFirst()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    auto *alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Delete the macro “B”?"_s);
    alert->findChild<QPushButton *>(u"alertAlternativeButton"_s)->click();
    QVERIFY(mDelegate->calls.isEmpty());
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    const QList<Sheet *> alerts = mWindow->findChildren<Sheet *>(u"alert"_s);
    alerts.last()->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QCOMPARE(mDelegate->calls.first(), u"delete 1"_s);
    QTRY_VERIFY(list()->hasFocus());
}

void KeyboardMacrosControllerTest::deletingSelectsTheNextRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("middle") << 1 << 1;
    QTest::newRow("last") << 2 << 1;
}

void KeyboardMacrosControllerTest::deletingSelectsTheNextRow()
{
    QFETCH(int, row);
    QFETCH(int, selected);
    fill({u"A"_s, u"B"_s, u"C"_s}, row);
    mController->deleteMacro();
    QCOMPARE(list()->selectedRow(), selected);
    QCOMPARE(mDelegate->calls, (QStringList{u"delete %1"_s.arg(row), u"details %1"_s.arg(selected)}));
}

void KeyboardMacrosControllerTest::deletingTheOnlyMacroHidesTheEventPart()
{
    fill({u"A"_s}, 0);
    mController->deleteMacro();
    QCOMPARE(list()->selectedRow(), -1);
    for (const QString &name : eventPart)
        QVERIFY2(outlet(name)->isHidden(), qPrintable(name));
}

void KeyboardMacrosControllerTest::recordingStartsEmptyAndDisablesTheRest()
{
    fill({u"A"_s, u"B"_s}, 1);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    QCOMPARE(record->text(), u"Record"_s);
    record->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 0 1"_s});
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QCOMPARE(record->text(), u"Stop"_s);
    QVERIFY(record->isChecked());
    QVERIFY(record->isEnabled());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
}

void KeyboardMacrosControllerTest::stoppingSavesAndFetches()
{
    fill({u"A"_s, u"B"_s}, 1);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    record->click();
    mDelegate->calls.clear();
    record->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, u"save 1 0"_s, u"details 1"_s}));
    QCOMPARE(record->text(), u"Record"_s);
    QVERIFY(!record->isChecked());
    QVERIFY(!mController->isRecordingOrCapturing());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(outlet(name)->isEnabled() == (name != u"mDeleteMacroDetails"_s), qPrintable(name));
}

void KeyboardMacrosControllerTest::appendedRecordingKeepsTheLines()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(2);
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 1 1"_s});
    QCOMPARE(mController->macroDetailsArray().size(), 5);
    QCOMPARE(events()->selectedRow(), -1);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Stop"_s);
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, u"save 1 1"_s, u"details 1"_s}));
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 0 1"_s});
}

void KeyboardMacrosControllerTest::newLinesAreAppendedAndShown()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"0.020 seconds delay\n"_s, u"Key Release A"_s}}});
    QCOMPARE(mController->macroDetailsArray(),
             (QStringList{u"Key Press A"_s, u"0.020 seconds delay\n"_s, u"Key Release A"_s}));
    QCOMPARE(events()->selectedRow(), 2);
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void KeyboardMacrosControllerTest::linesAfterStopAreIgnored()
{
    fill({u"A"_s}, 0);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    record->click();
    record->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(mController->macroDetailsArray().size(), 5);
}

void KeyboardMacrosControllerTest::linesArriveAsNotifications()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mCenter->post(u"MacroSequence271"_s, {{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QTRY_COMPARE(mController->macroDetailsArray(), QStringList{u"Key Press A"_s});
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mCenter->post(u"SingleKeyEvent1048"_s, {{u"singleKey"_s, 4}, {u"singleKeyModif"_s, 0}});
    QTRY_COMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), u"A"_s);
}

void KeyboardMacrosControllerTest::leavingTheTabStops_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("new recording") << u"mRecordMacroDetails"_s << QStringList{u"stop"_s, u"save 0 0"_s, u"details 0"_s};
    QTest::newRow("appended recording") << u"mAddMacroDetails"_s
                                        << QStringList{u"stop"_s, u"save 0 1"_s, u"details 0"_s};
}

void KeyboardMacrosControllerTest::leavingTheTabStops()
{
    QFETCH(QString, start);
    QFETCH(QStringList, calls);
    fill({u"A"_s}, 0);
    outlet<QPushButton>(start)->click();
    mDelegate->calls.clear();
    mController->checkMacroRecordingStatus(u"Lighting"_s);
    QCOMPARE(mDelegate->calls, calls);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
    mDelegate->calls.clear();
    mController->checkMacroRecordingStatus(u"Keys"_s);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardMacrosControllerTest::enteringTheTabResetsTheRecordButton()
{
    fill({u"A"_s}, 0);
    mController->setStateOfTableButtonsWithState(false);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
    QVERIFY(outlet(u"mAddMacro"_s)->isEnabled());
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    mController->setControlsState(false);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    QVERIFY(!outlet(u"mAddMacro"_s)->isEnabled());
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardMacrosControllerTest::stoppingWithoutARecordingDoesNothing()
{
    fill({u"A"_s}, 0);
    mController->stopAllMacroRecording();
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
}

void KeyboardMacrosControllerTest::deletingAnEventSelectsTheNeighbour_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("selected");
    QTest::newRow("one line left") << 2 << 1 << 0;
    QTest::newRow("none left") << 0 << 0 << -1;
    QTest::newRow("in the middle") << 1 << 3 << 1;
    QTest::newRow("the last") << 4 << 3 << 2;
}

void KeyboardMacrosControllerTest::deletingAnEventSelectsTheNeighbour()
{
    QFETCH(int, row);
    QFETCH(int, left);
    QFETCH(int, selected);
    fill({u"A"_s, u"B"_s}, 1);
    mDelegate->linesAfterRemoval = threeEvents().mid(0, left);
    events()->selectRow(row);
    QVERIFY(outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    outlet<QPushButton>(u"mDeleteMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"removeEvent %1 1"_s.arg(row), u"details 1"_s}));
    QCOMPARE(events()->model()->rowCount(), left);
    QCOMPARE(events()->selectedRow(), selected);
}

void KeyboardMacrosControllerTest::deleteEventNeedsASelectedRow()
{
    fill({u"A"_s}, 0);
    mController->clickDeleteMacroDetails(nullptr);
    QVERIFY(mDelegate->calls.isEmpty());
    events()->selectRow(1);
    QVERIFY(outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    events()->deselectAll();
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void KeyboardMacrosControllerTest::listMenusEnableCommands()
{
    fill({u"A"_s});
    auto *button = outlet<PulldownButton>(u"mSettingsMacro"_s);
    auto *table = outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s);
    for (const int row : {-1, 0}) {
        list()->selectRow(row);
        const QList<int> expected = row < 0 ? QList<int>{2, 3} : QList<int>{1, 2, 3, 4, 5};
        button->validateItems();
        QCOMPARE(enabledTags(button->menu()->actions()), expected);
        const std::unique_ptr<QMenu> menu(table->makeContextMenu());
        QCOMPARE(menu->actions().size(), 5);
        QCOMPARE(enabledTags(menu->actions()), expected);
    }
}

void KeyboardMacrosControllerTest::eventMenusEnableCommands_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("gear");
    QTest::addColumn<QList<int>>("context");
    QTest::newRow("no lines") << 0 << -1 << QList<int>{1} << QList<int>{1};
    QTest::newRow("none selected") << 5 << -1 << QList<int>{1, 4, 6} << QList<int>{1, 4, 6};
    QTest::newRow("event selected") << 5 << 2 << QList<int>{1, 2, 3, 4, 6} << QList<int>{1, 3, 4, 6};
    QTest::newRow("delay selected") << 5 << 3 << QList<int>{1, 2, 3, 4, 5, 6} << QList<int>{1, 2, 3, 4, 5, 6};
}

void KeyboardMacrosControllerTest::eventMenusEnableCommands()
{
    QFETCH(int, lines);
    QFETCH(int, row);
    QFETCH(QList<int>, gear);
    QFETCH(QList<int>, context);
    mDelegate->lines = threeEvents().mid(0, lines);
    fill({u"A"_s}, 0);
    events()->selectRow(row);
    auto *button = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    button->validateItems();
    QCOMPARE(enabledTags(button->menu()->actions()), gear);
    const std::unique_ptr<QMenu> menu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QCOMPARE(menu->actions().size(), 6);
    QCOMPARE(menu->actions().at(2)->text(), u"Delete Event"_s);
    QCOMPARE(enabledTags(menu->actions()), context);
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

void KeyboardMacrosControllerTest::eventCommandsSendTheirRequest_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("record") << 1 << -1 << QStringList{u"start 0 1"_s};
    QTest::newRow("edit nothing") << 2 << -1 << QStringList{};
    QTest::newRow("delete all") << 4 << -1 << QStringList{u"removeAll 1"_s, u"details 1"_s};
    QTest::newRow("copy delay of row 3") << 5 << 3 << QStringList{u"allDelays 3 1 0"_s, u"details 1"_s};
    QTest::newRow("copy delay of an event") << 5 << 2 << QStringList{};
    QTest::newRow("copy delay of nothing") << 5 << -1 << QStringList{};
    QTest::newRow("no delay") << 6 << -1 << QStringList{u"allDelays 0 1 1"_s, u"details 1"_s};
    QTest::newRow("unknown") << 7 << 1 << QStringList{};
}

void KeyboardMacrosControllerTest::eventCommandsSendTheirRequest()
{
    QFETCH(int, tag);
    QFETCH(int, row);
    QFETCH(QStringList, calls);
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(row);
    QAction item;
    item.setData(tag);
    mController->clickMacroDetailsSettingsMenuItem(&item);
    QCOMPARE(mDelegate->calls, calls);
    QCOMPARE(events()->model()->rowCount(), int(mController->macroDetailsArray().size()));
}

void KeyboardMacrosControllerTest::delaySheetSetsTheDelay()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(3);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    auto *sheet = outlet<Sheet>(u"mEditDelayWindow"_s);
    QVERIFY(sheet && sheet->isVisible());
    auto *field = outlet<NumberOnlyTextField>(u"mInputMacroDelay"_s);
    QCOMPARE(field->text(), QString());
    QTest::keyClicks(field, u"250"_s);
    outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"delay 250 3 1"_s, u"details 1"_s}));
    QVERIFY(!sheet->isVisible());
}

void KeyboardMacrosControllerTest::delaySheetCancelSendsNothing()
{
    fill({u"A"_s}, 0);
    events()->selectRow(1);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    auto *field = outlet<NumberOnlyTextField>(u"mInputMacroDelay"_s);
    QTest::keyClicks(field, u"250"_s);
    outlet<QPushButton>(u"mMacroDelayCancel"_s)->click();
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(field->text(), QString());
    QVERIFY(!outlet<Sheet>(u"mEditDelayWindow"_s)->isVisible());
}

void KeyboardMacrosControllerTest::delayFieldTakesSixDigits_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("refusals");
    QTest::newRow("digit") << u"12"_s << 2 << int(Qt::Key_3) << u"123"_s << 0;
    QTest::newRow("seventh digit") << u"123456"_s << 6 << int(Qt::Key_7) << u"123456"_s << 1;
    QTest::newRow("letter") << u"12"_s << 2 << int(Qt::Key_A) << u"12"_s << 1;
    QTest::newRow("minus") << u"12"_s << 0 << int(Qt::Key_Minus) << u"12"_s << 1;
    QTest::newRow("deletion") << u"123456"_s << 6 << int(Qt::Key_Backspace) << u"12345"_s << 0;
}

void KeyboardMacrosControllerTest::delayFieldTakesSixDigits()
{
    QFETCH(QString, before);
    QFETCH(int, cursor);
    QFETCH(int, key);
    QFETCH(QString, after);
    QFETCH(int, refusals);
    NumberOnlyTextField field;
    for (const QChar digit : before)
        QTest::keyClick(&field, digit.toLatin1());
    QCOMPARE(field.text(), before);
    field.setCursorPosition(cursor);
    const QSignalSpy refused(&field, &NumberOnlyTextField::editRefused);
    QTest::keyClick(&field, Qt::Key(key));
    QCOMPARE(field.text(), after);
    QCOMPARE(refused.size(), refusals);
    QCOMPARE(field.integerValue(), after.toInt());
}

void KeyboardMacrosControllerTest::eventSheetStoresTheCapturedKey()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(2);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    auto *sheet = outlet<Sheet>(u"mEditEventWindow"_s);
    QVERIFY(sheet && sheet->isVisible());
    QCOMPARE(mDelegate->calls, (QStringList{u"event 1 2"_s, u"startEditHID"_s}));
    QVERIFY(mController->recordButtonReadsStop());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
    mDelegate->calls.clear();
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), u"H"_s);
    QVERIFY(mDelegate->calls.isEmpty());
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 1 2"_s, u"update 1 2"_s, u"details 1"_s}));
    QCOMPARE(mDelegate->record,
             (QVariantMap{{u"command"_s, 1}, {u"delay"_s, 20}, {u"page"_s, 7}, {u"argument"_s, 11}}));
    QVERIFY(!sheet->isVisible());
    QVERIFY(!mController->recordButtonReadsStop());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(outlet(name)->isEnabled(), qPrintable(name));
}

void KeyboardMacrosControllerTest::eventSheetWithoutAKeyStoresNothing()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s}));
}

void KeyboardMacrosControllerTest::eventSheetCancelStoresNothing()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(!outlet<Sheet>(u"mEditEventWindow"_s)->isVisible());
}

void KeyboardMacrosControllerTest::recordingAfterACancelledSheetIsSaved()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"start 0 0"_s, u"stop"_s, u"save 0 0"_s, u"details 0"_s}));
}

void KeyboardMacrosControllerTest::capturedKeyIsShown_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("argument");
    QTest::newRow("key") << 4 << 0 << u"A"_s << 4;
    QTest::newRow("key with a modifier") << 4 << 2 << u"A"_s << 4;
    QTest::newRow("modifier alone") << 0 << 225 << u"Left Shift"_s << 225;
    QTest::newRow("modifier alone, high bits in the key") << 0x100 << 225 << u"Left Shift"_s << 225;
}

void KeyboardMacrosControllerTest::capturedKeyIsShown()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    QFETCH(QString, shown);
    QFETCH(int, argument);
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mController->singleKeyEvents({{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifier}});
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), shown);
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->record.value(u"argument"_s), QVariant(argument));
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

QTEST_MAIN(KeyboardMacrosControllerTest)
#include "keyboardmacroscontrollertest.moc"
