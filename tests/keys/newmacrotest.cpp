// SPDX-License-Identifier: MIT
// A new macro for a key: recorded, named and assigned on one sheet, or cancelled at each step.
#include "base/daemonprotocol.h"
#include "base/text.h"
#include "macros/macrorecord.h"
#include "platform/buttonarea.h"
#include "platform/distributednotificationcenter.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "tests/keys/keystesting.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

constexpr int macroAssignment = 10;

QVariantMap numbered(const QString &name, int number)
{
    QVariantMap record = macro(name);
    record.insert(SettingsKeys::macroId, number);
    return record;
}

/// Keeps the macros as the daemon does, and hands them over after each change.
class MacroKeeper : public RecordingKeysDelegate
{
public:
    void addMacroWithSettings(const QVariantMap &record) override
    {
        calls << u"add"_s;
        if (refusesToAdd)
            return;
        QVariantMap added = record;
        added.insert(SettingsKeys::macroId, 70);
        macros.append(added);
        handOver();
    }
    void startMacroRecordingMacroIndex(int appendFlag, int macroIndex) override
    {
        calls << u"start %1 %2"_s.arg(appendFlag).arg(macroIndex);
    }
    void stopMacroRecording() override { calls << u"stop"_s; }
    void saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording) override
    {
        calls << u"save %1 %2"_s.arg(macroIndex).arg(isNewRecording);
        if (refusesToSave)
            return;
        QVariantMap saved = macros.at(macroIndex).toMap();
        saved.insert(SettingsKeys::sequence, QVariantMap{{u"Events"_s, recorded}});
        macros[macroIndex] = saved;
        handOver();
    }
    void renameMacroAtIndexWithNewName(int macroIndex, const QString &newName) override
    {
        calls << u"rename %1 %2"_s.arg(macroIndex).arg(newName);
        QVariantMap renamed = macros.at(macroIndex).toMap();
        renamed.insert(SettingsKeys::macroName, newName);
        macros[macroIndex] = renamed;
        handOver();
    }
    void deleteMacroAtIndex(int macroIndex) override
    {
        calls << u"delete %1"_s.arg(macroIndex);
        macros.removeAt(macroIndex);
        handOver();
    }
    void recordButton(int button, bool isDown) override { calls << u"button %1 %2"_s.arg(button).arg(isDown); }
    void beginAction() override { calls << u"begin"_s; }
    void endAction() override { calls << u"end"_s; }
    void report(const StatusReport &report) override
    {
        if (report.event == StatusReport::Event::newMacroKept)
            calls << u"kept "_s + report.subject;
    }
    /// As the hub does after each change.
    void handOver() const
    {
        controller->setMAllMacrosArray(macros);
        controller->updateUISettings();
    }

    KeyboardKeysController *controller = nullptr;
    QVariantList macros{numbered(u"Heal"_s, 3), numbered(u"Burst"_s, 5)};
    QVariantList recorded{MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 4}),
                          MacroRecord::eventRecord({.delayMs = 20, .argument = 4})};
    bool refusesToAdd = false;
    bool refusesToSave = false;
};

void postLines(const QStringList &lines)
{
    DistributedNotificationCenter::defaultCenter().post(DaemonProtocol::macroSequenceNotification,
                                                        {{DaemonProtocol::messagesArray, lines}});
}

} // namespace

class NewMacroTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void recordsNamesAndAssigns();
    void everySelectedKeyGetsIt();
    void keepsTheGivenNameWithoutARequest();
    void nameIsMadeUnique();
    void nameOfAnotherClientStays();
    void refusedMacroOpensNoSheet();
    void showsWhatIsRecorded();
    void emptyRecordingCanBeRepeated();
    void showsWhatAnEmptyRecordingHasLeft();
    void showsWhatARemovedKeyboardHasLeft();
    void cancellingDeletesTheMacro_data();
    void cancellingDeletesTheMacro();
    void followsItsMacroToAnotherRow();
    void endsWithItsMacro();
    void removedKeyboardKeepsTheRecording();
    void returnedKeyboardLetsTheUserRecordAgain();
    void anotherProfileKeepsTheRecording_data();
    void anotherProfileKeepsTheRecording();
    void anotherProfileLeavesNoEmptyMacro();
    void recordingWithoutReplyIsNotDeleted();
    void sameProfileKeepsTheSheet();
    void stoppedRecordingStaysOnTheSheet();
    void keptOnRequest_data();
    void keptOnRequest();
    void keptMacroGetsItsTypedName();
    void captureAreaIsTheRecordingAlone();
    void keysOfTheRecordingPressNoButton();
    void clicksInTheButtonAreaAreRecorded();
    void clicksElsewhereAreNotRecorded();
    void buttonsAreForTheRecordingAlone();
    void drawsTheSheet_data();
    void drawsTheSheet();

private:
    void open();
    /// Activates another profile, as another client, a key or the application in front does.
    void switchProfile();
    void click(const char *button) { mTab->find<QPushButton>(button)->click(); }
    [[nodiscard]] ButtonArea *buttonArea() const { return mTab->find<ButtonArea>("mNewMacroButtonArea"); }
    [[nodiscard]] Sheet *sheet() const { return mTab->find<Sheet>("mNewMacroSheet"); }
    [[nodiscard]] bool isUp() const { return sheet() && sheet()->isUp(); }

    QTemporaryDir mResources;
    MacroKeeper mKeeper;
    std::unique_ptr<Tab> mTab;
};

void NewMacroTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
    qputenv("QUILL_KESTRA_RESOURCES", mResources.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", mResources.path().toLocal8Bit());
}

void NewMacroTest::init()
{
    mKeeper = {};
    mTab = std::make_unique<Tab>(profile(u"P"_s), QVariantList(), mKeeper.macros);
    mKeeper.controller = mTab->controller.get();
    mTab->controller->setMKeysDelegate(&mKeeper);
    mTab->window.show();
    mTab->key("mM1")->click();
}

void NewMacroTest::cleanup()
{
    mTab.reset();
}

void NewMacroTest::open()
{
    QAction *item = mTab->controller->findChild<QAction *>(u"mMakeMacro"_s);
    QVERIFY(mTab->find<PopUpButton>("mAssignFunction")->popUpMenu()->actions().contains(item));
    item->trigger();
}

void NewMacroTest::recordsNamesAndAssigns()
{
    open();
    QVERIFY(isUp());
    QCOMPARE(sheet()->windowTitle(), u"New macro for M1"_s);
    click("mNewMacroRecord");
    mTab->find<QLineEdit>("mNewMacroName")->setText(u"Opening"_s);
    click("mNewMacroAssign");
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.calls, (QStringList{u"add"_s, u"begin"_s, u"start 0 2"_s, u"stop"_s, u"save 2 0"_s,
                                         u"rename 2 Opening"_s, u"updateKeySettings"_s, u"end"_s}));
    QCOMPARE(mKeeper.sentEntry(u"106"_s), entry(macroAssignment, 2, 1));
}

void NewMacroTest::everySelectedKeyGetsIt()
{
    mTab->controller->selectKeys({4, 106});
    open();
    QCOMPARE(sheet()->windowTitle(), u"New macro for M1 and 1 more"_s);
    click("mNewMacroRecord");
    click("mNewMacroAssign");
    QCOMPARE(mKeeper.sentEntry(u"4"_s), entry(macroAssignment, 2, 1));
    QCOMPARE(mKeeper.sentEntry(u"106"_s), entry(macroAssignment, 2, 1));
}

void NewMacroTest::keepsTheGivenNameWithoutARequest()
{
    mKeeper.macros.append(numbered(u"Untitled Macro"_s, 6));
    mKeeper.handOver();
    open();
    click("mNewMacroRecord");
    QCOMPARE(mTab->find<QLineEdit>("mNewMacroName")->text(), u"Untitled Macro(2)"_s);
    mTab->find<QLineEdit>("mNewMacroName")->setText(u"  "_s);
    click("mNewMacroAssign");
    QCOMPARE(mKeeper.calls.filter(u"rename"_s), QStringList());
    QCOMPARE(mKeeper.macros.last().toMap().value(SettingsKeys::macroName), QVariant(u"Untitled Macro(2)"_s));
}

