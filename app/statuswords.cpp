// SPDX-License-Identifier: MIT
#include "app/statuswords.h"

#include "base/devicekeys.h"
#include "base/frontapplicationkeys.h"
#include "base/historykeys.h"
#include "base/status.h"
#include "base/text.h"
#include "base/visibletext.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

using Event = StatusReport::Event;
using Service = StatusState::Service;

const char *serviceKey(Service service)
{
    switch (service) {
    case Service::awaited: return "lkeyStatusServiceAwaited";
    case Service::running: return "lkeyStatusServiceRunning";
    case Service::silent: return "lkeyStatusServiceSilent";
    case Service::absent: break;
    }
    return "lkeyStatusServiceAbsent";
}

QString keyboardName(const KeyboardsInUse &keyboards)
{
    if (keyboards.state == DeviceKeys::stateReleased)
        return localizedFormat("lkeyStatusVirtualKeyboard", {localizedText("lkeyProductFamily")});
    if (keyboards.names.isEmpty())
        return localizedText("lkeyStatusUnnamedKeyboard");
    return localizedFormat("lkeyStatusRealKeyboard", {keyboards.names.join(u", "_s)});
}

const char *keyboardKey(const QString &state, bool isAttached)
{
    if (state == DeviceKeys::stateWaiting)
        return "lkeyStatusKeyboardWaiting";
    if (state == DeviceKeys::stateSuspended)
        return "lkeyStatusKeyboardSuspended";
    if (state == DeviceKeys::stateFailed)
        return "lkeyStatusKeyboardFailed";
    return isAttached ? "lkeyStatusKeyboardAttached" : "lkeyStatusKeyboardAbsent";
}

QString ofKeyboard(const StatusState &state)
{
    const QString name = state.keyboards ? keyboardName(*state.keyboards) : localizedText("lkeyProductFamily");
    const QString deviceState = state.keyboards ? state.keyboards->state : QString();
    return localizedFormat(keyboardKey(deviceState, state.isAttached), {name});
}

QString ofProfile(const StatusState::ActiveProfile &profile)
{
    if (!profile.application)
        return localizedFormat("lkeyStatusProfile", {profile.name});
    if (profile.application->isEmpty())
        return localizedFormat("lkeyStatusProfileChosen", {profile.name});
    return localizedFormat("lkeyStatusProfileOfApplication", {profile.name, *profile.application});
}

/// The reason for a refusal.
QString reasonOf(int status)
{
    switch (static_cast<Status>(status)) {
    case Status::indexOutOfRange: return localizedText("lkeyStatusReasonGone");
    case Status::limitReached: return localizedText("lkeyStatusReasonFull");
    case Status::lastProfile: return localizedText("lkeyStatusReasonLastProfile");
    case Status::notSaved: return localizedText("lkeyStatusReasonNotSaved");
    case Status::deviceAbsent: return localizedText("lkeyStatusReasonNoKeyboard");
    case Status::nothingRecorded: return localizedText("lkeyStatusReasonNothingRecorded");
    case Status::busy: return localizedText("lkeyStatusReasonBusy");
    case Status::ok:
    case Status::unknownCommand:
    case Status::malformedRequest: break;
    }
    return localizedText("lkeyStatusReasonInvalid");
}

