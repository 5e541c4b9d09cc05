// SPDX-License-Identifier: MIT
#include "app/statuswords.h"

#include "base/devicekeys.h"
#include "base/historykeys.h"
#include "base/status.h"
#include "base/text.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using Event = StatusReport::Event;
using Service = StatusState::Service;

namespace {

constexpr int lastEvent = int(Event::settingsProblem);

StatusState runningState()
{
    return {.service = Service::running,
            .isAttached = true,
            .keyboards = KeyboardsInUse{.state = DeviceKeys::stateReleased, .names = {}},
            .profile = StatusState::ActiveProfile{.name = u"Raid"_s, .isGameModeOn = false, .application = QString()}};
}

StatusState withKeyboards(const QString &state, const QStringList &names, bool isAttached = false)
{
    StatusState result = runningState();
    result.isAttached = isAttached;
    result.keyboards = KeyboardsInUse{.state = state, .names = names};
    return result;
}

} // namespace

class StatusWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { installTexts(textsFolder(), {u"en"_s}); }
    void describesTheState_data();
    void describesTheState();
    void describesTheEvents_data();
    void describesTheEvents();
    void everyTextExistsInEveryLanguage_data();
    void everyTextExistsInEveryLanguage();
    void namesFromOutsideStayOnOneLine();
};

void StatusWordsTest::describesTheState_data()
{
    QTest::addColumn<StatusState>("state");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *name, const StatusState &state, const QString &text) {
        QTest::newRow(name) << state << text;
    };
    const auto keyboard = [&add](const char *name, const StatusState &state, const QString &text) {
        add(name, state, text + u"  ·  Profile: Raid, chosen by hand  ·  Service: running  ·  Game mode: off"_s);
    };
    keyboard("virtual", runningState(), u"Keyboard: Quill Kestra (virtual), connected"_s);
    keyboard("virtual, removed", withKeyboards(DeviceKeys::stateReleased, {}),
             u"Keyboard: Quill Kestra (virtual), not connected"_s);
    keyboard("real", withKeyboards(DeviceKeys::stateInUse, {u"Board"_s}, true), u"Keyboard: Board (real), connected"_s);
    keyboard("two real ones", withKeyboards(DeviceKeys::stateInUse, {u"A"_s, u"B"_s}, true),
             u"Keyboard: A, B (real), connected"_s);
    keyboard("real, absent", withKeyboards(DeviceKeys::stateAbsent, {}), u"Keyboard: real keyboard, not connected"_s);
    keyboard("real, waiting", withKeyboards(DeviceKeys::stateWaiting, {}),
             u"Keyboard: real keyboard, usable once all keys are up"_s);
    keyboard("real, suspended", withKeyboards(DeviceKeys::stateSuspended, {}),
             u"Keyboard: real keyboard, released by Backspace, Escape and Return"_s);
    keyboard("real, failed", withKeyboards(DeviceKeys::stateFailed, {}),
             u"Keyboard: real keyboard, cannot be used; “kestractl status” shows why"_s);
    StatusState state = runningState();
    state.keyboards.reset();
    keyboard("unknown keyboard", state, u"Keyboard: Quill Kestra, connected"_s);

    const QString attached = u"Keyboard: Quill Kestra (virtual), connected  ·  "_s;
    state = runningState();
    state.profile->isGameModeOn = true;
    add("game mode", state, attached + u"Profile: Raid, chosen by hand  ·  Service: running  ·  Game mode: on"_s);
    state = runningState();
    state.profile->application = u"The Game"_s;
    add("profile of an application", state,
        attached + u"Profile: Raid, because The Game is in front  ·  Service: running  ·  Game mode: off"_s);
    state.profile->application.reset();
    add("unknown reason", state, attached + u"Profile: Raid  ·  Service: running  ·  Game mode: off"_s);
    state.profile.reset();
    add("unknown settings", state, attached + u"Service: running"_s);

    state = runningState();
    state.needsShellExtension = true;
    add("GNOME without the extension", state,
        u"For profiles that follow windows, install and enable gnome-shell-extension-quill-kestra  ·  "_s + attached
            + u"Profile: Raid, chosen by hand  ·  Service: running  ·  Game mode: off"_s);

    state.service = Service::silent;
    add("silent service", state, u"Service: not responding"_s);
    state.service = Service::absent;
    add("no service", state, u"Service: not running"_s);
    add("start", {}, u"Waiting for the keyboard service"_s);
}

