// SPDX-License-Identifier: MIT
// Undo and redo in the real window with the real daemon: what a user changes goes back and comes again, and the window
// takes back nothing else than it shows.
#include "app/historycontroller.h"
#include "base/historykeys.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/historyentries.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keybutton.h"
#include "keys/keymapping.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <functional>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

enum Tab { keysTab, profilesTab, macrosTab, lightingTab };

constexpr int keyA = 4, keyB = 5;
constexpr int disablePosition = 5;

using Change = void (*)(KeyboardMainController &hub);

QVariantMap withKeys(const QVariantMap &profile, const QList<int> &codes)
{
    QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
    for (const int code : codes)
        keys = KeyMappings::withEntry(keys, QString::number(code), KeyMappings::Assignment::disabled, 0, 0);
    return {{SettingsKeys::keys, keys}};
}

QVariantMap macroOf(const QString &name)
{
    QVariantList events;
    for (const int command : {MacroRecord::keyDown, MacroRecord::keyUp})
        events += MacroRecord::eventRecord({.command = command, .delayMs = 20, .argument = keyA});
    return MacroRecord::withEvents({{SettingsKeys::macroName, name}}, events);
}

} // namespace

class HistoryEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void buttonHasNothingToUndoAtFirst();
    void buttonNamesTheLatestChange();
    void buttonStaysNarrow();
    void everyChangeGoesBackAndComesAgain_data();
    void everyChangeGoesBackAndComesAgain();
    void selectionFollowsTheKeys();
    void selectionFollowsTheMacro();
    void shortcutsWorkInTheTabThatAnUndoOpens_data();
    void shortcutsWorkInTheTabThatAnUndoOpens();
    void typedSearchKeepsTheShortcuts();
    void shortcutsComeBeforeTheTables_data();
    void shortcutsComeBeforeTheTables();
    void lightOfAnotherProfileIsFoundThere();
    void stepsBackThroughSeveralChanges();
    void takesBackOnlyWhatItShows();
    void refusalOfTheDaemonIsReported();
    void nameEditorKeepsTheShortcuts();
    void sheetKeepsTheShortcuts();
    void recordingKeepsTheShortcuts();
    void takesBackTheChangeOfAnotherClient();
    void followsAnUndoByAnotherClient_data();
    void followsAnUndoByAnotherClient();
    void statusLineOffersToUndoALoss_data();
    void statusLineOffersToUndoALoss();
    void statusLineOffersToUndoARecording();
    void statusLineOffersNothingElse_data();
    void statusLineOffersNothingElse();
    void statusLineOffersNothingAfterANewDaemon();
    void restsWithoutADaemon();

private:
    [[nodiscard]] QToolButton *button() const { return mHub->find<QToolButton>("mUndoButton"); }
    [[nodiscard]] QString status() const { return mHub->find<StatusLine>("mStatusLine")->text(); }
    [[nodiscard]] QTabWidget *tabs() const { return mHub->find<QTabWidget>("mKeyboardTabView"); }
    [[nodiscard]] KeyboardMainController &hub() const { return *mHub->controller; }
    /// The document in the window, without the last macro identifier, which never goes back.
    [[nodiscard]] QVariantMap shownSettings() const;
    /// The document of the daemon, in the same way.
    [[nodiscard]] QVariantMap keptSettings();
    void press(Qt::KeyboardModifiers modifiers, QWidget *focus = nullptr) const;
    void undo() const { press(Qt::ControlModifier); }
    void redo() const { press(Qt::ControlModifier | Qt::ShiftModifier); }
    /// Waits until the button offers to undo the change with these words.
    [[nodiscard]] bool offers(const QString &words) const;
    void disableKey(int code) const;
    /// A change by another client.
    void disableElsewhere(int code);
    /// Another client takes back the entry that is next.
    static void undoElsewhere();
    /// Opens the editor of a name, a sheet or a recording, lets `change` take back a change of another client, and
    /// waits until the window shows that.
    void followWhileOpen(const QString &open, const std::function<void()> &change, bool &isStillOpen);

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
    QVariantMap mFirstProfile;
};

void HistoryEndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    QVERIFY(mHub->openInFront());
}

void HistoryEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

QVariantMap HistoryEndToEndTest::shownSettings() const
{
    QVariantMap device = hub().deviceSettingsDict();
    device.remove(SettingsKeys::lastMacroId);
    return {{SettingsKeys::profiles, hub().profilesArray()},
            {SettingsKeys::macros, hub().macrosArray()},
            {SettingsKeys::deviceSettings, device}};
}

