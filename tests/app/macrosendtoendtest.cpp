// SPDX-License-Identifier: MIT
// The complete path of a macro: recorded on the keyboard in the real window, edited, assigned to a key, exported and
// imported, as the real daemon stores it.
#include "app/keyboard_configuratorappdelegate.h"
#include "base/document.h"
#include "base/frontapplicationkeys.h"
#include "base/historykeys.h"
#include "base/macroskeys.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemonlink/daemonobjectcall.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/historyentries.h"
#include "keys/historywords.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/eventparser.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macroedits.h"
#include "macros/macroinsertion.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "macros/macrotrysheet.h"
#include "macros/macrotypetext.h"
#include "macros/numberonlytextfield.h"
#include "platform/buttonarea.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int keysTabIndex = 0;
constexpr int macrosTabIndex = 2;

constexpr uint keyA = 4;
constexpr uint keyB = 5;
constexpr uint keyF = 9;
constexpr uint keyH = 11;
constexpr uint keySpace = 44;
constexpr uint keyEscape = 41;

const QVariantList tapOfB = MacroEdits::tap({.page = 7, .usage = keyB}, 0, 15);

/// A call by another client, during which the window processes no event. Returns the name of the error.
QString callElsewhere(QLatin1StringView path, QLatin1StringView interface, QLatin1StringView method,
                      const QVariantList &arguments)
{
    return QDBusConnection::sessionBus().call(daemonObjectCall(path, interface, method, arguments)).errorName();
}

/// The entry that an undo takes back next; empty without one.
QVariantMap undoEntryElsewhere()
{
    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        daemonObjectCall(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Next"_L1));
    for (const QVariantMap &entry : historyEntries(reply.arguments().value(0))) {
        if (entry.value(HistoryKeys::next).toString() == HistoryKeys::nextUndo)
            return entry;
    }
    return {};
}

uint nextUndoElsewhere()
{
    return undoEntryElsewhere().value(HistoryKeys::id).toUInt();
}

const QString usableAgain = u"You can use this keyboard in the window again."_s;

} // namespace

class MacrosEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void recordsTypedKeys();
    void appendsToARecordedMacro();
    void editsAnEventAndADelay();
    void assignsTheMacroToAKey();
    void cardOfTheKeyFollowsTheEvents();
    void useOfAMacroLeadsToItsKey();
    void useInAnotherProfileMakesItActive();
    void newMacroForAKeyPlaysAtOnce();
    void newMacroIsUndoneAndRedoneInOneGo();
    void newMacroStaysApartFromOtherChanges();
    void cancelledNewMacroLeavesNothing();
    void deletionOfACancelledRecordingCanBeUndone();
    void switchOfTheProfileKeepsANewMacro_data();
    void switchOfTheProfileKeepsANewMacro();
    void removedKeyboardKeepsANewMacro();
    void windowInBackgroundStopsANewMacro();
    void quitKeepsANewMacro();
    void quitLeavesNoEmptyMacro();
    void pressedKeyPlaysTheEditedMacro();
    void importedMacroEqualsTheExportedOne();
    void renamesAndDeletes();
    void heldEscapeEndsARecording();
    void heldEscapeEndsTheCaptureOfTheEventSheet();
    void emptyRecordingKeepsTheMacro();
    void removedKeyboardEndsTheRecordingAndKeepsIt();
    void leavingTheTabEndsTheRecordingAndKeepsIt();
    void deletesEvents();
    void recordsMouseButtonsAmongTheKeys();
    void newMacroRecordsMouseButtonsAmongTheKeys();
    void triesAMacroWithoutTyping();
    void tryIsStoppedAtOnce();
    void tryEndsWithTheDaemon();
    void tryIgnoresSignalsOfOthers();
    void strangeFilesKeepBothListsEqual_data();
    void strangeFilesKeepBothListsEqual();
    void keysOfOneNameStayApartAfterADeletion();
    void replacesTheEvents();
    void editsSeveralEventsAsOneChange();
    void typesATextIntoTheMacro();
    void releasesTheKeysThatAMacroHolds();
    void waitsForTheReplacementWithoutOtherEvents();
    void insertsEventsWithTheSheet();
    void dragsRowsAsOneChange();
    void reachesRowsAbove255();
    void refusesWhatAnotherClientHasChanged();
    void refusesAMacroThatAnotherClientHasRemoved();
    void refusesMoreEventsThanTheDaemonTakes();
    void silentDaemonReplacesLater();
    void replacesNothingWithoutADaemon();
    // The usual tasks with the mouse, with the number of clicks that docs/performance.md has.
    void sentenceBecomesAMacroInThreeClicks();
    void allPausesAreDoubledInFourClicks();
    void tenEventsAreDeletedInThreeClicks();
    void keyGetsANewMacroInFiveClicks();
    void keyOfAMacroIsFoundInTwoClicks();

private:
    /// Clicks with the left button, in the centre without a place, and counts the click.
    void clickOn(QWidget *widget, const QPoint &place = {}, Qt::KeyboardModifiers modifiers = {});
    void clickRow(TableView *table, int row, Qt::KeyboardModifiers modifiers = {});
    /// Opens the gear menu of the events and clicks a command.
    void clickInGear(int tag);
    [[nodiscard]] TableView *eventList() const { return mHub->find<TableView>("mMacroDetailsTableView"); }
    void typeKey(uint usage);
    void addMacro(const QString &name);
    /// Adds the macro "Combo" and records A and B into it.
    void recordCombo();
    /// Assigns the macro "Combo" to the key F.
    void assignComboToF();
    /// Opens the sheet for a new macro of the key F and records the key A.
    void makeMacroForF();
    /// Stops that recording, names the macro "Combo" and assigns it.
    void finishNewMacro();
    /// The profiles and macros of the daemon.
    [[nodiscard]] QVariantList records();
    void chooseForEvent(int row, int tag);
    [[nodiscard]] QToolButton *linkTo(const QString &words) const; ///< null if it is not shown
    [[nodiscard]] QStringList lines() const { return mHub->controller->macrosController()->macroDetailsArray(); }
    [[nodiscard]] TableView *list() const { return mHub->find<TableView>("mMacroTableView"); }
    void click(const char *button) const { mHub->find<QPushButton>(button)->click(); }
    void accept(const char *panelName, const QString &path) const;
    /// Adds and selects a macro that taps A `taps` times.
    void addTaps(const QString &name, int taps);
    [[nodiscard]] QVariantList shownEvents(int row) const
    {
        return MacroRecord::events(mHub->controller->macrosArray().value(row).toMap());
    }
    [[nodiscard]] QString status() const { return mHub->find<StatusLine>("mStatusLine")->text(); }
    [[nodiscard]] bool replace(int row, const QVariantList &read, const QVariantList &events) const
    {
        return mHub->controller->replaceEventsOfMacroAtIndex(row, read, events);
    }
    /// Records a macro and opens the sheet on which the user tries it.
    void openTrySheet();
    void repeatEndlessly();
    [[nodiscard]] QStringList triedLines() const
    {
        return mHub->find<QPlainTextEdit>("mTryOutput")->toPlainText().split(u'\n', Qt::SkipEmptyParts);
    }
    /// The record of a macro in the daemon's document; empty when it has none of that name.
    QVariantMap kept(const QString &name);
    /// Its events: "+" or "-", then page and usage.
    QStringList keptEvents(const QString &name);
    QVariantMap settings() { return mDaemon->request(Command::readSettings)->values; }

    int mClicks = 0; // of clickOn()
    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void MacrosEndToEndTest::init()
{
    mClicks = 0;
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    QVERIFY(mHub->openInFront());
    mHub->controller->selectTabAtIndex(macrosTabIndex);
}

void MacrosEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void MacrosEndToEndTest::typeKey(uint usage)
{
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, usage}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, usage}), QString());
}

void MacrosEndToEndTest::addMacro(const QString &name)
{
    click("mAddMacro");
    QCOMPARE(list()->editedRow(), list()->selectedRow());
    auto *editor = qobject_cast<QLineEdit *>(mHub->window->focusWidget());
    QVERIFY(editor);
    QTest::keyClicks(editor, name);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list()->editedRow(), -1);
}

