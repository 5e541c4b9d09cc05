// SPDX-License-Identifier: MIT
// Every operation of the hub on the wire: the bytes that it sends, and its reaction to each kind of reply.
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "macros/keyboardmacroscontroller.h"
#include "platform/spinner.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"

#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

struct Operation
{
    const char *name;
    Command command;
    std::function<void(KeyboardMainController &)> call;
    QVariantMap request; ///< besides "ProductID" and "ResponseMsgPortName"
    std::vector<int> sentOnSuccess;
};

const QVariantMap someSettings{{u"ProfileOSDOn"_s, 1}, {u"Name"_s, u"grün"_s}};
const QVariantMap someMacro{{u"MacroName"_s, u"Heal"_s}, {u"sequence"_s, QVariantMap()}};
const QVariantMap someEvent{{u"command"_s, 1}, {u"delay"_s, 15}, {u"page"_s, 7}, {u"argument"_s, 4}};

using Hc = KeyboardMainController;

// One row for each operation that waits for a reply; the others have separate tests below.
const std::vector<Operation> operations{
    {"loadLatestSettings", Command::readSettings, [](Hc &c) { c.loadLatestSettings(); }, {}, {4}},
    {"addNewProfileWithSettings",
     Command::addProfile,
     [](Hc &c) { c.addNewProfileWithSettings(someSettings); },
     {{u"DeviceSettingsDictionary"_s, someSettings}},
     {5}},
    {"updateProfileWithID",
     Command::updateProfile,
     [](Hc &c) { c.updateProfileWithIDAndSettings(1, someSettings); },
     {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, someSettings}},
     {6}},
    {"updateProfileWithID negative",
     Command::updateProfile,
     [](Hc &c) { c.updateProfileWithIDAndSettings(-1, someSettings); },
     {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, someSettings}},
     {6}},
    {"renameProfileWithProfileID",
     Command::updateProfile,
     [](Hc &c) { c.renameProfileWithProfileIDAndSettings(1, someSettings); },
     {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, someSettings}},
     {6}},
    {"updateProfileKeyInDictionary",
     Command::replaceAllProfiles,
     [](Hc &c) { c.updateProfileKeyInDictionaryWithDictionary({someSettings}); },
     {{u"AllProfiles"_s, QVariantList{someSettings}}},
     {7}},
    {"switchProfileWithID",
     Command::switchProfile,
     [](Hc &c) { c.switchProfileWithID(1); },
     {{u"ProfileID"_s, 1}},
     {10}},
    {"startMacroRecording",
     Command::startMacroRecording,
     [](Hc &c) { c.startMacroRecordingMacroIndex(1, 2); },
     {{u"macroID"_s, 2}, {u"isAppendRecording"_s, 1}},
     {18}},
    {"startMacroRecording anew",
     Command::startMacroRecording,
     [](Hc &c) { c.startMacroRecordingMacroIndex(0, 0); },
     {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}},
     {18}},
    {"stopMacroRecording", Command::stopMacroRecording, [](Hc &c) { c.stopMacroRecording(); }, {}, {19}},
    {"saveRecordedEvents",
     Command::saveRecordedEvents,
     [](Hc &c) { c.saveRecordedEventsForMacroAtIndexIsNewRecording(2, 1); },
     {{u"macroID"_s, 2}, {u"isAppendRecording"_s, 1}},
     {20, 4}},
    {"startEditHID", Command::startEditHid, [](Hc &c) { c.startEditHID(); }, {}, {21}},
    {"deleteMacroAtIndex", Command::deleteMacro, [](Hc &c) { c.deleteMacroAtIndex(2); }, {{u"macroID"_s, 2}}, {22, 4}},
    {"removeEventAtIndex",
     Command::removeEvent,
     [](Hc &c) { c.removeEventAtIndexForMacroAtIndex(300, 2); },
     {{u"macroID"_s, 2}, {u"macroEventTableIndex"_s, 300}},
     {23}},
    {"updateSequenceInfo",
     Command::updateEvent,
     [](Hc &c) { c.updateSequenceInfoEventIndexNewDict(256, 258, someEvent); },
     {{u"macroID"_s, 0}, {u"sequenceIdx"_s, 2}, {u"sequence"_s, someEvent}},
     {24}},
    {"renameMacroAtIndex",
     Command::renameMacro,
     [](Hc &c) { c.renameMacroAtIndexWithNewName(1, u"Größe"_s); },
     {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"Größe"_s}, {u"macroID"_s, 1}}}},
     {25, 4}},
    {"getMacroDetails",
     Command::readMacroLines,
     [](Hc &c) { c.getMacroDetailsForMacroAtIndex(300); },
     {{u"IndexOfMacroSequence"_s, 300}},
     {27}},
    {"getSequenceDetails",
     Command::readEvent,
     [](Hc &c) { c.getSequenceDetailsEventIndex(1, 511); },
     {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 255}},
     {28}},
    {"startSingleKeyRecording", Command::startSingleKeyRecording, [](Hc &c) { c.startSingleKeyRecording(); }, {}, {29}},
    {"stopSingleKeyRecording", Command::stopSingleKeyRecording, [](Hc &c) { c.stopSingleKeyRecording(); }, {}, {30}},
    {"addMacroWithSettings",
     Command::addMacro,
     [](Hc &c) { c.addMacroWithSettings(someMacro); },
     {{u"MacroContents"_s, someMacro}},
     {32, 4}},
    {"removeAllEvents",
     Command::removeAllEvents,
     [](Hc &c) { c.removeAllEventsForMacroAtIndex(2); },
     {{u"macroID"_s, 2}},
     {33}},
    {"setAllEventsDelay",
     Command::setAllDelays,
     [](Hc &c) { c.setAllEventsDelayForMacroAtIndexHasNoDelay(0, 1, true); },
     {{u"delay"_s, 0}, {u"macroID"_s, 1}, {u"HasNoDelay"_s, true}},
     {34}},
    {"setAllEventsDelay to that of a row",
     Command::setAllDelays,
     [](Hc &c) { c.setAllEventsDelayForMacroAtIndexHasNoDelay(3, 1, false); },
     {{u"delay"_s, 3}, {u"macroID"_s, 1}, {u"HasNoDelay"_s, false}},
     {34}},
    {"setNewDelay",
     Command::setDelay,
     [](Hc &c) { c.setNewDelayAtMacroEventIndexForMacroAtIndex(25, 3, 1); },
     {{u"delay"_s, 25}, {u"sequenceIdx"_s, 3}, {u"macroID"_s, 1}},
     {37}},
};