QVariantMap HistoryEndToEndTest::keptSettings()
{
    const auto reply = mDaemon->request(Command::readSettings);
    if (!reply)
        return {};
    const QVariantMap all = reply->values.value(DaemonProtocol::allDevSettings).toMap();
    QVariantMap device = all.value(SettingsKeys::deviceSettings).toMap();
    device.remove(SettingsKeys::lastMacroId);
    return {{SettingsKeys::profiles, all.value(SettingsKeys::profiles)},
            {SettingsKeys::macros, all.value(SettingsKeys::macros)},
            {SettingsKeys::deviceSettings, device}};
}

void HistoryEndToEndTest::press(Qt::KeyboardModifiers modifiers, QWidget *focus) const
{
    QTest::keyClick(focus ? focus : tabs()->tabBar(), Qt::Key_Z, modifiers);
}

bool HistoryEndToEndTest::offers(const QString &words) const
{
    const QString text = u"Undo: "_s + words;
    return QTest::qWaitFor([&] { return button()->accessibleName() == text && button()->isEnabled(); });
}

void HistoryEndToEndTest::disableKey(int code) const
{
    hub().updateKeySettings(withKeys(hub().currentProfileDict(), {code}));
}

void HistoryEndToEndTest::disableElsewhere(int code)
{
    const QVariantMap profile = keptSettings().value(SettingsKeys::profiles).toList().value(0).toMap();
    QVERIFY(mDaemon->request(
        Command::updateProfile,
        {{DaemonProtocol::profileId, 0}, {DaemonProtocol::deviceSettingsDictionary, withKeys(profile, {code})}}));
}

void HistoryEndToEndTest::undoElsewhere()
{
    const auto call = [](const QString &method, const QVariantList &arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), HistoryKeys::objectPath,
                                           HistoryKeys::interfaceName, method);
        message.setArguments(arguments);
        return QDBusConnection::sessionBus().call(message);
    };
    const QList<QVariantMap> next = historyEntries(call(u"Next"_s, {}).arguments().value(0));
    QVERIFY(!next.isEmpty());
    const QDBusMessage reply = call(u"Undo"_s, {next.first().value(HistoryKeys::id)});
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
}

void HistoryEndToEndTest::buttonHasNothingToUndoAtFirst()
{
    QVERIFY(!button()->isEnabled());
    QCOMPARE(button()->text(), u"Undo"_s);
    QCOMPARE(button()->accessibleName(), u"Undo"_s);
    QVERIFY(button()->focusPolicy() & Qt::TabFocus);
    const QVariantMap before = shownSettings();
    undo();
    redo();
    QCOMPARE(keptSettings(), before);
}

void HistoryEndToEndTest::buttonNamesTheLatestChange()
{
    mHub->find<KeyButton>("mA")->click();
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(disablePosition)->trigger();
    QVERIFY(offers(u"A: Disable key"_s));
    QCOMPARE(button()->text(), u"Undo: A: Disable key"_s);
    QTest::mouseClick(button(), Qt::LeftButton);
    QTRY_COMPARE(status(), u"Undone: A: Disable key"_s);
    QTRY_COMPARE(button()->accessibleName(), u"Undo"_s);
    QTRY_VERIFY(!KeyMappings::entryForKey(hub().currentProfileDict(), keyA).isMapped());
}

void HistoryEndToEndTest::buttonStaysNarrow()
{
    const int width = mHub->window->width();
    hub().addMacroWithSettings(macroOf(u"Fish & Chips "_s + QString(80, u'x')));
    const QString words = u"Undo: Macro Fish & Chips "_s + QString(80, u'x') + u" added"_s;
    QTRY_COMPARE(button()->accessibleName(), words);
    QVERIFY(button()->text().startsWith(u"Undo: Macro Fish && Chips"_s));
    QVERIFY(button()->text().endsWith(u'…'));
    QVERIFY(button()->toolTip().contains(words.toHtmlEscaped()));
    QVERIFY(button()->sizeHint().width() < mHub->window->width() / 3);
    QCOMPARE(mHub->window->width(), width);
}