void MacrosEndToEndTest::recordCombo()
{
    addMacro(u"Combo"_s);
    click("mRecordMacroDetails");
    typeKey(keyA);
    typeKey(keyB);
    QTRY_COMPARE(lines().size(), 7);
    const QStringList posted = lines();
    click("mRecordMacroDetails");
    QCOMPARE(lines(), posted); // shown in the same form while they were recorded
}

void MacrosEndToEndTest::chooseForEvent(int row, int tag)
{
    mHub->find<TableView>("mMacroDetailsTableView")->selectRow(row);
    auto *gear = mHub->find<PulldownButton>("mSettingsMacroDetails");
    gear->validateItems();
    QVERIFY(gear->itemWithTag(tag)->isEnabled());
    gear->itemWithTag(tag)->trigger();
}

void MacrosEndToEndTest::accept(const char *panelName, const QString &path) const
{
    auto *panel = mHub->find<QFileDialog>(panelName);
    QVERIFY(panel && panel->isVisible());
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
    static_cast<QDialog *>(panel)->accept();
    QVERIFY(!panel->isVisible());
}

QVariantMap MacrosEndToEndTest::kept(const QString &name)
{
    const QVariantList macros =
        settings().value(DaemonProtocol::allDevSettings).toMap().value(SettingsKeys::macros).toList();
    for (const QVariant &macro : macros) {
        if (MacroRecord::name(macro.toMap()) == name)
            return macro.toMap();
    }
    return {};
}

QStringList MacrosEndToEndTest::keptEvents(const QString &name)
{
    QStringList events;
    for (const QVariant &event : MacroRecord::events(kept(name))) {
        const MacroRecord::Event fields = MacroRecord::eventFields(event.toMap());
        events += u"%1%2:%3"_s.arg(QChar(fields.command == MacroRecord::keyDown ? u'+' : u'-'))
                      .arg(fields.page)
                      .arg(fields.argument);
    }
    return events;
}

void MacrosEndToEndTest::recordsTypedKeys()
{
    recordCombo();
    QCOMPARE(lines().at(0), u"Key Press A"_s);
    QCOMPARE(lines().at(2), u"Key Release A"_s);
    QCOMPARE(lines().at(4), u"Key Press B"_s);
    QCOMPARE(lines().at(6), u"Key Release B"_s);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 4);
}

void MacrosEndToEndTest::appendsToARecordedMacro()
{
    recordCombo();
    click("mAddMacroDetails");
    QCOMPARE(lines().size(), 7);
    typeKey(keyH);
    QTRY_COMPARE(lines().size(), 11);
    const QStringList posted = lines();
    click("mRecordMacroDetails");
    QCOMPARE(lines(), posted);
    QCOMPARE(lines().at(8), u"Key Press H"_s);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 6);
}

void MacrosEndToEndTest::editsAnEventAndADelay()
{
    recordCombo();
    chooseForEvent(4, MacroCommands::edit);
    typeKey(keyH);
    QTRY_COMPARE(mHub->find<QLineEdit>("mInputMacroEvent")->text(), u"H"_s);
    click("mMacroEventEditOK");
    QCOMPARE(lines().at(4), u"Key Press H"_s);
    QVERIFY(list()->isEnabled());
    chooseForEvent(5, MacroCommands::edit);
    QTest::keyClicks(mHub->find<NumberOnlyTextField>("mInputMacroDelay"), u"250"_s);
    click("mMacroDelayOK");
    QCOMPARE(lines().at(5), u"0.250 seconds delay\n"_s);
    const QVariantList events = MacroRecord::events(kept(u"Combo"_s));
    QCOMPARE(MacroRecord::eventFields(events.at(2).toMap()).argument, keyH);
    QCOMPARE(MacroRecord::eventFields(events.at(3).toMap()).delayMs, 250);
    // The window sends the row of a delay to copy it.
    chooseForEvent(5, MacroCommands::copyDelay);
    QCOMPARE(lines().at(1), u"0.250 seconds delay\n"_s);
    chooseForEvent(-1, MacroCommands::noDelay);
    QCOMPARE(lines().at(5), u"0.000 seconds delay\n"_s);
}

void MacrosEndToEndTest::assignComboToF()
{
    mHub->controller->selectTabAtIndex(keysTabIndex);
    QTest::mouseClick(mHub->find<QWidget>("mF"), Qt::LeftButton);
    const QMenu *macros = mHub->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    QVERIFY(macros);
    QAction *combo = nullptr;
    for (QAction *item : macros->actions()) {
        if (item->text() == u"Combo"_s)
            combo = item;
    }
    QVERIFY(combo);
    combo->trigger();
}

void MacrosEndToEndTest::assignsTheMacroToAKey()
{
    recordCombo();
    const int row = list()->selectedRow();
    assignComboToF();
    const QVariantMap document = settings().value(DaemonProtocol::allDevSettings).toMap();
    const QVariantMap profile = document.value(SettingsKeys::profiles).toList().first().toMap();
    const QVariantMap entry = profile.value(SettingsKeys::keys).toMap().value(u"9"_s).toMap();
    QCOMPARE(entry.value(SettingsKeys::command).toInt(), 10);
    QCOMPARE(entry.value(SettingsKeys::param1).toInt(), row);
}

void MacrosEndToEndTest::cardOfTheKeyFollowsTheEvents()
{
    recordCombo();
    assignComboToF();
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    chooseForEvent(-1, MacroCommands::noDelay);
    mHub->controller->selectTabAtIndex(0);
    QCOMPARE(mHub->find<QLabel>("mAssignmentDetail")->text(), u"Events: 4 · 0.0 s"_s);
}

QToolButton *MacrosEndToEndTest::linkTo(const QString &words) const
{
    const QList<QToolButton *> links = mHub->window->findChildren<QToolButton *>(u"mMacroUse"_s);
    for (QToolButton *link : links) {
        if (link->accessibleName() == words && link->isVisible())
            return link;
    }
    return nullptr;
}

void MacrosEndToEndTest::useOfAMacroLeadsToItsKey()
{
    recordCombo();
    assignComboToF();
    QTest::mouseClick(mHub->find<QWidget>("mA"), Qt::LeftButton);
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    QToolButton *link = linkTo(u"F in Default Profile"_s);
    QVERIFY(link);
    QTest::mouseClick(link, Qt::LeftButton);
    QCOMPARE(mHub->find<QTabWidget>("mKeyboardTabView")->currentIndex(), keysTabIndex);
    QCOMPARE(mHub->controller->keysController()->selectedCodes(), QList<int>{int(keyF)});
    QVERIFY(mHub->find<QWidget>("mF")->hasFocus());
}

void MacrosEndToEndTest::useInAnotherProfileMakesItActive()
{
    recordCombo();
    assignComboToF();
    // A new profile becomes the active one.
    mHub->controller->addNewProfileWithSettings({{SettingsKeys::profileName, u"Game"_s}});
    mHub->controller->switchProfileWithID(1);
    QCOMPARE(mHub->controller->keysController()->keysCurrentProfileDict().value(SettingsKeys::profileName).toString(),
             u"Game"_s);
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    QToolButton *link = linkTo(u"F in Default Profile"_s);
    QVERIFY(link);
    link->click();
    const auto activeProfile = [this] {
        return Document(settings().value(DaemonProtocol::allDevSettings).toMap()).activeProfileIndex();
    };
    QCOMPARE(activeProfile(), 0);
    QCOMPARE(mHub->controller->keysController()->selectedCodes(), QList<int>{int(keyF)});
    QCOMPARE(mHub->find<QLabel>("mAssignmentWords")->accessibleName(), u"Macro: Combo (Play once)"_s);
    // Without a daemon, the switch fails: the window stays where it is.
    mHub->controller->switchProfileWithID(1);
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    mDaemon.reset();
    link = linkTo(u"F in Default Profile"_s);
    QVERIFY(link);
    link->click();
    QCOMPARE(mHub->find<QTabWidget>("mKeyboardTabView")->currentIndex(), macrosTabIndex);
}

