// SPDX-License-Identifier: MIT
// The status line with a daemon that refuses, answers late or not at all.
#include "base/status.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/statusline.h"
#include "tests/app/hubfixture.h"
#include "tests/support/mappingcleanupcases.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QTest>

#include <functional>
#include <memory>
#include <semaphore>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Command = DaemonProtocol::Command;

namespace {

const QString waitText = u"Waiting for the keyboard service to respond…"_s;
const QString noAnswerText = u"The keyboard service did not respond."_s;
const QString noAnswerToChangeText = u"The keyboard service did not respond. The change may be missing."_s;
const QString cleanUpSilentText = u"The entry was deleted, but then the keyboard service did not respond. The keys "
                                  "that used it may not have been cleared."_s;
const QString cleanUpRefusedText = u"The entry was deleted, but the keys that used it were not cleared: %1."_s;
const StatusTimes waitsAreShown{.untilWaitIsShown = 0ms, .report = 1h};

struct Action
{
    const char *name;
    Command command;
    void (*run)(KeyboardMainController &hub);
    QString whenSilent = noAnswerToChangeText;
    QString whenRefused = u"The keyboard service has refused this: %1."_s;
};

/// Each request that the hub sends while the user works.
const QList<Action> &actions()
{
    static const QList<Action> all{
        {"read settings", Command::readSettings, [](KeyboardMainController &hub) { hub.loadLatestSettings(); },
         noAnswerText},
        {"add profile", Command::addProfile, [](KeyboardMainController &hub) { hub.addNewProfileWithSettings({}); }},
        {"update profile", Command::updateProfile,
         [](KeyboardMainController &hub) { hub.updateProfileWithIDAndSettings(0, {}); }},
        {"replace profiles", Command::replaceAllProfiles,
         [](KeyboardMainController &hub) { hub.updateProfileKeyInDictionaryWithDictionary({}); }, cleanUpSilentText,
         cleanUpRefusedText},
        {"delete profile", Command::deleteProfile,
         [](KeyboardMainController &hub) { hub.deleteProfileWithProfileID(0); }},
        {"switch profile", Command::switchProfile, [](KeyboardMainController &hub) { hub.switchProfileWithID(0); }},
        {"add macro", Command::addMacro, [](KeyboardMainController &hub) { hub.addMacroWithSettings({}); }},
        {"rename macro", Command::renameMacro,
         [](KeyboardMainController &hub) { hub.renameMacroAtIndexWithNewName(0, u"N"_s); }},
        {"delete macro", Command::deleteMacro, [](KeyboardMainController &hub) { hub.deleteMacroAtIndex(0); }},
        {"start recording", Command::startMacroRecording,
         [](KeyboardMainController &hub) { hub.startMacroRecordingMacroIndex(0, 0); }, noAnswerText},
        {"stop recording", Command::stopMacroRecording, [](KeyboardMainController &hub) { hub.stopMacroRecording(); },
         noAnswerText},
        {"save recording", Command::saveRecordedEvents,
         [](KeyboardMainController &hub) { hub.saveRecordedEventsForMacroAtIndexIsNewRecording(0, 0); },
         u"The keyboard service did not respond. The recording may be missing."_s,
         u"The recording could not be stored: %1."_s},
        {"read lines", Command::readMacroLines,
         [](KeyboardMainController &hub) { hub.getMacroDetailsForMacroAtIndex(0); }, noAnswerText},
        {"remove event", Command::removeEvent,
         [](KeyboardMainController &hub) { hub.removeEventAtIndexForMacroAtIndex(0, 0); }},
        {"remove all events", Command::removeAllEvents,
         [](KeyboardMainController &hub) { hub.removeAllEventsForMacroAtIndex(0); }},
        {"set all delays", Command::setAllDelays,
         [](KeyboardMainController &hub) { hub.setAllEventsDelayForMacroAtIndexHasNoDelay(0, 0, true); }},
        {"set delay", Command::setDelay,
         [](KeyboardMainController &hub) { hub.setNewDelayAtMacroEventIndexForMacroAtIndex(1, 1, 0); }},
        {"update event", Command::updateEvent,
         [](KeyboardMainController &hub) { hub.updateSequenceInfoEventIndexNewDict(0, 0, {}); }},
        {"read event", Command::readEvent, [](KeyboardMainController &hub) { hub.getSequenceDetailsEventIndex(0, 0); },
         noAnswerText},
        {"capture for an event", Command::startEditHid, [](KeyboardMainController &hub) { hub.startEditHID(); },
         noAnswerText},
        {"capture a key", Command::startSingleKeyRecording,
         [](KeyboardMainController &hub) { hub.startSingleKeyRecording(); }, noAnswerText},
        {"end capture", Command::stopSingleKeyRecording,
         [](KeyboardMainController &hub) { hub.stopSingleKeyRecording(); }, noAnswerText},
    };
    return all;
}

/// Notes the text of the line whenever it is painted. Commands process no event: while one runs, that is during its
/// wait.
class TextsDuringTheWait : public QObject
{
public:
    explicit TextsDuringTheWait(const Hub &hub) : mLine(*hub.find<StatusLine>("mStatusLine"))
    {
        mLine.installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            texts += mLine.text();
            whenPainted();
        }
        return false;
    }
    QStringList texts;
    std::function<void()> whenPainted = [] {};

private:
    StatusLine &mLine;
};

} // namespace

class StatusFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void reportsEachMissingReply_data() { addActions(); }
    void reportsEachMissingReply();
    void reportsEachRefusal_data() { addActions(); }
    void reportsEachRefusal();
    void reportsThatOnlyTheCleanUpHasFailed_data();
    void reportsThatOnlyTheCleanUpHasFailed();
    void reportsARefusedSwitchAfterAFailedCleanUp();
    void reportsAChangeThatWasNotSent();
    void saysThatItWaitsForTheReply();
    void saysThatItWaitsForTheAcceptanceOfTheRequest();
    void saysThatItWaitsForTheFirstReply();
    void saysNothingOfAShortWait();
    void reportsALateReply();
    void refusalThatIsLateIsARefusal();
    void nextChangeEndsTheReport();
    void missingServiceIsShown();

private:
    static void addActions();
    void open(StatusTimes times = {});
    [[nodiscard]] QString shown() const;
    void report() const { mHub->controller->report({.event = StatusReport::Event::noReply}); }

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void StatusFaultsTest::init()
{
    setReplyPollInterval(std::chrono::microseconds(100));
    mDaemon = std::make_unique<ScriptedDaemon>(sampleDocument());
}

void StatusFaultsTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void StatusFaultsTest::addActions()
{
    QTest::addColumn<int>("action");
    for (int index = 0; index < actions().size(); ++index)
        QTest::newRow(actions().at(index).name) << index;
}

void StatusFaultsTest::open(StatusTimes times)
{
    mHub = std::make_unique<Hub>(std::chrono::hours(1), times);
    mHub->window->show();
    QVERIFY(QTest::qWaitForWindowExposed(mHub->window.get()));
    mHub->open(*mDaemon);
}

QString StatusFaultsTest::shown() const
{
    auto *line = mHub->find<StatusLine>("mStatusLine");
    const QAccessibleInterface *status = QAccessible::queryAccessibleInterface(line);
    return status->text(QAccessible::Name) == line->text() ? line->text() : u"not accessible: "_s + line->text();
}

void StatusFaultsTest::reportsEachMissingReply()
{
    QFETCH(int, action);
    const Action &tried = actions().at(action);
    open();
    mDaemon->setSilent(tried.command);
    tried.run(*mHub->controller);
    QCOMPARE(mDaemon->count(tried.command), 1);
    QCOMPARE(shown(), tried.whenSilent);
}