void HistoryEndToEndTest::everyChangeGoesBackAndComesAgain_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("tab");
    const auto row = [](const char *name, Change change, const QString &words, int tab) {
        QTest::newRow(name) << change << words << tab;
    };
    row(
        "key", [](KeyboardMainController &hub) { hub.updateKeySettings(withKeys(hub.currentProfileDict(), {keyA})); },
        u"A: Disable key"_s, keysTab);
    row(
        "keys",
        [](KeyboardMainController &hub) {
            hub.updateKeySettings(withKeys(hub.currentProfileDict(), {keyA, keyB}));
        },
        u"Profile Default Profile: 2 keys assigned"_s, keysTab);
    row(
        "profile added",
        [](KeyboardMainController &hub) {
            QVariantMap profile = hub.currentProfileDict();
            profile.insert(SettingsKeys::profileName, u"Game"_s);
            hub.addNewProfileWithSettings(profile);
        },
        u"Profile Game added"_s, profilesTab);
    row(
        "profile deleted", [](KeyboardMainController &hub) { hub.deleteProfileWithProfileID(1); },
        u"Profile Work deleted"_s, profilesTab);
    row(
        "profile renamed",
        [](KeyboardMainController &hub) {
            hub.renameProfileWithProfileIDAndSettings(0, {{SettingsKeys::profileName, u"Home"_s}});
        },
        u"Profile Default Profile renamed to Home"_s, profilesTab);
    row(
        "profile chosen", [](KeyboardMainController &hub) { hub.switchProfileWithID(1); }, u"Profile Work chosen"_s,
        profilesTab);
    row(
        "brightness",
        [](KeyboardMainController &hub) {
            hub.updateValueForSetting({{SettingsKeys::brightnessKbNormal, 2}});
        },
        u"Profile Default Profile: brightness 2"_s, lightingTab);
    row(
        "macro added", [](KeyboardMainController &hub) { hub.addMacroWithSettings(macroOf(u"New"_s)); },
        u"Macro New added"_s, macrosTab);
    row(
        "macro renamed", [](KeyboardMainController &hub) { hub.renameMacroAtIndexWithNewName(0, u"Heal all"_s); },
        u"Macro Heal renamed to Heal all"_s, macrosTab);
    row(
        "macro deleted", [](KeyboardMainController &hub) { hub.deleteMacroAtIndex(0); }, u"Macro Heal deleted"_s,
        macrosTab);
    row(
        "delays", [](KeyboardMainController &hub) { hub.setAllEventsDelayForMacroAtIndexHasNoDelay(0, 0, true); },
        u"Macro Heal: 2 delays set"_s, macrosTab);
    row(
        "event removed", [](KeyboardMainController &hub) { hub.removeEventAtIndexForMacroAtIndex(0, 0); },
        u"Macro Heal: 1 event removed"_s, macrosTab);
    row(
        "events removed", [](KeyboardMainController &hub) { hub.removeAllEventsForMacroAtIndex(0); },
        u"Macro Heal: 2 events removed"_s, macrosTab);
}

void HistoryEndToEndTest::everyChangeGoesBackAndComesAgain()
{
    QFETCH(Change, change);
    QFETCH(QString, words);
    QFETCH(int, tab);
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVariantMap work = hub().currentProfileDict();
    work.insert(SettingsKeys::profileName, u"Work"_s);
    hub().addNewProfileWithSettings(work);
    hub().switchProfileWithID(0);
    const QVariantMap before = keptSettings();

    change(hub());
    const QVariantMap after = keptSettings();
    QVERIFY(after != before);
    QVERIFY2(offers(words), qPrintable(button()->accessibleName()));
    tabs()->setCurrentIndex(tab == keysTab ? macrosTab : keysTab);

    undo();
    QTRY_COMPARE(status(), u"Undone: "_s + words);
    QTRY_COMPARE(shownSettings(), before);
    QCOMPARE(keptSettings(), before);
    QTRY_COMPARE(tabs()->currentIndex(), tab);

    tabs()->setCurrentIndex(tab == keysTab ? macrosTab : keysTab);
    QTRY_VERIFY(button()->accessibleName() != u"Undo: "_s + words);
    redo();
    QTRY_COMPARE(status(), u"Redone: "_s + words);
    QTRY_COMPARE(shownSettings(), after);
    QCOMPARE(keptSettings(), after);
    QTRY_COMPARE(tabs()->currentIndex(), tab);
}