void MacrosEndToEndTest::makeMacroForF()
{
    mHub->controller->selectTabAtIndex(keysTabIndex);
    QTest::mouseClick(mHub->find<QWidget>("mF"), Qt::LeftButton);
    mHub->controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s)->trigger();
    QVERIFY(mHub->find<Sheet>("mNewMacroSheet")->isUp());
    typeKey(keyA);
    QTRY_COMPARE(mHub->find<QListWidget>("mNewMacroEvents")->count(), 3);
}

void MacrosEndToEndTest::finishNewMacro()
{
    click("mNewMacroRecord");
    mHub->find<QLineEdit>("mNewMacroName")->setText(u"Combo"_s);
    click("mNewMacroAssign");
}

QVariantList MacrosEndToEndTest::records()
{
    const Document document(settings().value(DaemonProtocol::allDevSettings).toMap());
    return {document.profiles(), document.macros()};
}

void MacrosEndToEndTest::newMacroForAKeyPlaysAtOnce()
{
    makeMacroForF();
    finishNewMacro();
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 2);
    QCOMPARE(mHub->find<QLabel>("mAssignmentWords")->accessibleName(), u"Macro: Combo (Play once)"_s);
    SentRecorder recorder;
    typeKey(keyF);
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:4"_s, u"-7:4"_s}));
}

void MacrosEndToEndTest::newMacroIsUndoneAndRedoneInOneGo()
{
    mHub->controller->addMacroWithSettings({{SettingsKeys::macroName, u"Earlier"_s}});
    const uint earlier = nextUndoElsewhere();
    const QVariantList before = records();
    makeMacroForF();
    finishNewMacro();
    const QVariantList after = records();
    QVERIFY(after != before);
    auto *undo = mHub->find<QToolButton>("mUndoButton");
    QTRY_COMPARE(undo->accessibleName(), u"Undo: Macro Combo added"_s);
    QTRY_VERIFY(undo->isEnabled());
    QTest::mouseClick(undo, Qt::LeftButton);
    QTRY_COMPARE(records(), before);
    QTRY_COMPARE(mHub->find<QLabel>("mAssignmentWords")->accessibleName(), u"Default key"_s);
    QCOMPARE(nextUndoElsewhere(), earlier);
    QTRY_COMPARE(undo->accessibleName(), u"Undo: Macro Earlier added"_s);
    mHub->window->activateWindow(); // as a window manager does when the sheet has gone
    // QTest::qWaitForWindowActive() does not wait: for it, the hidden sheet still makes its window active.
    QTRY_COMPARE(QApplication::activeWindow(), mHub->window.get());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_COMPARE(records(), after);
    QTRY_COMPARE(mHub->find<QLabel>("mAssignmentWords")->accessibleName(), u"Macro: Combo (Play once)"_s);
}

// Another client's change in between stays a change of its own.
void MacrosEndToEndTest::newMacroStaysApartFromOtherChanges()
{
    makeMacroForF();
    QVERIFY(mDaemon->request(Command::updateProfile, {{DaemonProtocol::profileId, 0},
                                                      {DaemonProtocol::deviceSettingsDictionary,
                                                       QVariantMap{{SettingsKeys::brightnessKbNormal, 1}}}}));
    finishNewMacro();
    const QVariantList after = records();
    QCOMPARE(callElsewhere(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Undo"_L1, {nextUndoElsewhere()}),
             QString());
    QCOMPARE(records().last(), after.last()); // the assignment alone has gone
    QVERIFY(records().first() != after.first());
}

void MacrosEndToEndTest::cancelledNewMacroLeavesNothing()
{
    mHub->controller->addMacroWithSettings({{SettingsKeys::macroName, u"Earlier"_s}});
    const uint earlier = nextUndoElsewhere();
    const QVariantList before = records();
    makeMacroForF();
    QVERIFY(records() != before);
    click("mNewMacroCancel");
    QCOMPARE(records(), before);
    QCOMPARE(nextUndoElsewhere(), earlier);
    // The keys go to the computer again.
    SentRecorder recorder;
    typeKey(keyB);
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:5"_s, u"-7:5"_s}));
}

void MacrosEndToEndTest::deletionOfACancelledRecordingCanBeUndone()
{
    const QVariantList before = records();
    makeMacroForF();
    click("mNewMacroRecord");
    const QVariantList recorded = records();
    click("mNewMacroCancel");
    QCOMPARE(records(), before);
    for (const QVariantList &expected : {recorded, before}) {
        QCOMPARE(callElsewhere(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Undo"_L1, {nextUndoElsewhere()}),
                 QString());
        QCOMPARE(records(), expected);
    }
}

void MacrosEndToEndTest::switchOfTheProfileKeepsANewMacro_data()
{
    QTest::addColumn<QString>("source");
    for (const char *source : {"application in front", "another client", "deletion by another client"})
        QTest::newRow(source) << QString::fromLatin1(source);
}

void MacrosEndToEndTest::switchOfTheProfileKeepsANewMacro()
{
    QFETCH(QString, source);
    QVERIFY(mDaemon->request(Command::addProfile,
                             {{DaemonProtocol::deviceSettingsDictionary,
                               QVariantMap{{SettingsKeys::profileName, u"Game"_s},
                                           {SettingsKeys::appInfo, QVariantMap{{u"application"_s, u"game"_s}}},
                                           {SettingsKeys::autoSwitchOn, 1}}},
                              {DaemonProtocol::keepsActiveProfile, true}}));
    QTRY_COMPARE(mHub->controller->profilesArray().size(), 2);
    makeMacroForF();
    const QVariantList profiles = records().first().toList();
    if (source == "application in front"_L1)
        QCOMPARE(callElsewhere(FrontApplicationKeys::objectPath, FrontApplicationKeys::interfaceName, "Tell"_L1,
                               {u"game"_s}),
                 QString());
    if (source == "another client"_L1)
        QVERIFY(mDaemon->request(Command::switchProfile, {{DaemonProtocol::profileId, 1}}));
    if (source == "deletion by another client"_L1)
        QVERIFY(mDaemon->request(Command::deleteProfile, {{DaemonProtocol::profileId, 0}}));
    QTRY_VERIFY(!mHub->find<Sheet>("mNewMacroSheet")->isUp());
    QCOMPARE(keptEvents(u"Untitled Macro"_s), (QStringList{u"+7:4"_s, u"-7:4"_s}));
    QCOMPARE(records().first().toList().last(), profiles.last()); // no key of the other profile has changed
    QCOMPARE(status(), u"The new macro “Untitled Macro” is stored, but no key plays it: the profile or the keyboard "
                       "has changed."_s);
    // The keys go to the computer again.
    SentRecorder recorder;
    typeKey(keyB);
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:5"_s, u"-7:5"_s}));
}

void MacrosEndToEndTest::removedKeyboardKeepsANewMacro()
{
    makeMacroForF();
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!mHub->find<Sheet>("mNewMacroSheet")->isUp());
    QCOMPARE(keptEvents(u"Untitled Macro"_s), (QStringList{u"+7:4"_s, u"-7:4"_s}));
}

void MacrosEndToEndTest::windowInBackgroundStopsANewMacro()
{
    Keyboard_ConfiguratorAppDelegate delegate(mHub->window.get(), mHub->controller.get());
    makeMacroForF();
    delegate.applicationWillResignActive();
    SentRecorder recorder;
    typeKey(keyB); // for the program in front
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:5"_s, u"-7:5"_s}));
    QVERIFY(mHub->find<Sheet>("mNewMacroSheet")->isUp());
    click("mNewMacroAssign");
    QCOMPARE(keptEvents(u"Untitled Macro"_s), (QStringList{u"+7:4"_s, u"-7:4"_s}));
    QCOMPARE(mHub->find<QLabel>("mAssignmentWords")->accessibleName(), u"Macro: Untitled Macro (Play once)"_s);
}

void MacrosEndToEndTest::quitKeepsANewMacro()
{
    Keyboard_ConfiguratorAppDelegate delegate(mHub->window.get(), mHub->controller.get());
    makeMacroForF();
    delegate.applicationWillTerminate();
    QVERIFY(!mHub->find<Sheet>("mNewMacroSheet")->isUp());
    QCOMPARE(keptEvents(u"Untitled Macro"_s), (QStringList{u"+7:4"_s, u"-7:4"_s}));
}

void MacrosEndToEndTest::quitLeavesNoEmptyMacro()
{
    Keyboard_ConfiguratorAppDelegate delegate(mHub->window.get(), mHub->controller.get());
    const QVariantList before = records();
    mHub->controller->selectTabAtIndex(keysTabIndex);
    QTest::mouseClick(mHub->find<QWidget>("mF"), Qt::LeftButton);
    mHub->controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s)->trigger();
    QVERIFY(records() != before);
    delegate.applicationWillTerminate();
    QCOMPARE(records(), before);
}