QVariantMap wholeRequest(QVariantMap entries)
{
    entries.insert(u"ProductID"_s, 271);
    entries.insert(u"ResponseMsgPortName"_s, u"KeyboardConfiguratorReplyPort"_s);
    return entries;
}

/// The parts of the hub that an unsuccessful command must not change.
struct HeldDocument
{
    explicit HeldDocument(const KeyboardMainController &c)
        : profiles(c.profilesArray()), macros(c.macrosArray()), device(c.deviceSettingsDict()),
          current(c.currentProfileDict())
    {
    }
    bool operator==(const HeldDocument &) const = default;

    QVariantList profiles, macros;
    QVariantMap device, current;
};

} // namespace

class DaemonCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sendsExactlyItsRequest_data() { addOperations(); }
    void sendsExactlyItsRequest();
    void changesNothingWithoutAReply_data() { addOperations(); }
    void changesNothingWithoutAReply();
    void changesNothingWithoutADaemon_data() { addOperations(); }
    void changesNothingWithoutADaemon();
    void refreshesOnlyOnStatusZero_data() { addOperations(); }
    void refreshesOnlyOnStatusZero();
    void emptiesTheSlot_data() { addOperations(); }
    void emptiesTheSlot();
    void survivesAReplyOfWrongTypes_data() { addOperations(); }
    void survivesAReplyOfWrongTypes();
    void takesTheLastOfTwoReplies();
    void givesALateReplyToTheNextWaiter();
    void givesRepliesAfterALateOneToTheFollowingWaiter();
    void replacesTheWholeDocument();
    void ignoresAReplyWithoutDocument();
    void ignoresTheDocumentOfReplacedProfiles();
    void sendsSettingsToTheSelectedProfile();
    void sendsSettingsToProfileZeroWithoutSelection();
    void handsOutMacroLines();
    void returnsTheEventRecord();
    void enablesTheMacroTableAfterAnUpdatedEvent();
    void releasesTheDeviceWithoutReplyPort();
    void queriesTheFirmwareWithoutWaiting();
    void deletesAProfileThenSwitches_data();
    void deletesAProfileThenSwitches();
    void leavesTheTabBusyWhenADeleteFails_data();
    void leavesTheTabBusyWhenADeleteFails();
    void repairsKeysAfterADeletedProfile();
    void repairsKeysAfterADeletedMacro();
    void enablesTheTabAfterAFailedSwitch();
    void repairsKeysAtTheNextSwitchWhenTheFirstFailed();
    void readsFromARestartedDaemonWhetherItDeleted_data();
    void readsFromARestartedDaemonWhetherItDeleted();
    void earlierDeletionDoesNotAffectTheNext();
    void redrawsAfterARefresh_data() { addOperations(); }
    void redrawsAfterARefresh();
    void redrawsAfterASwitch();