void NewMacroTest::nameIsMadeUnique()
{
    open();
    click("mNewMacroRecord");
    mTab->find<QLineEdit>("mNewMacroName")->setText(u"Heal"_s);
    click("mNewMacroAssign");
    QCOMPARE(mKeeper.calls.filter(u"rename"_s), QStringList{u"rename 2 Heal(2)"_s});
}

void NewMacroTest::nameOfAnotherClientStays()
{
    open();
    click("mNewMacroRecord");
    QVariantMap renamed = mKeeper.macros.last().toMap();
    renamed.insert(SettingsKeys::macroName, u"Elsewhere"_s);
    mKeeper.macros.last() = renamed;
    mKeeper.handOver();
    click("mNewMacroAssign");
    QCOMPARE(mKeeper.calls.filter(u"rename"_s), QStringList());
    QCOMPARE(mKeeper.sentEntry(u"106"_s), entry(macroAssignment, 2, 1));
}

void NewMacroTest::refusedMacroOpensNoSheet()
{
    mKeeper.refusesToAdd = true;
    open();
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.calls, QStringList{u"add"_s});
}

void NewMacroTest::showsWhatIsRecorded()
{
    open();
    const auto *list = mTab->find<QListWidget>("mNewMacroEvents");
    postLines({u"Key Press A"_s, u"0.020 seconds delay\n"_s});
    QTRY_COMPARE(list->count(), 2);
    QCOMPARE(list->item(1)->text(), u"0.020 seconds delay"_s);
    QVERIFY(!mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
    QVERIFY(!mTab->find<QLineEdit>("mNewMacroName")->isEnabled());
    QCOMPARE(mTab->find<QPushButton>("mNewMacroRecord")->text().remove(u'&'), u"Stop"_s);
    click("mNewMacroRecord");
    QVERIFY(mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
    QVERIFY(mTab->find<QLineEdit>("mNewMacroName")->hasFocus());
    QCOMPARE(mTab->find<QLabel>("mNewMacroHint")->text(), u"Name the macro, then assign it."_s);
    // Lines of a later recording, such as that of another client, are not of this macro.
    QObject observer;
    int received = 0;
    DistributedNotificationCenter::defaultCenter().addObserver(
        &observer, DaemonProtocol::macroSequenceNotification,
        [&received](const DistributedNotification &) { ++received; });
    postLines({u"Key Press B"_s});
    QTRY_COMPARE(received, 1);
    QCOMPARE(list->count(), 3); // the stored events
    click("mNewMacroRecord");
    QCOMPARE(list->count(), 0);
}

void NewMacroTest::emptyRecordingCanBeRepeated()
{
    mKeeper.recorded.clear();
    open();
    click("mNewMacroRecord");
    QVERIFY(isUp());
    QVERIFY(!mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
    QCOMPARE(mTab->find<QLabel>("mNewMacroHint")->text(), u"No event was recorded. Click Record to try again."_s);
    mKeeper.calls.clear();
    click("mNewMacroRecord");
    QCOMPARE(mKeeper.calls, QStringList{u"start 0 2"_s});
    mKeeper.recorded = {QVariantMap{{u"command"_s, 1}}};
    click("mNewMacroRecord");
    QVERIFY(mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
}

void NewMacroTest::showsWhatAnEmptyRecordingHasLeft()
{
    open();
    click("mNewMacroRecord");
    const auto *list = mTab->find<QListWidget>("mNewMacroEvents");
    QCOMPARE(list->count(), 3);
    click("mNewMacroRecord");
    QCOMPARE(list->count(), 0);
    click("mNewMacroRecord"); // without a key: the daemon keeps the events of the first recording
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->item(0)->text(), u"Key Press A"_s);
    QCOMPARE(list->item(2)->text(), u"Key Release A"_s);
    QVERIFY(mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
}

void NewMacroTest::showsWhatARemovedKeyboardHasLeft()
{
    open();
    click("mNewMacroRecord");
    click("mNewMacroRecord");
    mTab->controller->keyboardCameBack();
    QCOMPARE(mTab->find<QListWidget>("mNewMacroEvents")->count(), 3);
    QVERIFY(mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
}

void NewMacroTest::cancellingDeletesTheMacro_data()
{
    QTest::addColumn<bool>("isRecorded");
    QTest::addColumn<bool>("byEscape");
    QTest::newRow("while recording") << false << false;
    QTest::newRow("after the recording") << true << false;
    QTest::newRow("after the recording, by Escape") << true << true;
}

void NewMacroTest::cancellingDeletesTheMacro()
{
    QFETCH(bool, isRecorded);
    QFETCH(bool, byEscape);
    const QVariantList before = mKeeper.macros;
    open();
    if (isRecorded)
        click("mNewMacroRecord");
    mKeeper.calls.clear();
    if (byEscape)
        QTest::keyClick(sheet(), Qt::Key_Escape);
    else
        click("mNewMacroCancel");
    QVERIFY(!isUp());
    QVERIFY(!mTab->controller->captureArea());
    // The deletion of recorded events can be undone alone.
    QCOMPARE(mKeeper.calls,
             isRecorded ? (QStringList{u"end"_s, u"delete 2"_s}) : (QStringList{u"stop"_s, u"delete 2"_s, u"end"_s}));
    QCOMPARE(mKeeper.macros, before);
    // The next one is a new macro.
    open();
    QVERIFY(isUp());
    QCOMPARE(mKeeper.macros.size(), 3);
}

void NewMacroTest::followsItsMacroToAnotherRow()
{
    open();
    mKeeper.macros.move(2, 0);
    mKeeper.handOver();
    click("mNewMacroRecord");
    click("mNewMacroAssign");
    QVERIFY(mKeeper.calls.contains(u"save 0 0"_s));
    QCOMPARE(mKeeper.sentEntry(u"106"_s), entry(macroAssignment, 0, 1));
}

void NewMacroTest::endsWithItsMacro()
{
    open();
    mKeeper.calls.clear();
    mKeeper.macros.removeLast();
    mKeeper.handOver();
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.calls, QStringList{u"stop"_s}); // the keys go to the computer again
    QVERIFY(mKeeper.sent.isEmpty());
}

void NewMacroTest::removedKeyboardKeepsTheRecording()
{
    open();
    mKeeper.calls.clear();
    mTab->controller->setControlsState(false);
    QVERIFY(!isUp());
    QVERIFY(!mTab->controller->captureArea());
    QCOMPARE(mKeeper.calls, (QStringList{u"save 2 0"_s, u"end"_s, u"kept Untitled Macro"_s}));
    mKeeper.calls.clear();
    open();
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.calls, QStringList());
}

void NewMacroTest::returnedKeyboardLetsTheUserRecordAgain()
{
    open();
    mKeeper.calls.clear();
    mTab->controller->keyboardCameBack();
    QVERIFY(isUp());
    QVERIFY(!mTab->controller->captureArea());
    QVERIFY(!mTab->find<QPushButton>("mNewMacroAssign")->isEnabled());
    click("mNewMacroRecord");
    QCOMPARE(mKeeper.calls, QStringList{u"start 0 2"_s});
}

void NewMacroTest::switchProfile()
{
    mTab->controller->setMKeysCurrentProfileDict(profile(u"Other"_s));
    mTab->controller->setMAllProfilesArray({profile(u"P"_s), profile(u"Other"_s)});
    mTab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 1}});
    mTab->controller->updateUISettings();
}