void MacrosEndToEndTest::pressedKeyPlaysTheEditedMacro()
{
    constexpr int pauseMs = 250;
    recordCombo();
    chooseForEvent(4, MacroCommands::edit);
    typeKey(keyH);
    QTRY_COMPARE(mHub->find<QLineEdit>("mInputMacroEvent")->text(), u"H"_s);
    click("mMacroEventEditOK");
    chooseForEvent(5, MacroCommands::edit);
    QTest::keyClicks(mHub->find<NumberOnlyTextField>("mInputMacroDelay"), QString::number(pauseMs));
    click("mMacroDelayOK");
    assignComboToF();

    SentRecorder recorder;
    QElapsedTimer elapsed;
    elapsed.start();
    typeKey(keyF);
    // B's release remains as recorded and releases nothing; the end of the macro releases H.
    const QStringList played{u"+7:4"_s, u"-7:4"_s, u"+7:11"_s, u"-7:11"_s};
    QTRY_COMPARE(recorder.sent(), played);
    QVERIFY(elapsed.elapsed() >= pauseMs);
}

void MacrosEndToEndTest::importedMacroEqualsTheExportedOne()
{
    recordCombo();
    chooseForEvent(1, MacroCommands::edit);
    QTest::keyClicks(mHub->find<NumberOnlyTextField>("mInputMacroDelay"), u"75"_s);
    click("mMacroDelayOK");
    QVariantMap before = kept(u"Combo"_s);
    // The daemon gives a macro only its number; a new macro gets an unused number.
    QVERIFY(before.contains(SettingsKeys::macroId));

    const QTemporaryDir folder;
    auto *gear = mHub->find<PulldownButton>("mSettingsMacro");
    gear->itemWithTag(MacroCommands::exportMacro)->trigger();
    accept("mSavePanel", folder.filePath(u"exported"_s));
    click("mDeleteMacro");
    mHub->find<Sheet>("alert")->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QVERIFY(kept(u"Combo"_s).isEmpty());
    gear->itemWithTag(MacroCommands::importMacro)->trigger();
    accept("mOpenPanel", folder.filePath(u"exported.KestraMacro"_s));

    QVariantMap after = kept(u"Combo"_s);
    QVERIFY(after.value(SettingsKeys::macroId) != before.value(SettingsKeys::macroId));
    before.remove(SettingsKeys::macroId);
    after.remove(SettingsKeys::macroId);
    QCOMPARE(PropertyList::writeBinary(after), PropertyList::writeBinary(before));
    QCOMPARE(MacroRecord::eventFields(MacroRecord::events(after).at(1).toMap()).delayMs, 75);
    QCOMPARE(lines().size(), 7);
    QCOMPARE(lines().at(1), u"0.075 seconds delay\n"_s);
}

void MacrosEndToEndTest::renamesAndDeletes()
{
    addMacro(u"First"_s);
    addMacro(u"Second"_s);
    const int count = list()->numberOfRows();
    list()->selectRow(count - 2);
    mHub->find<PulldownButton>("mSettingsMacro")->itemWithTag(MacroCommands::rename)->trigger();
    auto *editor = list()->findChild<QLineEdit *>(u"cellEditor"_s);
    QVERIFY(editor);
    QTest::keyClicks(editor, u"Second"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!kept(u"Second(2)"_s).isEmpty());
    QCOMPARE(list()->numberOfRows(), count);
    QVERIFY(kept(u"First"_s).isEmpty());
    QVERIFY(!kept(u"Second"_s).isEmpty());
}

void MacrosEndToEndTest::heldEscapeEndsARecording()
{
    addMacro(u"Combo"_s);
    click("mRecordMacroDetails");
    typeKey(keyA);
    QTRY_COMPARE(lines().size(), 3);
    const QStringList ofA = lines();
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, keyEscape}), QString());
    QTRY_VERIFY(mDaemon->log().contains("recording a macro, Escape is held"));
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, keyEscape}), QString());
    typeKey(keySpace);
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:44"_s, u"-7:44"_s}));
    QTRY_COMPARE(mHub->find<QLabel>("mRecordingHint")->text(), usableAgain); // the window knows
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space); // the computer receives it and presses Stop
    QVERIFY(!mHub->controller->macrosController()->isRecordingOrCapturing());
    QCOMPARE(lines(), ofA);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 2);
}

void MacrosEndToEndTest::heldEscapeEndsTheCaptureOfTheEventSheet()
{
    recordCombo();
    chooseForEvent(4, MacroCommands::edit);
    const auto *shown = mHub->find<QLineEdit>("mInputMacroEvent");
    typeKey(keyH);
    QTRY_COMPARE(shown->text(), u"H"_s);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, keyEscape}), QString());
    QTRY_COMPARE(shown->text(), u"Escape"_s);
    QTRY_COMPARE(shown->text(), u"H"_s);
    QTRY_COMPARE(mHub->find<QLabel>("mEnterMacroEventLabel")->text(), usableAgain); // the window knows
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!mHub->find<Sheet>("mEditEventWindow")->isUp());
    QCOMPARE(lines().at(4), u"Key Press H"_s);
}

void MacrosEndToEndTest::emptyRecordingKeepsTheMacro()
{
    recordCombo();
    const QStringList before = lines();
    click("mRecordMacroDetails");
    QCOMPARE(lines(), QStringList());
    click("mRecordMacroDetails");
    QCOMPARE(lines(), before);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 4);
}

void MacrosEndToEndTest::removedKeyboardEndsTheRecordingAndKeepsIt()
{
    addMacro(u"Combo"_s);
    click("mRecordMacroDetails");
    typeKey(keyA);
    QTRY_COMPARE(lines().size(), 3);
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!mHub->find<QWidget>("mRecordMacroDetails")->isEnabled());
    QVERIFY(!mHub->controller->macrosController()->recordButtonReadsStop());
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 2);
}

void MacrosEndToEndTest::leavingTheTabEndsTheRecordingAndKeepsIt()
{
    addMacro(u"Combo"_s);
    click("mRecordMacroDetails");
    typeKey(keyA);
    QTRY_COMPARE(lines().size(), 3);
    mHub->controller->selectTabAtIndex(keysTabIndex);
    QVERIFY(!mHub->controller->macrosController()->isRecordingOrCapturing());
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 2);
}

void MacrosEndToEndTest::deletesEvents()
{
    recordCombo();
    mHub->find<TableView>("mMacroDetailsTableView")->selectRow(4); // the press of B
    click("mDeleteMacroDetails");
    QCOMPARE(lines().size(), 5);
    QCOMPARE(lines().at(4), u"Key Release B"_s);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 3);
    chooseForEvent(-1, MacroCommands::deleteAllEvents);
    QVERIFY(lines().isEmpty());
    const QVariant sequence = kept(u"Combo"_s).value(SettingsKeys::sequence);
    QCOMPARE(sequence, QVariant(QVariantMap()));
}