private:
    static void addOperations();
    static const Operation &operation();

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void DaemonCommandsTest::addOperations()
{
    QTest::addColumn<int>("row");
    for (size_t row = 0; row < operations.size(); ++row)
        QTest::newRow(operations[row].name) << int(row);
}

const Operation &DaemonCommandsTest::operation()
{
    QFETCH(int, row);
    return operations[size_t(row)];
}

void DaemonCommandsTest::init()
{
    mDaemon = std::make_unique<ScriptedDaemon>(sampleDocument());
    mHub = std::make_unique<Hub>();
    mHub->open(*mDaemon);
}

void DaemonCommandsTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void DaemonCommandsTest::sendsExactlyItsRequest()
{
    const Operation &op = operation();
    op.call(*mHub->controller);
    QCOMPARE(mDaemon->commands(), op.sentOnSuccess);
    const ScriptedDaemon::Request first = mDaemon->requests().front();
    QCOMPARE(first.dictionary, wholeRequest(op.request));
    // Compares bytes, which distinguish a boolean from a number.
    QCOMPARE(first.data, ScriptedDaemon::encoded(wholeRequest(op.request)));
}

void DaemonCommandsTest::changesNothingWithoutAReply()
{
    const Operation &op = operation();
    const HeldDocument before(*mHub->controller);
    mDaemon->setDocument({});
    mDaemon->setSilent(op.command);
    op.call(*mHub->controller);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(op.command)});
    QVERIFY(HeldDocument(*mHub->controller) == before);
    QVERIFY(!mHub->window->findChild<QWidget *>(u"alert"_s));
}

void DaemonCommandsTest::changesNothingWithoutADaemon()
{
    const Operation &op = operation();
    const HeldDocument before(*mHub->controller);
    mDaemon->disappear();
    op.call(*mHub->controller);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
    QVERIFY(HeldDocument(*mHub->controller) == before);
    QVERIFY(!mHub->window->findChild<QWidget *>(u"alert"_s));
}

void DaemonCommandsTest::refreshesOnlyOnStatusZero()
{
    const Operation &op = operation();
    mDaemon->setReply(op.command, {{u"ReturnStatus"_s, 3}});
    op.call(*mHub->controller);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(op.command)});

    // A missing status counts as 0.
    mDaemon->forgetRequests();
    mDaemon->setReply(op.command, {});
    op.call(*mHub->controller);
    QCOMPARE(mDaemon->commands(), op.sentOnSuccess);
}