void HistoryEndToEndTest::selectionFollowsTheKeys()
{
    hub().updateKeySettings(withKeys(hub().currentProfileDict(), {keyA, keyB}));
    QVERIFY(offers(u"Profile Default Profile: 2 keys assigned"_s));
    mHub->find<KeyButton>("mQ")->click();
    undo();
    QTRY_COMPARE(hub().keysController()->selectedCodes().size(), 2);
    QVERIFY(hub().keysController()->selectedCodes().contains(keyA));
    QVERIFY(hub().keysController()->selectedCodes().contains(keyB));
}

void HistoryEndToEndTest::selectionFollowsTheMacro()
{
    for (const auto &name : {u"Heal"_s, u"Burst"_s, u"Run"_s})
        hub().addMacroWithSettings(macroOf(name));
    tabs()->setCurrentIndex(macrosTab);
    auto *list = mHub->find<TableView>("mMacroTableView");
    list->selectRow(1);
    hub().removeAllEventsForMacroAtIndex(1);
    QVERIFY(offers(u"Macro Burst: 2 events removed"_s));
    list->selectRow(2);
    undo();
    QTRY_COMPARE(list->selectedRow(), 1);
    QTRY_COMPARE(hub().macrosController()->macroDetailsArray().size(), 3); // two events and a delay
}

void HistoryEndToEndTest::shortcutsWorkInTheTabThatAnUndoOpens_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<QString>("words");
    QTest::newRow("macros") << int(keysTab) << u"mF"_s << u"Macro Heal added"_s;
    QTest::newRow("keys") << int(macrosTab) << u"mMacroTableView"_s << u"A: Disable key"_s;
}

// The focus is where the window has put it: each key goes there.
void HistoryEndToEndTest::shortcutsWorkInTheTabThatAnUndoOpens()
{
    QFETCH(int, tab);
    QFETCH(QString, focus);
    QFETCH(QString, words);
    if (tab == keysTab) {
        hub().addMacroWithSettings(macroOf(u"Heal"_s));
        hub().addMacroWithSettings(macroOf(u"Burst"_s));
    } else {
        disableKey(keyA);
        disableKey(keyB);
    }
    const QString later = tab == keysTab ? u"Macro Burst added"_s : u"B: Disable key"_s;
    QVERIFY(offers(later));
    tabs()->setCurrentIndex(tab);
    auto *focused = mHub->window->findChild<QWidget *>(focus);
    focused->setFocus();
    QCOMPARE(QApplication::focusWidget(), focused);
    press(Qt::ControlModifier, QApplication::focusWidget());
    QTRY_COMPARE(status(), u"Undone: "_s + later);
    QTRY_VERIFY(tabs()->currentIndex() != tab);
    QVERIFY(offers(words));
    press(Qt::ControlModifier, QApplication::focusWidget());
    QTRY_COMPARE(status(), u"Undone: "_s + words);
    press(Qt::ControlModifier | Qt::ShiftModifier, QApplication::focusWidget());
    QTRY_COMPARE(status(), u"Redone: "_s + words);
}

void HistoryEndToEndTest::typedSearchKeepsTheShortcuts()
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    tabs()->setCurrentIndex(macrosTab);
    auto *search = mHub->find<QLineEdit>("mMacroSearch");
    search->setFocus();
    QTest::keyClicks(search, u"He"_s);
    const QVariantMap before = keptSettings();
    press(Qt::ControlModifier, search);
    QCOMPARE(search->text(), QString());
    press(Qt::ControlModifier, search); // there is no more to take back in the field
    QCOMPARE(search->text(), QString());
    press(Qt::ControlModifier | Qt::ShiftModifier, search);
    QCOMPARE(search->text(), u"He"_s);
    press(Qt::ControlModifier | Qt::ShiftModifier, search);
    QCOMPARE(search->text(), u"He"_s);
    QCOMPARE(keptSettings(), before);
    QVERIFY(offers(u"Macro Heal added"_s));
}

void HistoryEndToEndTest::shortcutsComeBeforeTheTables_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("table");
    QTest::newRow("profiles") << int(profilesTab) << u"mProfilesTableView"_s;
    QTest::newRow("macros") << int(macrosTab) << u"mMacroTableView"_s;
    QTest::newRow("events") << int(macrosTab) << u"mMacroDetailsTableView"_s;
}