void MacrosEndToEndTest::strangeFilesKeepBothListsEqual_data()
{
    QTest::addColumn<QVariantMap>("record");
    QTest::addColumn<bool>("isTaken");
    const auto nested = [](int levels) {
        QVariant value = 1;
        for (int level = 0; level < levels; ++level)
            value = QVariantList{value};
        return QVariantMap{{u"MacroName"_s, u"Strange"_s}, {u"Deep"_s, value}};
    };
    const auto withEvents = [](const QVariant &events) {
        return QVariantMap{{u"MacroName"_s, u"Strange"_s}, {u"sequence"_s, QVariantMap{{u"Events"_s, events}}}};
    };
    const QVariantMap elsewhere = MacroRecord::eventRecord({.command = 1, .delayMs = 7, .page = 12, .argument = 4});
    QTest::newRow("events that are text") << withEvents(u"A"_s) << false;
    QTest::newRow("events that are no dictionaries") << withEvents(QVariantList{1, u"A"_s}) << false;
    QTest::newRow("sequence that is an array")
        << QVariantMap{{u"MacroName"_s, u"Strange"_s}, {u"sequence"_s, QVariantList{1}}} << false;
    QTest::newRow("too many events") << withEvents(QVariantList(MacroRecord::maximumEvents + 1, elsewhere)) << false;
    QTest::newRow("nested more deeply than the daemon keeps") << nested(505) << false;
    QTest::newRow("nested more deeply than a request can be") << nested(511) << false;
    QTest::newRow("events of an unknown page") << withEvents(QVariantList{elsewhere, elsewhere}) << true;
    QTest::newRow("as many events as fit") << withEvents(QVariantList(MacroRecord::maximumEvents, elsewhere)) << true;
    QTest::newRow("no name that is text") << QVariantMap{{u"MacroName"_s, QVariantList{1}}} << true;
}

void MacrosEndToEndTest::strangeFilesKeepBothListsEqual()
{
    QFETCH(QVariantMap, record);
    QFETCH(bool, isTaken);
    recordCombo();
    const auto keptMacros = [this] {
        return settings().value(DaemonProtocol::allDevSettings).toMap().value(SettingsKeys::macros).toList();
    };
    const QVariantList before = keptMacros();
    const QTemporaryDir folder;
    const std::optional<QByteArray> data = PropertyList::writeBinary(record);
    QVERIFY(data);
    QVERIFY(PropertyList::writeFileAtomically(folder.filePath(u"strange.KestraMacro"_s), *data));
    mHub->find<PulldownButton>("mSettingsMacro")->itemWithTag(MacroCommands::importMacro)->trigger();
    accept("mOpenPanel", folder.filePath(u"strange.KestraMacro"_s));
    QCOMPARE(keptMacros().size(), before.size() + (isTaken ? 1 : 0));
    QCOMPARE(keptMacros().first(before.size()), before);
    QCOMPARE(mHub->controller->macrosController()->macrosSettingsArray(), keptMacros());
    // After the next change, by any client, the list is the daemon's.
    const QVariantMap contents{{SettingsKeys::macroName, u"Renamed"_s}, {SettingsKeys::macroId, 0}};
    QVERIFY(mDaemon->request(Command::renameMacro, {{DaemonProtocol::macroContents, contents}}));
    QTRY_VERIFY(!mHub->controller->macrosArray().isEmpty()
                && MacroRecord::name(mHub->controller->macrosArray().first().toMap()) == u"Renamed"_s);
    QCOMPARE(mHub->controller->macrosController()->macrosSettingsArray(), keptMacros());
    QCOMPARE(list()->numberOfRows(), keptMacros().size());
}

void MacrosEndToEndTest::addTaps(const QString &name, int taps)
{
    QVariantList events;
    for (int tap = 0; tap < taps; ++tap)
        events += MacroEdits::tap({.page = 7, .usage = keyA}, 10, 10);
    mHub->controller->addMacroWithSettings(MacroRecord::withEvents({{SettingsKeys::macroName, name}}, events));
    list()->selectRow(list()->numberOfRows() - 1);
    QCOMPARE(lines(), eventParser::getMessagesArray(events));
}

// The list names two keys "Delete".
void MacrosEndToEndTest::keysOfOneNameStayApartAfterADeletion()
{
    constexpr HidUsage backspace{.page = 7, .usage = 42};
    constexpr HidUsage forwardDelete{.page = 7, .usage = 76};
    const QVariantList events = QVariantList{MacroEdits::press(forwardDelete)} + MacroEdits::tap(backspace, 10, 10)
                                + MacroEdits::tap({.page = 7, .usage = keyA}, 10, 10)
                                + QVariantList{MacroEdits::release(forwardDelete, 10)};
    mHub->controller->addMacroWithSettings(MacroRecord::withEvents({{SettingsKeys::macroName, u"Erase"_s}}, events));
    list()->selectRow(list()->numberOfRows() - 1);
    const auto &timeline = mHub->find<MacroTimelineView>("mMacroTimelineView")->timeline();
    QCOMPARE(timeline.lanes, 3);
    constexpr int pressOfA = 6;
    eventList()->selectRow(pressOfA);
    QTest::mouseClick(mHub->find<QPushButton>("mDeleteMacroDetails"), Qt::LeftButton);
    QCOMPARE(timeline.lanes, 3);
    QCOMPARE(timeline.unpairedRows(), QList<int>{pressOfA}); // its release, which has taken the row
}

void MacrosEndToEndTest::replacesTheEvents()
{
    addTaps(u"Combo"_s, 3);
    const int row = list()->selectedRow();
    QVERIFY(replace(row, shownEvents(row), tapOfB));
    QCOMPARE(shownEvents(row), tapOfB);
    QCOMPARE(lines(), QStringList({u"Key Press B"_s, u"0.015 seconds delay\n"_s, u"Key Release B"_s}));
    QCOMPARE(list()->selectedRow(), row);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)), tapOfB);
    // Each is one change, which the button offers to take back.
    const auto *undo = mHub->find<QToolButton>("mUndoButton");
    const auto offers = [undo](const QString &words) {
        return undo->isEnabled() && undo->accessibleName() == u"Undo: "_s + words;
    };
    QTRY_VERIFY2(offers(u"Macro Combo: 4 events removed"_s) || offers(u"Macro Combo changed"_s),
                 qPrintable(undo->accessibleName()));
    QVERIFY(replace(row, tapOfB, {}));
    QCOMPARE(lines(), QStringList());
    QTRY_VERIFY2(offers(u"Macro Combo: 2 events removed"_s), qPrintable(undo->accessibleName()));
    mHub->find<QToolButton>("mUndoButton")->click();
    QTRY_COMPARE(lines().size(), 3);
}