void DaemonCommandsTest::emptiesTheSlot()
{
    operation().call(*mHub->controller);
    QVERIFY(!LatestReplySlot::shared().holdsReply());
}

void DaemonCommandsTest::survivesAReplyOfWrongTypes()
{
    const Operation &op = operation();
    const HeldDocument before(*mHub->controller);
    const QVariantMap wrong{{u"ReturnStatus"_s, u"none"_s},
                            {u"ReturnDictionary"_s, 3},
                            {u"AllDevSettings"_s, QVariantList()},
                            {u"MacroSequences"_s, QVariantMap()},
                            {u"sequenceInMacro"_s, true}};
    mDaemon->setReply(op.command, wrong);
    mDaemon->setReply(Command::readSettings, wrong);
    op.call(*mHub->controller);
    QVERIFY(HeldDocument(*mHub->controller) == before);
    mDaemon->setScript(op.command,
                       [](const auto &) { return std::vector<ScriptedDaemon::Reply>{{"no property list"}}; });
    op.call(*mHub->controller);
    QVERIFY(HeldDocument(*mHub->controller) == before);
}

void DaemonCommandsTest::takesTheLastOfTwoReplies()
{
    // Both replies arrive before the request is answered. The waiting hub looks only afterwards.
    const auto reply = [](const QVariantMap &document) {
        return ScriptedDaemon::Reply{
            ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}, {u"AllDevSettings"_s, document}})};
    };
    mDaemon->setScript(Command::readSettings, [&](const auto &) {
        return std::vector{reply({}), reply(withActiveProfile(sampleDocument(), 0))};
    });
    mHub->controller->loadLatestSettings();
    QCOMPARE(mHub->controller->deviceSettingsDict().value(u"ActiveProfile"_s).toInt(), 0);
    QCOMPARE(mHub->controller->profilesArray().size(), 2);
}

void DaemonCommandsTest::givesALateReplyToTheNextWaiter()
{
    const QByteArray late = ScriptedDaemon::encoded(
        {{u"ReturnStatus"_s, 0}, {u"AllDevSettings"_s, withActiveProfile(sampleDocument(), 0)}});
    mDaemon->setSilent(Command::readSettings);
    mHub->controller->loadLatestSettings();
    QCOMPARE(mHub->controller->deviceSettingsDict().value(u"ActiveProfile"_s).toInt(), 1);
    mDaemon->sendToReplyPort(u"KeyboardConfiguratorReplyPort"_s, 4, late);
    QVERIFY(LatestReplySlot::shared().holdsReply());
    mDaemon->forgetRequests();

    // The next waiter takes it as the answer to its own request, although that request stays unanswered.
    mHub->controller->loadLatestSettings();
    QCOMPARE(mDaemon->commands(), std::vector<int>{4});
    QCOMPARE(mHub->controller->deviceSettingsDict().value(u"ActiveProfile"_s).toInt(), 0);
    QVERIFY(!LatestReplySlot::shared().holdsReply());
}

void DaemonCommandsTest::givesRepliesAfterALateOneToTheFollowingWaiter()
{
    const auto sendLate = [this](Command command, const QVariantMap &reply) {
        mDaemon->sendToReplyPort(u"KeyboardConfiguratorReplyPort"_s, int(command), ScriptedDaemon::encoded(reply));
    };
    mDaemon->setSilent(Command::addMacro);
    mHub->controller->addMacroWithSettings({});
    sendLate(Command::addMacro, {{u"ReturnStatus"_s, 5}});
    mDaemon->forgetRequests();

    // The daemon accepted the new name, but the hub reads the reply to the failed addition. It requests nothing again.
    mDaemon->setSilent(Command::renameMacro);
    mHub->controller->renameMacroAtIndexWithNewName(0, u"New"_s);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::renameMacro)});
    QVERIFY(!LatestReplySlot::shared().holdsReply());
    sendLate(Command::renameMacro, {{u"ReturnStatus"_s, 0}, {u"sequenceInMacro"_s, someEvent}});
    QVERIFY(LatestReplySlot::shared().holdsReply());
    // The next command reads that reply.
    mDaemon->setSilent(Command::readEvent);
    QCOMPARE(mHub->controller->getSequenceDetailsEventIndex(0, 0), someEvent);
    QVERIFY(!LatestReplySlot::shared().holdsReply());
}