void HistoryEndToEndTest::shortcutsComeBeforeTheTables()
{
    QFETCH(int, tab);
    QFETCH(QString, table);
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    disableKey(keyA);
    QVERIFY(offers(u"A: Disable key"_s));
    tabs()->setCurrentIndex(tab);
    if (tab == macrosTab)
        mHub->find<TableView>("mMacroTableView")->selectRow(0);
    auto *focus = mHub->window->findChild<TableView *>(table);
    focus->setFocus();
    QVERIFY(focus->hasFocus());
    press(Qt::ControlModifier, focus);
    QTRY_COMPARE(status(), u"Undone: A: Disable key"_s);
    QVERIFY(offers(u"Macro Heal added"_s));
    tabs()->setCurrentIndex(tab);
    focus->setFocus();
    press(Qt::ControlModifier | Qt::ShiftModifier, focus);
    QTRY_COMPARE(status(), u"Redone: A: Disable key"_s);
}

void HistoryEndToEndTest::lightOfAnotherProfileIsFoundThere()
{
    hub().addInactiveProfile({{SettingsKeys::profileName, u"Work"_s}});
    for (const int profile : {0, 1}) {
        QVERIFY(mDaemon->request(Command::updateProfile, {{DaemonProtocol::profileId, profile},
                                                          {DaemonProtocol::deviceSettingsDictionary,
                                                           QVariantMap{{SettingsKeys::brightnessKbNormal, 1}}}}));
        const QString name = profile == 0 ? u"Default Profile"_s : u"Work"_s;
        QTRY_VERIFY(button()->isEnabled() && button()->accessibleName().contains(name + u":"_s));
        tabs()->setCurrentIndex(keysTab);
        undo();
        QTRY_COMPARE(tabs()->currentIndex(), profile == 0 ? int(lightingTab) : int(profilesTab));
    }
}

void HistoryEndToEndTest::stepsBackThroughSeveralChanges()
{
    const QVariantMap before = keptSettings();
    disableKey(keyA);
    disableKey(keyB);
    QVERIFY(offers(u"B: Disable key"_s));
    undo();
    QVERIFY(offers(u"A: Disable key"_s));
    undo();
    QTRY_VERIFY(!button()->isEnabled());
    QTRY_COMPARE(shownSettings(), before);
    QCOMPARE(keptSettings(), before);
}

void HistoryEndToEndTest::takesBackOnlyWhatItShows()
{
    disableKey(keyA);
    QVERIFY(offers(u"A: Disable key"_s));
    QTest::mousePress(button(), Qt::LeftButton);
    disableElsewhere(keyB);
    QVERIFY(offers(u"B: Disable key"_s));
    const QVariantMap both = keptSettings();
    QTest::mouseRelease(button(), Qt::LeftButton);
    QTRY_VERIFY(status().startsWith(u"Not undone: A: Disable key."_s));
    QVERIFY(status().contains(u"another change comes first now"_s));
    QCOMPARE(keptSettings(), both);
    QVERIFY(offers(u"B: Disable key"_s));
}

void HistoryEndToEndTest::refusalOfTheDaemonIsReported()
{
    disableKey(keyA);
    QVERIFY(offers(u"A: Disable key"_s));
    mDaemon->kill();
    undo();
    // The bus may report first that the daemon is gone, and then there is nothing to undo.
    QTRY_VERIFY(status().startsWith(u"Not undone: A: Disable key."_s) || !button()->isEnabled());
    QTRY_VERIFY(!button()->isEnabled());
}

void HistoryEndToEndTest::nameEditorKeepsTheShortcuts()
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    tabs()->setCurrentIndex(macrosTab);
    auto *list = mHub->find<TableView>("mMacroTableView");
    list->selectRow(0);
    list->setFocus();
    list->editColumnRow(0, 0, true);
    auto *editor = list->findChild<QLineEdit *>(u"cellEditor"_s);
    QVERIFY(editor);
    const QVariantMap before = keptSettings();
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(list->editedRow(), 0);
    QCOMPARE(keptSettings(), before);
    QVERIFY(offers(u"Macro Heal added"_s));
}

void HistoryEndToEndTest::sheetKeepsTheShortcuts()
{
    disableKey(keyA);
    QVERIFY(offers(u"A: Disable key"_s));
    mHub->find<QToolButton>("mKeyboardButton")->click();
    auto *sheet = mHub->find<Sheet>("mKeyboardChooser");
    QVERIFY(sheet && sheet->isUp());
    QTRY_COMPARE(QApplication::activeWindow(), sheet);
    const QVariantMap before = keptSettings();
    QTest::keyClick(sheet->focusWidget(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(keptSettings(), before);
    sheet->reject();
    mHub->window->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), mHub->window.get());
    undo();
    QTRY_COMPARE(status(), u"Undone: A: Disable key"_s);
}