void MacrosEndToEndTest::editsSeveralEventsAsOneChange()
{
    addTaps(u"Long"_s, 200);
    const QVariantList before = shownEvents(list()->selectedRow());
    auto *events = mHub->find<TableView>("mMacroDetailsTableView");
    events->setFocus();
    // Above the rows that the other requests reach
    const QVariantList pasted = tapOfB;
    QVERIFY(replace(list()->selectedRow(), before, before.first(300) + pasted + before.sliced(300)));
    events->selectRows({600, 602});
    QTest::keyClick(events, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(MacroRecord::events(kept(u"Long"_s)), before);
    QCOMPARE(lines(), eventParser::getMessagesArray(before));
    QCOMPARE(events->selectedRows(), QList<int>{600});
    addTaps(u"Short"_s, 1);
    events->deselectAll();
    QTest::keyClick(events, Qt::Key_V, Qt::ControlModifier);
    const QVariantList both = shownEvents(list()->selectedRow());
    QCOMPARE(both.sliced(2), pasted);
    QCOMPARE(MacroRecord::events(kept(u"Short"_s)), both);
    QCOMPARE(lines(), eventParser::getMessagesArray(both));
    QTest::keyClick(events, Qt::Key_Up, Qt::AltModifier);
    const QVariantList moved = MacroEdits::moving(both, {2, 3}, 1).value();
    QCOMPARE(MacroRecord::events(kept(u"Short"_s)), moved);
    QCOMPARE(events->selectedRows(), (QList<int>{1, 2, 3, 4}));
    // Each was one change.
    auto *undo = mHub->find<QToolButton>("mUndoButton");
    QTRY_COMPARE(undo->accessibleName(), u"Undo: "_s + historyWords(undoEntryElsewhere()));
    undo->click();
    QTRY_COMPARE(MacroRecord::events(kept(u"Short"_s)), both);
}

void MacrosEndToEndTest::typesATextIntoTheMacro()
{
    addTaps(u"Combo"_s, 1);
    const uint before = nextUndoElsewhere();
    chooseForEvent(2, MacroCommands::typeText);
    auto *sheet = mHub->find<MacroTypeText>("mTypeTextWindow");
    QVERIFY(sheet->isUp());
    sheet->showKeymap(Keymap::fromNames("us"));
    mHub->find<QPlainTextEdit>("mTypeTextField")->setPlainText(u"hb"_s);
    click("mTypeTextInsert");
    QVERIFY(!sheet->isUp());
    // Before the selected release
    QCOMPARE(keptEvents(u"Combo"_s), (QStringList{u"+7:4"_s, u"+7:11"_s, u"-7:11"_s, u"+7:5"_s, u"-7:5"_s, u"-7:4"_s}));
    QCOMPARE(lines(), eventParser::getMessagesArray(MacroRecord::events(kept(u"Combo"_s))));
    QCOMPARE(lines().size(), 11);
    QCOMPARE(callElsewhere(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Undo"_L1, {nextUndoElsewhere()}),
             QString());
    QTRY_COMPARE(lines().size(), 3);
    QCOMPARE(nextUndoElsewhere(), before);
}

void MacrosEndToEndTest::releasesTheKeysThatAMacroHolds()
{
    const QVariantList held{MacroEdits::press({.page = 7, .usage = keyA}),
                            MacroEdits::press({.page = 7, .usage = keyB}, 30)};
    mHub->controller->addMacroWithSettings(MacroRecord::withEvents({{SettingsKeys::macroName, u"Held"_s}}, held));
    list()->selectRow(int(mHub->controller->macrosArray().size()) - 1);
    const uint before = nextUndoElsewhere();
    const auto *release = mHub->find<QPushButton>("mReleaseKeysAtEnd");
    QTRY_VERIFY(release->isVisible() && release->isEnabled());
    click("mReleaseKeysAtEnd");
    QStringList events = keptEvents(u"Held"_s);
    QCOMPARE(events.first(2), (QStringList{u"+7:4"_s, u"+7:5"_s}));
    events = events.sliced(2);
    events.sort();
    QCOMPARE(events, (QStringList{u"-7:4"_s, u"-7:5"_s}));
    QCOMPARE(lines(), eventParser::getMessagesArray(MacroRecord::events(kept(u"Held"_s))));
    QTRY_VERIFY(!release->isVisible());
    QCOMPARE(callElsewhere(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Undo"_L1, {nextUndoElsewhere()}),
             QString());
    QTRY_COMPARE(lines(), eventParser::getMessagesArray(held));
    QTRY_VERIFY(release->isVisible());
    QCOMPARE(nextUndoElsewhere(), before);
}

void MacrosEndToEndTest::waitsForTheReplacementWithoutOtherEvents()
{
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    auto hasRun = std::make_shared<bool>(false);
    QTimer::singleShot(0, mHub->controller.get(), [hasRun] { *hasRun = true; });
    QVERIFY(replace(row, shownEvents(row), tapOfB));
    QVERIFY(!*hasRun);
    QTRY_VERIFY(*hasRun);
}

void MacrosEndToEndTest::insertsEventsWithTheSheet()
{
    addTaps(u"Combo"_s, 1);
    const QVariantList before = shownEvents(list()->selectedRow());
    auto *events = mHub->find<TableView>("mMacroDetailsTableView");
    chooseForEvent(0, MacroCommands::insertEvents);
    click("mInsertPressKey");
    typeKey(keyB);
    QTRY_COMPARE(mHub->find<PopUpButton>("mInsertKey")->shownTitleOfSelectedItem(), u"B"_s);
    QTRY_VERIFY(!mHub->find<QPushButton>("mInsertPressKey")->isChecked());
    click("mInsertOK");
    const QVariantList inserted =
        before.first(1) + MacroEdits::tap({.page = 7, .usage = keyB}, 20, 20) + before.last(1);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)), inserted);
    QCOMPARE(lines(), eventParser::getMessagesArray(inserted));
    QCOMPARE(events->selectedRows(), (QList<int>{1, 2, 3, 4}));
    // One change
    auto *undo = mHub->find<QToolButton>("mUndoButton");
    QTRY_VERIFY(undo->isEnabled());
    undo->click();
    QTRY_COMPARE(MacroRecord::events(kept(u"Combo"_s)), before);
    // The keys act in the window again, and a pause at the start is shown.
    QTRY_COMPARE(lines(), eventParser::getMessagesArray(before));
    events->selectRow(0);
    events->setFocus();
    QTest::keyClick(events, Qt::Key_Insert);
    mHub->find<PopUpButton>("mInsertKind")->itemAtIndex(int(MacroInsertion::Kind::pause))->trigger();
    QTest::keyClicks(mHub->find<NumberOnlyTextField>("mInsertPause"), u"0"_s); // 200
    mHub->find<RadioGroup>("mInsertPlace")->selectRow(0);
    click("mInsertOK");
    QCOMPARE(lines().first(2), (QStringList{u"0.210 seconds delay\n"_s, u"Key Press A"_s}));
    QCOMPARE(events->selectedRows(), QList<int>{0});
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)).size(), 3);
}

void MacrosEndToEndTest::dragsRowsAsOneChange()
{
    addTaps(u"Combo"_s, 1);
    const int row = list()->selectedRow();
    const QVariantList before = shownEvents(row) + tapOfB;
    QVERIFY(replace(row, shownEvents(row), before));
    auto *events = mHub->find<TableView>("mMacroDetailsTableView");
    events->selectRows({3, 4, 5, 6});
    events->scrollRowToVisible(0);
    const auto rect = [events](int each) { return events->visualRect(events->model()->index(each, 0)); };
    QWidget *viewport = events->viewport();
    const QPoint place(60, rect(0).top() + 1);
    QTest::mousePress(viewport, Qt::LeftButton, {}, rect(3).center());
    QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
    const QVariantList moved = MacroEdits::moving(before, {2, 3}, 0).value();
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)), moved);
    QCOMPARE(lines(), eventParser::getMessagesArray(moved));
    auto *undo = mHub->find<QToolButton>("mUndoButton");
    QTRY_VERIFY(undo->isEnabled());
    undo->click();
    QTRY_COMPARE(MacroRecord::events(kept(u"Combo"_s)), before);
}

void MacrosEndToEndTest::reachesRowsAbove255()
{
    addTaps(u"Long"_s, 400);
    const int row = list()->selectedRow();
    QVariantList changed = shownEvents(row);
    const auto compareKept = [this, &changed] {
        QCOMPARE(MacroRecord::events(kept(u"Long"_s)), changed);
        QCOMPARE(lines(), eventParser::getMessagesArray(changed));
    };
    chooseForEvent(1500, MacroCommands::edit);
    typeKey(keyH);
    QTRY_COMPARE(mHub->find<QLineEdit>("mInputMacroEvent")->text(), u"H"_s);
    click("mMacroEventEditOK");
    changed[750] = MacroEdits::press({.page = 7, .usage = keyH}, 10);
    compareKept();
    chooseForEvent(1499, MacroCommands::edit);
    QTest::keyClicks(mHub->find<NumberOnlyTextField>("mInputMacroDelay"), u"250"_s);
    click("mMacroDelayOK");
    changed[750] = MacroEdits::press({.page = 7, .usage = keyH}, 250);
    compareKept();
    chooseForEvent(1500, MacroCommands::deleteEvent);
    changed.removeAt(750);
    compareKept();
    const QVariantList before = shownEvents(row);
    const int event = *MacroRecord::eventIndexOfRow(before, 1501);
    QVERIFY(replace(row, before, MacroEdits::settingDelays(before, {event}, 1234).value()));
    QCOMPARE(lines().at(1501), u"1.234 seconds delay\n"_s);
    QCOMPARE(lines().filter(u"1.234"_s).size(), 1);
}