void DaemonCommandsTest::replacesTheWholeDocument()
{
    const QVariantMap document{{u"Profiles"_s, QVariantList{QVariantMap{{u"ProfileName"_s, u"Only"_s}}}},
                               {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}};
    mDaemon->setReply(Command::updateProfile, {{u"ReturnDictionary"_s, document}});
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QCOMPARE(mHub->controller->profilesArray().size(), 1);
    QCOMPARE(mHub->controller->currentProfileDict().value(u"ProfileName"_s).toString(), u"Only"_s);
    QVERIFY(mHub->controller->macrosArray().isEmpty());
    QVERIFY(!mHub->controller->deviceSettingsDict().contains(u"ProfileOSDOn"_s));
    QCOMPARE(mHub->controller->profilesController()->allProfilesArray().size(), 1);
}

void DaemonCommandsTest::ignoresAReplyWithoutDocument()
{
    const HeldDocument before(*mHub->controller);
    for (const Command command : {Command::addProfile, Command::updateProfile, Command::switchProfile})
        mDaemon->setReply(command, {{u"ReturnStatus"_s, 0}});
    mHub->controller->addNewProfileWithSettings({});
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    mHub->controller->switchProfileWithID(0);
    QVERIFY(HeldDocument(*mHub->controller) == before);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{5, 6, 10}));
}

void DaemonCommandsTest::ignoresTheDocumentOfReplacedProfiles()
{
    const HeldDocument before(*mHub->controller);
    mDaemon->setDocument({});
    mHub->controller->updateProfileKeyInDictionaryWithDictionary({});
    QVERIFY(HeldDocument(*mHub->controller) == before);
}

void DaemonCommandsTest::sendsSettingsToTheSelectedProfile()
{
    TableView *table = mHub->controller->profilesController()->profilesTableView();
    QCOMPARE(table->selectedRow(), 1);
    mHub->controller->updateKeySettings(someSettings);
    mHub->controller->updateValueForSetting(someSettings);
    mHub->controller->updateProfileWithSettings(someSettings);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{6, 6, 6}));
    for (const ScriptedDaemon::Request &request : mDaemon->requests())
        QCOMPARE(request.dictionary.value(u"ProfileID"_s).toInt(), 1);
}

void DaemonCommandsTest::sendsSettingsToProfileZeroWithoutSelection()
{
    mHub->controller->profilesController()->profilesTableView()->deselectAll();
    mHub->controller->updateKeySettings(someSettings);
    QCOMPARE(mDaemon->lastRequest(Command::updateProfile).dictionary.value(u"ProfileID"_s), QVariant(0));
}

void DaemonCommandsTest::returnsTheEventRecord()
{
    mDaemon->setReply(Command::readEvent, {{u"ReturnStatus"_s, 0}, {u"sequenceInMacro"_s, someEvent}});
    QCOMPARE(mHub->controller->getSequenceDetailsEventIndex(0, 0), someEvent);
    mDaemon->setSilent(Command::readEvent);
    QCOMPARE(mHub->controller->getSequenceDetailsEventIndex(0, 0), QVariantMap());
}

void DaemonCommandsTest::releasesTheDeviceWithoutReplyPort()
{
    mHub->controller->releaseQuillDeviceInstance();
    QCOMPARE(mDaemon->commands(), std::vector<int>{38});
    QCOMPARE(mDaemon->requests().front().dictionary, (QVariantMap{{u"ProductID"_s, 271}}));
}