void StatusWordsTest::describesTheState()
{
    QFETCH(StatusState, state);
    QTEST(StatusWords::ofState(state), "text");
}

void StatusWordsTest::describesTheEvents_data()
{
    QTest::addColumn<StatusReport>("report");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *name, const StatusReport &report, const QString &text) {
        QTest::newRow(name) << report << text;
    };
    add("export",
        {.event = Event::exportFailed, .subject = u"a.KestraProfile"_s, .reason = u"No space left on device"_s},
        u"The file “a.KestraProfile” could not be written: No space left on device."_s);
    add("import", {.event = Event::importFailed, .subject = u"a.KestraMacro"_s, .reason = u"Permission denied"_s},
        u"The file “a.KestraMacro” could not be read: Permission denied."_s);
    add("clean-up", {Event::cleanUpRefused, {}, int(Status::notSaved)},
        u"The entry was deleted, but the keys that used it were not cleared: the settings could not be written to the "
        "disk."_s);
    add("clean-up, no answer", {Event::cleanUpWithoutReply},
        u"The entry was deleted, but then the keyboard service did not respond. The keys that used it may not have "
        "been cleared."_s);
    add("profile", {Event::notAProfile, u"a.txt"_s}, u"The file “a.txt” is not a profile."_s);
    add("macro", {Event::notAMacro, u"a.txt"_s}, u"The file “a.txt” is not a macro."_s);
    add("application", {Event::notAnApplication, u"a.txt"_s}, u"“a.txt” is not an application."_s);
    add("full", {Event::macroFull, u"Heal"_s}, u"The macro “Heal” is full. Further keys are not recorded."_s);
    add("new macro kept", {Event::newMacroKept, u"Heal"_s},
        u"The new macro “Heal” is stored, but no key plays it: the profile or the keyboard has changed."_s);
    add("no answer", {Event::noReply}, u"The keyboard service did not respond."_s);
    add("no answer to a change", {Event::noReplyToChange},
        u"The keyboard service did not respond. The change may be missing."_s);
    add("late", {Event::lateReply, {}, 3}, u"The keyboard service took 3 s to respond."_s);
    add("other entry", {Event::entryHasChanged}, u"The change was not made: the list has changed meanwhile."_s);
    add("events not copied", {Event::eventsNotCopied},
        u"The events were not copied: one of them is not a key, mouse button or pause that a macro can play."_s);
    add("recording, no answer", {Event::recordingWithoutReply},
        u"The keyboard service did not respond. The recording may be missing."_s);
    add("recording", {Event::recordingNotStored, {}, int(Status::limitReached)},
        u"The recording could not be stored: there is no more room."_s);
    add("can be undone", {Event::canBeUndone, u"Macro Heal: 2 events removed"_s},
        u"Macro Heal: 2 events removed. “Undo” or Ctrl+Z takes this back."_s);
    add("undone", {Event::undone, u"Macro Heal deleted"_s}, u"Undone: Macro Heal deleted"_s);
    add("redone", {Event::redone, u"Macro Heal deleted"_s}, u"Redone: Macro Heal deleted"_s);
    add("restored", {Event::restored, u"Macro Heal deleted"_s}, u"Taken back: Macro Heal deleted"_s);
    const auto notUndone = [&add](const char *row, QLatin1StringView error, const QString &reason) {
        add(row, {Event::notUndone, u"Game mode on"_s, 0, error},
            u"Not undone: Game mode on. The reason: %1."_s.arg(reason));
    };
    notUndone("undo, another client was faster", HistoryKeys::outdatedError,
              u"the settings have changed meanwhile, and another change comes first now"_s);
    notUndone("undo, already undone", HistoryKeys::notInEffectError, u"the change has been taken back already"_s);
    notUndone("undo, replaced", HistoryKeys::unreachableError, u"the settings were replaced in another way since"_s);
    notUndone("undo, full", HistoryKeys::invalidError, u"there is no more room"_s);
    notUndone("undo, full disk", HistoryKeys::notSavedError, u"the settings could not be written to the disk"_s);
    notUndone("undo, no daemon", "org.freedesktop.DBus.Error.NoReply"_L1, u"the keyboard service did not respond"_s);
    add("not a local file", {Event::notALocalFile, u"https://example.org/x"_s},
        u"“https://example.org/x” is not a file on this computer."_s);
    add("files not opened", {Event::filesNotOpened, {}, 5},
        u"Files that were not opened, because too many are already waiting: 5"_s);
    add("extension", {Event::shellExtensionMissing, u"gnome-shell-extension"_s},
        u"Profiles follow windows of GNOME only with the package “gnome-shell-extension”, installed and enabled."_s);
    add("settings", {Event::settingsProblem, u"settings.plist was damaged."_s},
        u"Problem with the keyboard settings: settings.plist was damaged."_s);
    const auto refused = [&add](Status status, const QString &reason) {
        add(statusName(status).data(), {Event::refused, {}, int(status)},
            u"The keyboard service has refused this: %1."_s.arg(reason));
    };
    refused(Status::unknownCommand, u"it does not accept these values"_s);
    refused(Status::malformedRequest, u"it does not accept these values"_s);
    refused(Status::indexOutOfRange, u"the entry no longer exists"_s);
    refused(Status::limitReached, u"there is no more room"_s);
    refused(Status::lastProfile, u"the last profile cannot be deleted"_s);
    refused(Status::notSaved, u"the settings could not be written to the disk"_s);
    refused(Status::deviceAbsent, u"the keyboard is not connected"_s);
    refused(Status::nothingRecorded, u"the service has no recorded keys"_s);
    refused(Status::busy, u"it is busy"_s);
}