void HistoryEndToEndTest::recordingKeepsTheShortcuts()
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    tabs()->setCurrentIndex(macrosTab);
    auto *list = mHub->find<TableView>("mMacroTableView");
    list->selectRow(0);
    mHub->find<QPushButton>("mRecordMacroDetails")->click();
    QVERIFY(hub().macrosController()->isRecording() || hub().macrosController()->isAppendMacro());
    QVERIFY(!button()->isEnabled());
    const QVariantMap before = keptSettings();
    press(Qt::ControlModifier, list);
    QCOMPARE(keptSettings(), before);
    hub().macrosController()->stopAllMacroRecording();
    QTRY_VERIFY(button()->isEnabled());
}

void HistoryEndToEndTest::takesBackTheChangeOfAnotherClient()
{
    const QVariantMap before = keptSettings();
    disableElsewhere(keyB);
    QVERIFY(offers(u"B: Disable key"_s));
    QTest::mouseClick(button(), Qt::LeftButton);
    QTRY_COMPARE(status(), u"Undone: B: Disable key"_s);
    QTRY_COMPARE(shownSettings(), before);
}

void HistoryEndToEndTest::followsAnUndoByAnotherClient_data()
{
    QTest::addColumn<QString>("open");
    for (const char *open : {"name", "sheet", "recording"})
        QTest::newRow(open) << QString::fromLatin1(open);
}

void HistoryEndToEndTest::followsAnUndoByAnotherClient()
{
    QFETCH(QString, open);
    bool isOpenAfterUndo = false;
    followWhileOpen(open, undoElsewhere, isOpenAfterUndo);
    QVERIFY(!QTest::currentTestFailed());
    cleanup();
    init();
    bool isOpenAfterChange = false;
    const auto changeBack = [this] {
        QVERIFY(mDaemon->request(Command::updateProfile, {{DaemonProtocol::profileId, 0},
                                                          {DaemonProtocol::deviceSettingsDictionary, mFirstProfile}}));
    };
    followWhileOpen(open, changeBack, isOpenAfterChange);
    QCOMPARE(isOpenAfterUndo, isOpenAfterChange);
}

void HistoryEndToEndTest::followWhileOpen(const QString &open, const std::function<void()> &change, bool &isStillOpen)
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    const QVariantMap before = keptSettings();
    mFirstProfile = before.value(SettingsKeys::profiles).toList().value(0).toMap();
    disableElsewhere(keyB);
    QVERIFY(offers(u"B: Disable key"_s));
    tabs()->setCurrentIndex(open == "sheet"_L1 ? keysTab : macrosTab);
    auto *list = mHub->find<TableView>("mMacroTableView");
    auto *sheet = mHub->find<Sheet>("mSingleKeyWindow");
    const auto isOpen = [&] {
        if (open == "sheet"_L1)
            return sheet->isUp();
        if (open == "name"_L1)
            return list->editedRow() == 0;
        return hub().macrosController()->isRecording() || hub().macrosController()->isAppendMacro();
    };
    if (open == "sheet"_L1) {
        QTest::mouseClick(mHub->find<KeyButton>("mA"), Qt::LeftButton);
        mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(KeyMappings::singleKeyPosition)->trigger();
    } else {
        list->selectRow(0);
        if (open == "name"_L1)
            list->editColumnRow(0, 0, true);
        else
            mHub->find<QPushButton>("mRecordMacroDetails")->click();
    }
    QVERIFY(isOpen());
    change();
    QTRY_COMPARE(shownSettings(), before);
    QCOMPARE(keptSettings(), before);
    isStillOpen = isOpen();
    qInfo("%s: %s", qPrintable(open), isStillOpen ? "stays open" : "is closed");
    hub().macrosController()->stopAllMacroRecording();
}