void DaemonCommandsTest::queriesTheFirmwareWithoutWaiting()
{
    mDaemon->setSilent(Command::queryFirmwareVersion);
    // With this interval, a wait for a missing reply takes ten minutes.
    setReplyPollInterval(std::chrono::seconds(1));
    QElapsedTimer timer;
    timer.start();
    mHub->controller->setDriverVersions();
    QVERIFY(timer.elapsed() < 60'000);
    setReplyPollInterval(std::chrono::microseconds(100));
    QCOMPARE(mDaemon->requests().front().data, ScriptedDaemon::encoded(wholeRequest({})));
    QCOMPARE(mDaemon->commands(), std::vector<int>{14});
}

void DaemonCommandsTest::deletesAProfileThenSwitches_data()
{
    QTest::addColumn<int>("deleted");
    QTest::addColumn<int>("switchedTo");
    QTest::newRow("the first") << 0 << 0;
    QTest::newRow("the second") << 1 << 0;
    QTest::newRow("a later one") << 7 << 6;
}

void DaemonCommandsTest::deletesAProfileThenSwitches()
{
    QFETCH(int, deleted);
    QFETCH(int, switchedTo);
    mHub->controller->deleteProfileWithProfileID(deleted);
    // No key pointed to the deleted profile, so there is no command 7. The hub requests the document again.
    QCOMPARE(mDaemon->commands(), (std::vector<int>{9, 10, 4}));
    QCOMPARE(mDaemon->requests()[0].data, ScriptedDaemon::encoded(wholeRequest({{u"ProfileID"_s, deleted}})));
    QCOMPARE(mDaemon->requests()[1].data, ScriptedDaemon::encoded(wholeRequest({{u"ProfileID"_s, switchedTo}})));
    QVERIFY(mHub->controller->profilesController()->profilesTableView()->isEnabled());
    QVERIFY(!LatestReplySlot::shared().holdsReply());
    QVERIFY(!mHub->find<Spinner>("mBusyIndicator")->isAnimating());

    // The next switch is an ordinary one.
    mDaemon->forgetRequests();
    mHub->controller->switchProfileWithID(0);
    QCOMPARE(mDaemon->commands(), std::vector<int>{10});
}

void DaemonCommandsTest::leavesTheTabBusyWhenADeleteFails_data()
{
    QTest::addColumn<bool>("isSilent");
    QTest::newRow("no reply") << true;
    QTest::newRow("a reply without document") << false;
}

void DaemonCommandsTest::leavesTheTabBusyWhenADeleteFails()
{
    QFETCH(bool, isSilent);
    if (isSilent)
        mDaemon->setSilent(Command::deleteProfile);
    else
        mDaemon->setReply(Command::deleteProfile, {{u"ReturnStatus"_s, 5}});
    const HeldDocument before(*mHub->controller);
    mHub->controller->deleteProfileWithProfileID(1);
    QCOMPARE(mDaemon->commands(), std::vector<int>{9});
    QVERIFY(HeldDocument(*mHub->controller) == before);
    QVERIFY(!mHub->controller->profilesController()->profilesTableView()->isEnabled());
    QCOMPARE(LatestReplySlot::shared().holdsReply(), !isSilent);
    QVERIFY(mHub->find<Spinner>("mBusyIndicator")->isAnimating());
}

void DaemonCommandsTest::handsOutMacroLines()
{
    const QStringList lines{u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s};
    mDaemon->setReply(Command::readMacroLines, {{u"ReturnStatus"_s, 0}, {u"MacroSequences"_s, lines}});
    mHub->controller->getMacroDetailsForMacroAtIndex(0);
    QCOMPARE(mHub->controller->macrosController()->macroDetailsArray(), lines);
    // Without lines in the reply, the shown lines stay.
    mDaemon->setReply(Command::readMacroLines, {{u"ReturnStatus"_s, 0}});
    mHub->controller->getMacroDetailsForMacroAtIndex(0);
    QCOMPARE(mHub->controller->macrosController()->macroDetailsArray(), lines);
    // Lines that are not texts are still rows.
    mDaemon->setReply(Command::readMacroLines,
                      {{u"MacroSequences"_s, QVariantList{5, QVariantMap(), QVariantList{1}, u"Key Press A"_s}}});
    mHub->controller->getMacroDetailsForMacroAtIndex(0);
    QCOMPARE(mHub->controller->macrosController()->macroDetailsArray().size(), 4);
    QCOMPARE(mHub->controller->macrosController()->macroDetailsArray().at(3), u"Key Press A"_s);
}

void DaemonCommandsTest::enablesTheMacroTableAfterAnUpdatedEvent()
{
    auto *macros = mHub->controller->macrosController();
    const auto areEnabled = [&] {
        return macros->macroTableView()->isEnabled() && mHub->find<QWidget>("mAddMacro")->isEnabled();
    };
    macros->setStateOfTableButtonsWithState(false);
    macros->setStateOfMacroTableWithState(false);
    mDaemon->setReply(Command::updateEvent, {{u"ReturnStatus"_s, 2}});
    mHub->controller->updateSequenceInfoEventIndexNewDict(0, 0, someEvent);
    QVERIFY(!areEnabled());
    mDaemon->setReply(Command::updateEvent, {{u"ReturnStatus"_s, 0}});
    mHub->controller->updateSequenceInfoEventIndexNewDict(0, 0, someEvent);
    QVERIFY(areEnabled());
}

namespace {

/// sampleDocument() with a first profile whose key A plays macro `index` or switches to profile `index`.
QVariantMap withMapping(int command, int index)
{
    QVariantMap document = sampleDocument();
    QVariantList profiles = document[u"Profiles"_s].toList();
    QVariantMap first = profiles[0].toMap();
    QVariantMap keys = first[u"Keys"_s].toMap();
    keys[u"4"_s] = QVariantMap{{u"command"_s, command}, {u"param1"_s, index}, {u"param2"_s, 1}};
    first[u"Keys"_s] = keys;
    profiles[0] = first;
    document[u"Profiles"_s] = profiles;
    return document;
}

} // namespace

void DaemonCommandsTest::repairsKeysAfterADeletedProfile()
{
    // The clean-up uses the document of the switch; then the hub requests the whole document again.
    mDaemon->setDocument(withActiveProfile(withMapping(17, 1), 0));
    mHub->controller->deleteProfileWithProfileID(1);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{9, 10, 7, 4}));
    const QVariantList sent = mDaemon->lastRequest(Command::replaceAllProfiles).dictionary[u"AllProfiles"_s].toList();
    QCOMPARE(sent.size(), 2);
    QCOMPARE(sent[0].toMap()[u"Keys"_s].toMap()[u"4"_s].toMap(), QVariantMap());
}