void NewMacroTest::anotherProfileKeepsTheRecording_data()
{
    QTest::addColumn<bool>("isRecorded");
    QTest::newRow("while recording") << false;
    QTest::newRow("after the recording") << true;
}

void NewMacroTest::anotherProfileKeepsTheRecording()
{
    QFETCH(bool, isRecorded);
    open();
    if (isRecorded)
        click("mNewMacroRecord");
    mKeeper.calls.clear();
    switchProfile();
    QVERIFY(!isUp());
    QVERIFY(!mTab->controller->captureArea());
    const QStringList kept{u"end"_s, u"kept Untitled Macro"_s};
    QCOMPARE(mKeeper.calls, isRecorded ? kept : QStringList({u"stop"_s, u"save 2 0"_s}) + kept);
    QCOMPARE(MacroRecord::events(mKeeper.macros.value(2).toMap()), mKeeper.recorded);
    QVERIFY(mKeeper.sent.isEmpty()); // the other profile has not changed
    open();
    QVERIFY(isUp());
}

void NewMacroTest::anotherProfileLeavesNoEmptyMacro()
{
    mKeeper.recorded.clear();
    const QVariantList before = mKeeper.macros;
    open();
    switchProfile();
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.macros, before);
    QCOMPARE(mKeeper.calls.last(), u"end"_s);
}