void StatusWordsTest::describesTheEvents()
{
    QFETCH(StatusReport, report);
    QTEST(StatusWords::ofReport(report), "text");
}

void StatusWordsTest::everyTextExistsInEveryLanguage_data()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : {u"de"_s, u"en"_s, u"es"_s, u"fr"_s, u"ja"_s, u"zh_Hans"_s})
        QTest::newRow(qPrintable(language)) << language;
}

void StatusWordsTest::everyTextExistsInEveryLanguage()
{
    QFETCH(QString, language);
    installTexts(textsFolder(), {language});
    QStringList texts{StatusWords::ofWait()};
    for (int event = 0; event <= lastEvent; ++event)
        texts += StatusWords::ofReport({.event = Event(event), .subject = u"SUBJECT"_s});
    for (int status = int(Status::malformedRequest); status <= int(Status::busy); ++status)
        texts += StatusWords::ofReport({.event = Event::refused, .number = status});
    StatusState state = runningState();
    for (const QLatin1StringView device :
         {DeviceKeys::stateReleased, DeviceKeys::stateAbsent, DeviceKeys::stateWaiting, DeviceKeys::stateInUse,
          DeviceKeys::stateSuspended, DeviceKeys::stateFailed}) {
        state.keyboards->names = device == DeviceKeys::stateInUse ? QStringList{u"Board"_s} : QStringList();
        state.keyboards->state = device;
        texts += StatusWords::ofState(state);
    }
    state.profile->application = u"APPLICATION"_s;
    state.profile->isGameModeOn = true;
    texts += StatusWords::ofState(state);
    QVERIFY(texts.last().contains(u"APPLICATION"_s) && texts.last().contains(u"Raid"_s));
    for (const Service service : {Service::awaited, Service::silent, Service::absent})
        texts += StatusWords::ofState({.service = service});
    for (const QString &text : texts) {
        QVERIFY2(!text.isEmpty() && !text.contains(u"No Translation"_s), qPrintable(text));
        QVERIFY2(!text.contains(u'%'), qPrintable(text));
    }
    // The refusal without a reason is there twice.
    QVERIFY2(QSet(texts.cbegin(), texts.cend()).size() == texts.size() - 1, qPrintable(texts.join(u'\n')));
}

void StatusWordsTest::namesFromOutsideStayOnOneLine()
{
    StatusState state = withKeyboards(DeviceKeys::stateInUse, {u"A\nB\u202eC"_s}, true);
    state.profile->name = u"P\tQ"_s;
    const QString text = StatusWords::ofState(state);
    QVERIFY(text.contains(u"A B C"_s) && text.contains(u"P Q"_s));
    QVERIFY(!StatusWords::ofReport({.event = Event::notAMacro, .subject = u"a\nb"_s}).contains(u'\n'));
}

QTEST_GUILESS_MAIN(StatusWordsTest)
#include "statuswordstest.moc"