void DaemonCommandsTest::repairsKeysAfterADeletedMacro()
{
    mDaemon->setDocument(withMapping(10, 2));
    mHub->controller->loadLatestSettings();
    mHub->controller->setProperties();
    mDaemon->forgetRequests();
    mHub->controller->deleteMacroAtIndex(2);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{22, 7, 4}));
    const QVariantList sent = mDaemon->lastRequest(Command::replaceAllProfiles).dictionary[u"AllProfiles"_s].toList();
    QCOMPARE(sent[0].toMap()[u"Keys"_s].toMap()[u"4"_s].toMap(), QVariantMap());

    // When the daemon refuses the deletion, nothing is repaired.
    mDaemon->forgetRequests();
    mDaemon->setReply(Command::deleteMacro, {{u"ReturnStatus"_s, 1}});
    mHub->controller->deleteMacroAtIndex(2);
    QCOMPARE(mDaemon->commands(), std::vector<int>{22});
}

void DaemonCommandsTest::enablesTheTabAfterAFailedSwitch()
{
    mHub->controller->updateProfilesControlState(false);
    mDaemon->setSilent(Command::switchProfile);
    mHub->controller->switchProfileWithID(0);
    QVERIFY(mHub->controller->profilesController()->profilesTableView()->isEnabled());
}