void NewMacroTest::recordingWithoutReplyIsNotDeleted()
{
    mKeeper.refusesToSave = true;
    open();
    postLines({u"Key Press A"_s});
    QTRY_COMPARE(mTab->find<QListWidget>("mNewMacroEvents")->count(), 1);
    switchProfile();
    QVERIFY(!isUp());
    // The daemon may store the recording later.
    QCOMPARE(mKeeper.calls.filter(u"delete"_s), QStringList());
    QCOMPARE(mKeeper.calls.filter(u"kept"_s), QStringList()); // the status line has the failure
}

void NewMacroTest::sameProfileKeepsTheSheet()
{
    open();
    mTab->controller->updateUISettings();
    QVERIFY(isUp());
    QVERIFY(mTab->controller->captureArea());
    click("mNewMacroRecord");
    mTab->controller->updateUISettings();
    QVERIFY(isUp());
}

// The user has gone to another program, and what is typed there must not come into the macro.
void NewMacroTest::stoppedRecordingStaysOnTheSheet()
{
    mTab->controller->stopNewMacroRecording();
    QCOMPARE(mKeeper.calls, QStringList());
    open();
    mTab->controller->stopNewMacroRecording();
    QVERIFY(isUp());
    QCOMPARE(mTab->controller->captureArea(), nullptr);
    mTab->controller->stopNewMacroRecording();
    QCOMPARE(mKeeper.calls, (QStringList{u"add"_s, u"begin"_s, u"start 0 2"_s, u"stop"_s, u"save 2 0"_s}));
    click("mNewMacroAssign");
    QCOMPARE(mKeeper.sentEntry(u"106"_s), entry(macroAssignment, 2, 1));
}

void NewMacroTest::keptOnRequest_data()
{
    QTest::addColumn<bool>("isRecorded");
    QTest::addColumn<QStringList>("last");
    QTest::newRow("recorded") << true << QStringList{u"stop"_s, u"save 2 0"_s, u"end"_s, u"kept Untitled Macro"_s};
    QTest::newRow("empty") << false << QStringList{u"stop"_s, u"save 2 0"_s, u"delete 2"_s, u"end"_s};
}

void NewMacroTest::keptOnRequest()
{
    QFETCH(bool, isRecorded);
    QFETCH(QStringList, last);
    if (!isRecorded)
        mKeeper.recorded.clear();
    open();
    mTab->controller->keepNewMacro();
    QVERIFY(!isUp());
    QCOMPARE(mKeeper.calls.last(last.size()), last);
}

void NewMacroTest::keptMacroGetsItsTypedName()
{
    open();
    click("mNewMacroRecord");
    mTab->find<QLineEdit>("mNewMacroName")->setText(u"Heal"_s);
    mKeeper.calls.clear();
    switchProfile();
    QCOMPARE(mKeeper.calls, (QStringList{u"rename 2 Heal(2)"_s, u"end"_s, u"kept Heal(2)"_s}));
}