void MacrosEndToEndTest::refusesWhatAnotherClientHasChanged()
{
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    const QVariantList read = shownEvents(row);
    const QVariantList others = MacroEdits::tap({.page = 7, .usage = keyH}, 0, 30);
    QCOMPARE(callElsewhere(MacrosKeys::objectPath, MacrosKeys::interfaceName, MacrosKeys::replace,
                           {uint(MacroRecord::macroId(mHub->controller->macrosArray().at(row).toMap())),
                            MacroRecord::digest(read), *PropertyList::writeBinary(others), u"com.example.other"_s}),
             QString());
    QCOMPARE(shownEvents(row), read); // the window has not heard of it
    QVERIFY(!replace(row, read, tapOfB));
    QCOMPARE(shownEvents(row), others);
    QCOMPARE(lines(), eventParser::getMessagesArray(others));
    QCOMPARE(status(), u"The change was not made: the list has changed meanwhile."_s);
    QCOMPARE(MacroRecord::events(kept(u"Combo"_s)), others);
    QVERIFY(replace(row, shownEvents(row), tapOfB));
}

void MacrosEndToEndTest::refusesAMacroThatAnotherClientHasRemoved()
{
    addTaps(u"First"_s, 1);
    const int count = list()->numberOfRows();
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    const QVariantList read = shownEvents(row);
    const uint entry = nextUndoElsewhere();
    QCOMPARE(callElsewhere(HistoryKeys::objectPath, HistoryKeys::interfaceName, "Undo"_L1, {entry}), QString());
    QCOMPARE(list()->numberOfRows(), count + 1); // the window has not heard of it
    QVERIFY(!replace(row, read, tapOfB));
    QCOMPARE(list()->numberOfRows(), count);
    QCOMPARE(status(), u"The keyboard service has refused this: the entry no longer exists."_s);
    QVERIFY(!replace(row, read, tapOfB)); // there is no such row
    QCOMPARE(MacroRecord::events(kept(u"First"_s)).size(), 2);
}

void MacrosEndToEndTest::refusesMoreEventsThanTheDaemonTakes()
{
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    const QVariantList read = shownEvents(row);
    QVERIFY(!replace(row, read, QVariantList(MacroRecord::maximumEvents + 1, read.first())));
    QCOMPARE(status(), u"The keyboard service has refused this: there is no more room."_s);
    QCOMPARE(shownEvents(row), read);
    QCOMPARE(lines(), eventParser::getMessagesArray(read));
}

// The daemon makes the change when it continues. The window then shows it, although it is the author.
void MacrosEndToEndTest::silentDaemonReplacesLater()
{
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    const QVariantList read = shownEvents(row);
    setReplyPollInterval(std::chrono::microseconds(100));
    mDaemon->stop();
    const bool isStored = replace(row, read, tapOfB);
    const QString said = status();
    mDaemon->resume();
    setReplyPollInterval(replyPollInterval);
    QVERIFY(!isStored);
    QCOMPARE(said, u"The keyboard service did not respond. The change may be missing."_s);
    QTRY_COMPARE(shownEvents(row), tapOfB);
    QCOMPARE(lines(), eventParser::getMessagesArray(tapOfB));
}

void MacrosEndToEndTest::replacesNothingWithoutADaemon()
{
    addTaps(u"Combo"_s, 2);
    const int row = list()->selectedRow();
    const QVariantList read = shownEvents(row);
    mDaemon->kill();
    setReplyPollInterval(std::chrono::microseconds(100));
    QVERIFY(!replace(row, read, tapOfB));
    QCOMPARE(status(), u"The keyboard service did not respond. The change may be missing."_s);
    QCOMPARE(shownEvents(row), read);
}

void MacrosEndToEndTest::recordsMouseButtonsAmongTheKeys()
{
    addMacro(u"Combo"_s);
    click("mRecordMacroDetails");
    auto *area = mHub->find<ButtonArea>("mButtonArea");
    QTRY_VERIFY(area->isVisible());
    QTest::mousePress(area, Qt::RightButton);
    QTRY_COMPARE(lines().size(), 1);
    typeKey(keyA);
    QTRY_COMPARE(lines().size(), 5);
    QTest::mouseRelease(area, Qt::RightButton);
    QTRY_COMPARE(lines().size(), 7);
    QTest::mousePress(area, Qt::LeftButton);
    QTRY_COMPARE(lines().size(), 9);
    click("mRecordMacroDetails"); // its click is not recorded, and ends the press
    QCOMPARE(keptEvents(u"Combo"_s), (QStringList{u"+9:2"_s, u"+7:4"_s, u"-7:4"_s, u"-9:2"_s, u"+9:1"_s, u"-9:1"_s}));
    QCOMPARE(lines().first().trimmed(), u"Right Button down"_s);
    QCOMPARE(lines().last().trimmed(), u"Left Button up"_s);
}

void MacrosEndToEndTest::newMacroRecordsMouseButtonsAmongTheKeys()
{
    makeMacroForF();
    auto *area = mHub->find<ButtonArea>("mNewMacroButtonArea");
    const auto *events = mHub->find<QListWidget>("mNewMacroEvents");
    QTRY_VERIFY(area->isVisible());
    QTest::mouseClick(area, Qt::RightButton);
    QTRY_COMPARE(events->count(), 7);
    QTest::mousePress(area, Qt::LeftButton);
    QTRY_COMPARE(events->count(), 9);
    QTest::mouseClick(mHub->find<QPushButton>("mNewMacroRecord"), Qt::LeftButton); // Stop is not recorded
    QCOMPARE(events->count(), 11);
    mHub->find<QLineEdit>("mNewMacroName")->setText(u"Combo"_s);
    click("mNewMacroAssign");
    QCOMPARE(keptEvents(u"Combo"_s), (QStringList{u"+7:4"_s, u"-7:4"_s, u"+9:2"_s, u"-9:2"_s, u"+9:1"_s, u"-9:1"_s}));
}

void MacrosEndToEndTest::openTrySheet()
{
    recordCombo();
    auto *tryMacro = mHub->find<QPushButton>("mTryMacro");
    QVERIFY(tryMacro->isEnabled());
    tryMacro->click();
    QVERIFY(mHub->find<MacroTrySheet>("mTryWindow")->isUp());
}

void MacrosEndToEndTest::repeatEndlessly()
{
    auto *repeat = mHub->find<PopUpButton>("mTryRepeat");
    int index = 0;
    while (index < repeat->numberOfItems() && !repeat->itemTitleAtIndex(index).startsWith(u"Repeat until"_s))
        ++index;
    QVERIFY(index < repeat->numberOfItems());
    repeat->itemAtIndex(index)->trigger();
}

void MacrosEndToEndTest::triesAMacroWithoutTyping()
{
    openTrySheet();
    SentRecorder recorder;
    click("mTryStart");
    QTRY_COMPARE(triedLines().size(), 4);
    QTRY_VERIFY(!mHub->find<MacroTrySheet>("mTryWindow")->isPlaying());
    QStringList events;
    for (const QString &line : triedLines())
        events += line.section(u"  "_s, 1);
    QCOMPARE(events, (QStringList{u"Key Press A"_s, u"Key Release A"_s, u"Key Press B"_s, u"Key Release B"_s}));
    QVERIFY(mHub->find<StatusLine>("mTryStatus")->text().contains(u"to its end"_s));
    // The keyboard still works, and its keys are the first that the computer receives.
    click("mTryClose");
    typeKey(keyH);
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:11"_s, u"-7:11"_s}));
}

void MacrosEndToEndTest::tryIsStoppedAtOnce()
{
    openTrySheet();
    repeatEndlessly();
    click("mTryStart");
    QTRY_VERIFY(triedLines().size() > 8); // more than one round
    auto *sheet = mHub->find<MacroTrySheet>("mTryWindow");
    QTest::keyClick(sheet, Qt::Key_Escape);
    QVERIFY(!sheet->isPlaying());
    // The next try begins with the first event: nothing of the stopped one follows.
    mHub->find<PopUpButton>("mTryRepeat")->itemAtIndex(0)->trigger();
    click("mTryStart");
    QTRY_VERIFY(!sheet->isPlaying());
    QCOMPARE(triedLines().size(), 4);
    QVERIFY(triedLines().first().endsWith(u"Key Press A"_s));
}