const char *keyOf(Event event)
{
    switch (event) {
    case Event::exportFailed: return "lkeyStatusExportFailed";
    case Event::importFailed: return "lkeyStatusImportFailed";
    case Event::notAProfile: return "lkeyStatusNotAProfile";
    case Event::notAMacro: return "lkeyStatusNotAMacro";
    case Event::notAnApplication: return "lkeyStatusNotAnApplication";
    case Event::macroFull: return "lkeyStatusMacroFull";
    case Event::newMacroKept: return "lkeyStatusNewMacroKept";
    case Event::refused: return "lkeyStatusRefused";
    case Event::noReply: return "lkeyStatusNoReply";
    case Event::noReplyToChange: return "lkeyStatusNoReplyToChange";
    case Event::lateReply: return "lkeyStatusLateReply";
    case Event::entryHasChanged: return "lkeyStatusEntryHasChanged";
    case Event::eventsNotCopied: return "lkeyStatusEventsNotCopied";
    case Event::recordingNotStored: return "lkeyStatusRecordingNotStored";
    case Event::recordingWithoutReply: return "lkeyStatusRecordingWithoutReply";
    case Event::cleanUpRefused: return "lkeyStatusCleanUpRefused";
    case Event::cleanUpWithoutReply: return "lkeyStatusCleanUpWithoutReply";
    case Event::canBeUndone: return "lkeyHistoryCanBeUndone";
    case Event::undone: return "lkeyHistoryUndone";
    case Event::redone: return "lkeyHistoryRedone";
    case Event::notUndone: return "lkeyHistoryNotUndone";
    case Event::notRedone: return "lkeyHistoryNotRedone";
    case Event::restored: return "lkeyHistoryRestored";
    case Event::notRestored: return "lkeyHistoryNotRestored";
    case Event::historyCleared: return "lkeyHistoryCleared";
    case Event::historyNotCleared: return "lkeyHistoryNotCleared";
    case Event::fileWaits: return "lkeyStatusFileWaits";
    case Event::fileWaitsForKeyboard: return "lkeyStatusFileWaitsForKeyboard";
    case Event::fileAdded: return "lkeyStatusFileAdded";
    case Event::notAddable: return "lkeyStatusNotAddable";
    case Event::notALocalFile: return "lkeyStatusNotALocalFile";
    case Event::fileRefused: return "lkeyStatusFileRefused";
    case Event::filesNotOpened: return "lkeyStatusFilesNotOpened";
    case Event::shellExtensionMissing: return "lkeyStatusShellExtensionMissing";
    case Event::settingsProblem: break;
    }
    return "lkeyStatusSettingsProblem";
}

QStringList argumentsOf(const StatusReport &report)
{
    switch (report.event) {
    case Event::refused:
    case Event::recordingNotStored:
    case Event::cleanUpRefused: return {reasonOf(report.number)};
    case Event::fileRefused: return {report.subject, reasonOf(report.number)};
    case Event::filesNotOpened:
    case Event::lateReply: return {QString::number(report.number)};
    case Event::notUndone:
    case Event::notRedone:
    case Event::notRestored: return {report.subject, StatusWords::ofHistoryError(report.reason)};
    case Event::historyNotCleared: return {StatusWords::ofHistoryError(report.reason)};
    default: return {report.subject, report.reason};
    }
}

} // namespace

QString StatusWords::ofState(const StatusState &state)
{
    QStringList parts;
    // The line is elided at its end, and this part asks the user to act.
    if (state.service == Service::running && state.needsShellExtension)
        parts += localizedFormat("lkeyStatusNeedsShellExtension", {FrontApplicationKeys::shellExtensionPackage});
    // Without a daemon that answers, nothing else is known.
    if (state.service == Service::running) {
        parts += ofKeyboard(state);
        if (state.profile)
            parts += ofProfile(*state.profile);
    }
    parts += localizedText(serviceKey(state.service));
    if (state.service == Service::running && state.profile)
        parts += localizedText(state.profile->isGameModeOn ? "lkeyStatusGameModeOn" : "lkeyStatusGameModeOff");
    return visibleText(parts.join(u"  ·  "_s), u' ');
}

QString StatusWords::ofReport(const StatusReport &report)
{
    return visibleText(localizedFormat(keyOf(report.event), argumentsOf(report)), u' ');
}

QString StatusWords::ofHistoryError(const QString &error)
{
    if (error == HistoryKeys::outdatedError || error == HistoryKeys::unknownError)
        return localizedText("lkeyHistoryReasonOutdated");
    if (error == HistoryKeys::notInEffectError)
        return localizedText("lkeyHistoryReasonNotInEffect");
    if (error == HistoryKeys::unreachableError)
        return localizedText("lkeyHistoryReasonUnreachable");
    if (error == HistoryKeys::invalidError)
        return localizedText("lkeyStatusReasonFull");
    if (error == HistoryKeys::notSavedError)
        return localizedText("lkeyStatusReasonNotSaved");
    return localizedText("lkeyHistoryReasonNoReply");
}

QString StatusWords::ofWait()
{
    return localizedText("lkeyStatusWaiting");
}