void StatusFaultsTest::reportsEachRefusal()
{
    QFETCH(int, action);
    const Action &tried = actions().at(action);
    open();
    mDaemon->setReply(tried.command, {{u"ReturnStatus"_s, int(Status::notSaved)}});
    tried.run(*mHub->controller);
    QCOMPARE(mDaemon->count(tried.command), 1);
    QCOMPARE(shown(), tried.whenRefused.arg(u"the settings could not be written to the disk"_s));
    LatestReplySlot::shared().clear(); // a refused deletion leaves its reply there
}

void StatusFaultsTest::reportsThatOnlyTheCleanUpHasFailed_data()
{
    QTest::addColumn<bool>("isMacro");
    QTest::addColumn<int>("failing");
    QTest::addColumn<bool>("isSilent");
    QTest::newRow("macro, refused") << true << int(Command::replaceAllProfiles) << false;
    QTest::newRow("macro, silent") << true << int(Command::replaceAllProfiles) << true;
    QTest::newRow("profile, refused") << false << int(Command::replaceAllProfiles) << false;
    QTest::newRow("profile, silent") << false << int(Command::replaceAllProfiles) << true;
    // After a deletion the window switches the profile first. Without an answer it does not begin to repair keys.
    QTest::newRow("switch refused") << false << int(Command::switchProfile) << false;
    QTest::newRow("switch silent") << false << int(Command::switchProfile) << true;
}

void StatusFaultsTest::reportsThatOnlyTheCleanUpHasFailed()
{
    QFETCH(bool, isMacro);
    QFETCH(int, failing);
    QFETCH(bool, isSilent);
    const QVariantMap keys{{u"4"_s, MappingCleanupCases::entry(MappingCleanupCases::playMacro, 1)},
                           {u"5"_s, MappingCleanupCases::entry(MappingCleanupCases::switchProfile, 1)}};
    mDaemon->setDocument(MappingCleanupCases::withKeys(withActiveProfile(sampleDocument(), 0), keys));
    open();
    if (isSilent)
        mDaemon->setSilent(Command(failing));
    else
        mDaemon->setReply(Command(failing), {{u"ReturnStatus"_s, int(Status::notSaved)}});
    if (isMacro)
        mHub->controller->deleteMacroAtIndex(1);
    else
        mHub->controller->deleteProfileWithProfileID(1);
    QCOMPARE(mDaemon->count(Command(failing)), 1);
    QCOMPARE(shown(),
             isSilent ? cleanUpSilentText : cleanUpRefusedText.arg(u"the settings could not be written to the disk"_s));
}

void StatusFaultsTest::reportsARefusedSwitchAfterAFailedCleanUp()
{
    open();
    mDaemon->setReply(Command::switchProfile, {{u"ReturnStatus"_s, int(Status::notSaved)}});
    mHub->controller->deleteProfileWithProfileID(1);
    mHub->controller->switchProfileWithID(0);
    QCOMPARE(mDaemon->count(Command::switchProfile), 2);
    QCOMPARE(shown(), u"The keyboard service has refused this: the settings could not be written to the disk."_s);
}

void StatusFaultsTest::reportsAChangeThatWasNotSent()
{
    open();
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(0);
    QVariantMap document = withActiveProfile(sampleDocument(), 0);
    document[u"Profiles"_s] = document[u"Profiles"_s].toList().last(1);
    mDaemon->setDocument(document);
    mHub->controller->updateProfileWithIDAndSettings(0, {{u"AutoSwitchOn"_s, 1}});
    QCOMPARE(mDaemon->count(Command::updateProfile), 0);
    QCOMPARE(shown(), u"The change was not made: the list has changed meanwhile."_s);
}

void StatusFaultsTest::saysThatItWaitsForTheReply()
{
    open(waitsAreShown);
    mDaemon->setSilent(Command::updateProfile);
    const auto wasHandled = std::make_shared<bool>(false); // the call may come after the end of the test
    QCoreApplication::processEvents();
    QMetaObject::invokeMethod(
        this, [wasHandled] { *wasHandled = true; }, Qt::QueuedConnection);
    const TextsDuringTheWait painted(*mHub);
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QVERIFY2(painted.texts.contains(waitText), qPrintable(painted.texts.join(u'\n')));
    QVERIFY(!*wasHandled); // painted without an event
    QCOMPARE(shown(), noAnswerToChangeText);
}