void DaemonCommandsTest::repairsKeysAtTheNextSwitchWhenTheFirstFailed()
{
    mDaemon->setSilent(Command::switchProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{9, 10}));
    mDaemon->forgetRequests();
    mDaemon->setReply(Command::switchProfile,
                      {{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, withActiveProfile(withMapping(17, 1), 0)}});
    mHub->controller->switchProfileWithID(0);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{10, 7, 4}));
}

void DaemonCommandsTest::readsFromARestartedDaemonWhetherItDeleted_data()
{
    QTest::addColumn<qsizetype>("profiles");
    QTest::addColumn<std::vector<int>>("sentAtTheNextSwitch");
    QTest::newRow("it did not") << qsizetype(2) << std::vector<int>{10};
    QTest::newRow("it did") << qsizetype(1) << std::vector<int>{10, 7, 4};
}

void DaemonCommandsTest::readsFromARestartedDaemonWhetherItDeleted()
{
    QFETCH(qsizetype, profiles);
    QFETCH(std::vector<int>, sentAtTheNextSwitch);
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    QVariantMap document = withActiveProfile(withMapping(17, 1), 0);
    document[u"Profiles"_s] = document[u"Profiles"_s].toList().first(profiles);
    mDaemon->setDocument(document);
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QVERIFY(!mHub->find<Spinner>("mBusyIndicator")->isAnimating());
    QVERIFY(mHub->controller->profilesController()->profilesTableView()->isEnabled());
    mDaemon->forgetRequests();
    mHub->controller->switchProfileWithID(0);
    QCOMPARE(mDaemon->commands(), sentAtTheNextSwitch);
}

void DaemonCommandsTest::earlierDeletionDoesNotAffectTheNext()
{
    mHub->controller->deleteProfileWithProfileID(0); // answered
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    mDaemon->setDocument(withMapping(17, 1));
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    mDaemon->forgetRequests();
    // The profile still exists, so the keys that switch to it are not repaired.
    mHub->controller->switchProfileWithID(0);
    QCOMPARE(mDaemon->commands(), std::vector<int>{10});
}

void DaemonCommandsTest::redrawsAfterARefresh()
{
    const Operation &op = operation();
    const bool refreshes = op.sentOnSuccess.size() == 2;
    const bool applies = op.command == Command::addProfile || op.command == Command::updateProfile
                         || op.command == Command::switchProfile;
    QVariantMap changed = withActiveProfile(sampleDocument(), 0);
    changed[u"Macros"_s] = QVariantList{QVariantMap{{u"MacroName"_s, u"Only"_s}}};
    mDaemon->setDocument(changed);
    const QString profileBefore = mHub->find<QLabel>("mProfileNameLabel")->text();
    op.call(*mHub->controller);
    const bool isRedrawn = mHub->find<QLabel>("mProfileNameLabel")->text() != profileBefore;
    QCOMPARE(isRedrawn, refreshes || applies);
    QCOMPARE(mHub->find<TableView>("mMacroTableView")->numberOfRows(), refreshes || applies ? 1 : 3);
    QCOMPARE(mHub->find<TableView>("mProfilesTableView")->selectedRow(), refreshes || applies ? 0 : 1);
}

void DaemonCommandsTest::redrawsAfterASwitch()
{
    mDaemon->setDocument(withActiveProfile(sampleDocument(), 0));
    mHub->find<TableView>("mProfilesTableView")->selectRow(0);
    QCOMPARE(mDaemon->commands(), std::vector<int>{10});
    QCOMPARE(mHub->find<QLabel>("mProfileNameLabel")->text(), u"Default Profile"_s);
    QCOMPARE(mHub->controller->profilesController()->currentProfileDict().value(u"ProfileName"_s).toString(),
             u"Default Profile"_s);
}

QTEST_MAIN(DaemonCommandsTest)
#include "daemoncommandstest.moc"