void MacrosEndToEndTest::tryEndsWithTheDaemon()
{
    openTrySheet();
    repeatEndlessly();
    click("mTryStart");
    QTRY_VERIFY(!triedLines().isEmpty());
    auto *sheet = mHub->find<MacroTrySheet>("mTryWindow");
    mDaemon->kill();
    QTRY_VERIFY(!sheet->isPlaying());
}

void MacrosEndToEndTest::tryIgnoresSignalsOfOthers()
{
    openTrySheet();
    repeatEndlessly();
    click("mTryStart");
    QTRY_VERIFY(!triedLines().isEmpty());
    {
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
        for (uint number = 0; number < 10; ++number) {
            QDBusMessage ended = QDBusMessage::createSignal(u"/Macros"_s, u"org.quillkestra.Macros"_s, u"TryEnded"_s);
            ended.setArguments({number, u"finished"_s});
            QVERIFY(other.send(ended));
        }
        // The bus has passed them on before it answers.
        QVERIFY(other
                    .call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                                                         u"GetId"_s))
                    .type()
                == QDBusMessage::ReplyMessage);
    }
    QDBusConnection::disconnectFromBus(u"other"_s);
    const qsizetype before = triedLines().size();
    QTRY_VERIFY(triedLines().size() > before);
    QVERIFY(mHub->find<MacroTrySheet>("mTryWindow")->isPlaying());
}

void MacrosEndToEndTest::clickOn(QWidget *widget, const QPoint &place, Qt::KeyboardModifiers modifiers)
{
    QVERIFY(widget && widget->isVisible() && widget->isEnabled());
    ++mClicks;
    QTest::mouseClick(widget, Qt::LeftButton, modifiers, place);
}

void MacrosEndToEndTest::clickRow(TableView *table, int row, Qt::KeyboardModifiers modifiers)
{
    table->scrollRowToVisible(row); // the user turns the wheel
    clickOn(table->viewport(), table->visualRect(table->model()->index(row, 0)).center(), modifiers);
}

void MacrosEndToEndTest::clickInGear(int tag)
{
    auto *gear = mHub->find<PulldownButton>("mSettingsMacroDetails");
    QMenu *menu = gear->menu();
    QAction *item = gear->itemWithTag(tag);
    // The button does not return before its menu is closed.
    connect(
        menu, &QMenu::aboutToShow, menu,
        [this, menu, item] {
            QTest::mouseMove(menu, menu->actionGeometry(item).center());
            clickOn(menu, menu->actionGeometry(item).center());
        },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    clickOn(gear);
    QVERIFY(!menu->isVisible());
}

void MacrosEndToEndTest::sentenceBecomesAMacroInThreeClicks()
{
    addMacro(u"Chat"_s);
    clickInGear(MacroCommands::typeText);
    auto *sheet = mHub->find<MacroTypeText>("mTypeTextWindow");
    QVERIFY(sheet && sheet->isVisible());
    sheet->showKeymap(Keymap::fromNames("us")); // the layout of the machine may be another one
    QTRY_COMPARE(QApplication::focusWidget(), mHub->find<QWidget>("mTypeTextField"));
    QTest::keyClicks(QApplication::focusWidget(), u"Hi all"_s);
    clickOn(mHub->find<QPushButton>("mTypeTextInsert"));
    QCOMPARE(mClicks, 3);
    QList<uint> pressed;
    for (const QVariant &record : MacroRecord::events(kept(u"Chat"_s))) {
        const MacroRecord::Event event = MacroRecord::eventFields(record.toMap());
        if (event.command == MacroRecord::keyDown)
            pressed += event.argument;
    }
    constexpr uint shift = 225;
    constexpr uint keyI = 12;
    constexpr uint keyL = 15;
    QCOMPARE(pressed, (QList<uint>{shift, keyH, keyI, keySpace, keyA, keyL, keyL}));
}

void MacrosEndToEndTest::allPausesAreDoubledInFourClicks()
{
    addTaps(u"Long"_s, 5);
    const QVariantList equal = shownEvents(list()->selectedRow());
    QVariantList different = equal;
    for (int index = 0; index < different.size(); ++index)
        different = MacroEdits::settingDelays(different, {index}, index + 1).value();
    QVERIFY(replace(list()->selectedRow(), equal, different));
    clickRow(eventList(), 0);
    QTest::keyClick(eventList(), Qt::Key_A, Qt::ControlModifier);
    clickInGear(MacroCommands::scalePauses);
    QTRY_COMPARE(QApplication::focusWidget(), mHub->find<QWidget>("mPauseField"));
    QTest::keyClicks(QApplication::focusWidget(), u"200"_s);
    clickOn(mHub->find<QPushButton>("mPauseOK"));
    QCOMPARE(mClicks, 4);
    const QVariantList events = MacroRecord::events(kept(u"Long"_s));
    QCOMPARE(events.size(), 10);
    for (int index = 0; index < events.size(); ++index)
        QCOMPARE(MacroRecord::eventFields(events.at(index).toMap()).delayMs, 2 * (index + 1));
}

void MacrosEndToEndTest::tenEventsAreDeletedInThreeClicks()
{
    addTaps(u"Long"_s, 8);
    const QVariantList before = shownEvents(list()->selectedRow());
    constexpr int firstRow = 2; // of the second event
    constexpr int lastRow = 20; // of the eleventh one
    clickRow(eventList(), firstRow);
    clickRow(eventList(), lastRow, Qt::ShiftModifier);
    clickOn(mHub->find<QPushButton>("mDeleteMacroDetails"));
    QCOMPARE(mClicks, 3);
    QCOMPARE(MacroRecord::events(kept(u"Long"_s)), before.first(1) + before.sliced(11));
}

void MacrosEndToEndTest::keyGetsANewMacroInFiveClicks()
{
    mHub->controller->selectTabAtIndex(keysTabIndex);
    clickOn(mHub->find<QWidget>("mF"));
    auto *assignments = mHub->find<PopUpButton>("mAssignFunction");
    clickOn(assignments);
    QMenu *menu = assignments->popUpMenu();
    QTRY_VERIFY(menu->isVisible());
    auto *newMacro = mHub->controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s);
    const QPoint place = menu->actionGeometry(newMacro).center();
    QTest::mouseMove(menu, place);
    clickOn(menu, place);
    QTRY_VERIFY(mHub->find<Sheet>("mNewMacroSheet") && mHub->find<Sheet>("mNewMacroSheet")->isUp());
    typeKey(keyA);
    QTRY_COMPARE(mHub->find<QListWidget>("mNewMacroEvents")->count(), 3);
    clickOn(mHub->find<QPushButton>("mNewMacroRecord"));
    clickOn(mHub->find<QPushButton>("mNewMacroAssign"));
    QCOMPARE(mClicks, 5);
    SentRecorder recorder;
    typeKey(keyF);
    QTRY_COMPARE(recorder.sent(), (QStringList{u"+7:4"_s, u"-7:4"_s}));
}

void MacrosEndToEndTest::keyOfAMacroIsFoundInTwoClicks()
{
    recordCombo();
    assignComboToF();
    QTest::mouseClick(mHub->find<QWidget>("mA"), Qt::LeftButton);
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    addMacro(u"Other"_s);
    QVERIFY(!linkTo(u"F in Default Profile"_s));
    clickRow(list(), list()->selectedRow() - 1);
    clickOn(linkTo(u"F in Default Profile"_s)); // shows the profile and the key
    QCOMPARE(mClicks, 2);
    QCOMPARE(mHub->find<QTabWidget>("mKeyboardTabView")->currentIndex(), keysTabIndex);
    QCOMPARE(mHub->controller->keysController()->selectedCodes(), QList<int>{int(keyF)});
}

QTEST_MAIN(MacrosEndToEndTest)
#include "macrosendtoendtest.moc"