void StatusFaultsTest::saysThatItWaitsForTheAcceptanceOfTheRequest()
{
    open(waitsAreShown);
    // The reply is there before the request is accepted, so only the wait for the acceptance can be shown. Its limit is
    // longer than that of the script.
    TextsDuringTheWait painted(*mHub);
    std::binary_semaphore isPainted(0);
    mDaemon->setScript(Command::updateProfile, [&isPainted](const ScriptedDaemon::Request &) {
        (void)isPainted.try_acquire_for(1500ms);
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}})}};
    });
    painted.whenPainted = [&isPainted] { isPainted.release(); };
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QCOMPARE(painted.texts, QStringList{waitText});
}

void StatusFaultsTest::saysThatItWaitsForTheFirstReply()
{
    mHub = std::make_unique<Hub>(std::chrono::hours(1), waitsAreShown);
    QVERIFY(QTest::qWaitForWindowExposed(mHub->window.get()));
    QCOMPARE(shown(), u"Waiting for the keyboard service"_s);
    mDaemon->setSilent(Command::openDevice);
    const TextsDuringTheWait painted(*mHub);
    mHub->controller->initializeDevice();
    QVERIFY2(painted.texts.contains(waitText), qPrintable(painted.texts.join(u'\n')));
    QCOMPARE(shown(), u"Service: not responding"_s);
}

void StatusFaultsTest::saysNothingOfAShortWait()
{
    open({.untilWaitIsShown = 1h, .report = 1h});
    QCoreApplication::processEvents();
    mDaemon->setSilent(Command::updateProfile);
    const TextsDuringTheWait painted(*mHub);
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QVERIFY(!painted.texts.contains(waitText));
}

void StatusFaultsTest::reportsALateReply()
{
    open(waitsAreShown);
    setReplyPollInterval(replyPollInterval);
    mDaemon->setScript(Command::updateProfile, [](const ScriptedDaemon::Request &) {
        const QVariantMap reply{{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, sampleDocument()}};
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded(reply), 30ms}};
    });
    const TextsDuringTheWait painted(*mHub);
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QVERIFY(painted.texts.contains(waitText));
    QCOMPARE(shown(), u"The keyboard service took 1 s to respond."_s);
}

void StatusFaultsTest::refusalThatIsLateIsARefusal()
{
    open(waitsAreShown);
    setReplyPollInterval(replyPollInterval);
    mDaemon->setScript(Command::updateProfile, [](const ScriptedDaemon::Request &) {
        return std::vector<ScriptedDaemon::Reply>{
            {ScriptedDaemon::encoded({{u"ReturnStatus"_s, int(Status::busy)}}), 30ms}};
    });
    mHub->controller->updateProfileWithIDAndSettings(0, {});
    QCOMPARE(shown(), u"The keyboard service has refused this: it is busy."_s);
}

void StatusFaultsTest::nextChangeEndsTheReport()
{
    open({.untilWaitIsShown = 1h, .report = 1h});
    QTRY_VERIFY(shown().contains(u"Service: running"_s));
    const QString state = shown();
    report();
    QCOMPARE(shown(), noAnswerText);
    // Requests that the program makes on its own leave it.
    QCoreApplication::processEvents();
    mHub->controller->loadLatestSettings();
    mHub->controller->startSingleKeyRecording();
    QCOMPARE(shown(), noAnswerText);
    QTRY_VERIFY((mHub->controller->updateProfileWithIDAndSettings(0, {}), shown() == state));
}

void StatusFaultsTest::missingServiceIsShown()
{
    open();
    QTRY_VERIFY(shown().contains(u"Service: running"_s));
    mDaemon->disappear();
    QTRY_COMPARE(shown(), u"Service: not running"_s);
    mDaemon->appear();
    QTRY_VERIFY(shown().contains(u"Service: running"_s));
}

QTEST_MAIN(StatusFaultsTest)
#include "statusfaultstest.moc"