void HistoryEndToEndTest::statusLineOffersToUndoALoss_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, Change change, const QString &words) {
        QTest::newRow(name) << change << words;
    };
    row(
        "an event", [](KeyboardMainController &hub) { hub.removeEventAtIndexForMacroAtIndex(0, 0); },
        u"Macro Heal: 1 event removed"_s);
    row(
        "all events", [](KeyboardMainController &hub) { hub.removeAllEventsForMacroAtIndex(0); },
        u"Macro Heal: 2 events removed"_s);
    row(
        "no delay", [](KeyboardMainController &hub) { hub.setAllEventsDelayForMacroAtIndexHasNoDelay(0, 0, true); },
        u"Macro Heal: 2 delays set"_s);
    row(
        "macro", [](KeyboardMainController &hub) { hub.deleteMacroAtIndex(0); }, u"Macro Heal deleted"_s);
    row(
        "profile",
        [](KeyboardMainController &hub) {
            hub.addInactiveProfile({{SettingsKeys::profileName, u"Work"_s}});
            hub.deleteProfileWithProfileID(1);
        },
        u"Profile Work deleted"_s);
    row(
        "factory settings",
        [](KeyboardMainController &hub) { hub.profilesController()->restoreProfileToDefaultSettings(); },
        u"Profile Default Profile changed"_s);
}

void HistoryEndToEndTest::statusLineOffersToUndoALoss()
{
    QFETCH(Change, change);
    QFETCH(QString, words);
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVariantMap other = withKeys(hub().currentProfileDict(), {keyA, keyB});
    other.insert(SettingsKeys::brightnessKbNormal, 1);
    hub().updateProfileWithSettings(other);
    QVERIFY(offers(u"Profile Default Profile changed"_s));
    change(hub());
    QTRY_COMPARE(status(), words + u". “Undo” or Ctrl+Z takes this back."_s);
    QVERIFY(offers(words));
}

void HistoryEndToEndTest::statusLineOffersToUndoARecording()
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    const QVariantMap before = keptSettings();
    tabs()->setCurrentIndex(macrosTab);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    auto *record = mHub->find<QPushButton>("mRecordMacroDetails");
    record->click();
    for (const uint key : {5U, 6U}) {
        QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, key}), QString());
        QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, key}), QString());
    }
    QTRY_COMPARE(hub().macrosController()->macroDetailsArray().size(), 7); // four events, three delays
    record->click();
    QTRY_COMPARE(status(), u"Macro Heal: 4 events recorded. “Undo” or Ctrl+Z takes this back."_s);
    undo();
    QTRY_COMPARE(shownSettings(), before);
    QTRY_COMPARE(hub().macrosController()->macroDetailsArray().size(), 3);
}

void HistoryEndToEndTest::statusLineOffersNothingElse_data()
{
    QTest::addColumn<bool>("isElsewhere");
    QTest::newRow("a key") << false;
    QTest::newRow("another client") << true;
}

void HistoryEndToEndTest::statusLineOffersNothingElse()
{
    QFETCH(bool, isElsewhere);
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    const QString before = status();
    if (isElsewhere) {
        QVERIFY(mDaemon->request(Command::removeAllEvents, {{DaemonProtocol::macroId, 0}}));
        QVERIFY(offers(u"Macro Heal: 2 events removed"_s));
    } else {
        disableKey(keyA);
        QVERIFY(offers(u"A: Disable key"_s));
    }
    QCOMPARE(status(), before);
}

void HistoryEndToEndTest::statusLineOffersNothingAfterANewDaemon()
{
    hub().addMacroWithSettings(macroOf(u"Heal"_s));
    QVERIFY(offers(u"Macro Heal added"_s));
    hub().removeAllEventsForMacroAtIndex(0);
    QVERIFY(offers(u"Macro Heal: 2 events removed"_s));
    mDaemon->kill();
    QTRY_VERIFY(!button()->isEnabled());
    hub().report({.event = StatusReport::Event::notAMacro, .subject = u"a"_s});
    const QString before = status();
    QVERIFY(mDaemon->start());
    QVERIFY(offers(u"Macro Heal: 2 events removed"_s));
    QCOMPARE(status(), before);
}

void HistoryEndToEndTest::restsWithoutADaemon()
{
    disableKey(keyA);
    QVERIFY(offers(u"A: Disable key"_s));
    mDaemon->kill();
    QTRY_VERIFY(!button()->isEnabled());
    QCOMPARE(button()->accessibleName(), u"Undo"_s);
    QVERIFY(mDaemon->start());
    QVERIFY(offers(u"A: Disable key"_s));
}

QTEST_MAIN(HistoryEndToEndTest)
#include "historyendtoendtest.moc"