void NewMacroTest::captureAreaIsTheRecordingAlone()
{
    QSignalSpy changes(mTab->controller.get(), &KeyboardKeysController::captureAreaChanged);
    QVERIFY(!mTab->controller->captureArea());
    open();
    QCOMPARE(mTab->controller->captureArea(), mTab->find<QWidget>("mNewMacroArea"));
    // Escape belongs to the recording: an area that is a sheet would be cancelled by it.
    QVERIFY(!qobject_cast<Sheet *>(mTab->controller->captureArea()));
    QVERIFY(!changes.isEmpty());
    click("mNewMacroRecord");
    QVERIFY(!mTab->controller->captureArea());
}

void NewMacroTest::keysOfTheRecordingPressNoButton()
{
    open();
    mKeeper.calls.clear();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter})
        QTest::keyClick(sheet(), key);
    QVERIFY(isUp());
    QCOMPARE(mKeeper.calls, QStringList());
}

void NewMacroTest::clicksInTheButtonAreaAreRecorded()
{
    open();
    QVERIFY(QTest::qWaitForWindowActive(sheet()));
    QVERIFY(!buttonArea()->text().isEmpty());
    mKeeper.calls.clear();
    QTest::mouseClick(buttonArea(), Qt::RightButton);
    QTest::mouseClick(buttonArea(), Qt::ForwardButton);
    QCOMPARE(mKeeper.calls, (QStringList{u"button 2 1"_s, u"button 2 0"_s, u"button 5 1"_s, u"button 5 0"_s}));
    QCOMPARE(QApplication::focusWidget(), mTab->find<QWidget>("mNewMacroArea")); // it still takes the keys
}

void NewMacroTest::clicksElsewhereAreNotRecorded()
{
    open();
    QVERIFY(QTest::qWaitForWindowActive(sheet()));
    mKeeper.calls.clear();
    for (QWidget *widget : sheet()->findChildren<QWidget *>()) {
        if (widget != buttonArea() && widget->isVisible())
            QTest::mouseClick(widget, Qt::RightButton);
    }
    QCOMPARE(mKeeper.calls, QStringList());
    QTest::mouseClick(mTab->find<QPushButton>("mNewMacroRecord"), Qt::LeftButton);
    QCOMPARE(mKeeper.calls, (QStringList{u"stop"_s, u"save 2 0"_s}));
}

void NewMacroTest::buttonsAreForTheRecordingAlone()
{
    open();
    QVERIFY(QTest::qWaitForWindowActive(sheet()));
    const QSize size = sheet()->size();
    click("mNewMacroRecord");
    QVERIFY(!buttonArea()->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(sheet()->size(), size);
    click("mNewMacroRecord");
    QVERIFY(buttonArea()->isVisible());
    QTest::mousePress(buttonArea(), Qt::LeftButton);
    mKeeper.calls.clear();
    click("mNewMacroCancel"); // the daemon releases the button when the recording ends
    QCOMPARE(mKeeper.calls.filter(u"button"_s), QStringList());
}

void NewMacroTest::drawsTheSheet_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<bool>("isRecorded");
    for (const bool isDark : {false, true}) {
        const char *look = isDark ? "dark" : "light";
        QTest::addRow("recording-%s", look) << isDark << false;
        QTest::addRow("recorded-%s", look) << isDark << true;
    }
}

/// For a person to inspect. Checks that nothing is cut off.
void NewMacroTest::drawsTheSheet()
{
    QFETCH(bool, isDark);
    QFETCH(bool, isRecorded);
    wearPalette(isDark);
    open();
    postLines({u"Key Press A"_s, u"0.020 seconds delay\n"_s, u"Key Release A"_s});
    QTRY_COMPARE(mTab->find<QListWidget>("mNewMacroEvents")->count(), 3);
    if (isRecorded)
        click("mNewMacroRecord");
    QVERIFY(QTest::qWaitForWindowExposed(sheet()));
    QCOMPARE(cutButtons(sheet()), QStringList());
    QVERIFY(savePicture(sheet()->grab().toImage(), u"new-macro"_s));
}

QTEST_MAIN(NewMacroTest)
#include "newmacrotest.moc"
