// SPDX-License-Identifier: MIT
// The operations of the hub that the tabs call: each one sends one numbered command to the daemon.
#include "app/keyboardmaincontroller.h"

#include "app/historycontroller.h"
#include "app/typedkeys.h"
#include "base/devicesettings.h"
#include "base/historykeys.h"
#include "base/macroskeys.h"
#include "base/plistnumbers.h"
#include "base/propertylist.h"
#include "base/status.h"
#include "daemonlink/daemoncommands.h"
#include "daemonlink/daemonobjectcall.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/historyentries.h"
#include "daemonlink/latestreplyslot.h"
#include "daemonlink/replyport.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keymapping.h"
#include "lighting/backlight.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <array>
#include <utility>

using DaemonProtocol::Command;
using Event = StatusReport::Event;

namespace {

constexpr int keysTab = 0;

const QString replyPortName = DaemonProtocol::configuratorReplyPortName;

std::optional<QVariantMap> returnedDocument(const QVariantMap &reply)
{
    const QVariant document = reply.value(DaemonProtocol::returnDictionary);
    if (document.typeId() != QMetaType::QVariantMap)
        return {};
    return document.toMap();
}

bool isSuccess(const std::optional<QVariantMap> &reply)
{
    return reply && PlistNumbers::integerValue(reply->value(DaemonProtocol::returnStatus)) == 0;
}

enum class NamedRecord { none, profile, macro };

/// Returns the kind of record whose index the command has.
NamedRecord kindNamedBy(Command command)
{
    switch (command) {
    case Command::updateProfile:
    case Command::deleteProfile:
    case Command::switchProfile: return NamedRecord::profile;
    case Command::startMacroRecording:
    case Command::saveRecordedEvents:
    case Command::deleteMacro:
    case Command::removeEvent:
    case Command::updateEvent:
    case Command::renameMacro:
    case Command::readMacroLines:
    case Command::readEvent:
    case Command::removeAllEvents:
    case Command::setAllDelays:
    case Command::setDelay: return NamedRecord::macro;
    default: return NamedRecord::none;
    }
}

/// Whether the command changes events of a macro, and its reply has no document.
bool changesEvents(Command command)
{
    switch (command) {
    case Command::removeEvent:
    case Command::updateEvent:
    case Command::removeAllEvents:
    case Command::setAllDelays:
    case Command::setDelay: return true;
    default: return false;
    }
}

int macroIndexIn(const QVariantMap &request)
{
    for (const QVariant &index :
         {request.value(DaemonProtocol::macroId), request.value(DaemonProtocol::indexOfMacroSequence),
          MacroRecord::identity(request.value(DaemonProtocol::macroContents).toMap())}) {
        if (index.isValid())
            return PlistNumbers::integerValue(index);
    }
    return -1;
}

} // namespace

std::optional<QVariantMap> KeyboardMainController::replyTo(Command command, const QVariantMap &request)
{
    if (!isMeantRecord(command, request))
        return {};
    mAreMacroEventsOld = mAreMacroEventsOld || changesEvents(command);
    sendAndWait(command, request);
    const std::optional<QVariantMap> reply = LatestReplySlot::shared().take();
    reportOutcome(command, reply);
    return reply;
}

QVariant KeyboardMainController::recordNamedBy(Command command, const QVariantMap &request) const
{
    if (kindNamedBy(command) == NamedRecord::macro) {
        const QVariantMap macro = mMacrosArray.value(macroIndexIn(request)).toMap();
        const QVariant identity = MacroRecord::identity(macro);
        return identity.isValid() ? identity : macro;
    }
    return Backlight::withoutLight(
        mProfilesArray.value(PlistNumbers::integerValue(request.value(DaemonProtocol::profileId))).toMap());
}

bool KeyboardMainController::isMeantRecord(Command command, const QVariantMap &request)
{
    if (!mMayRowsHaveMoved || kindNamedBy(command) == NamedRecord::none)
        return true;
    const QVariant meant = recordNamedBy(command, request);
    mMayRowsHaveMoved = false; // cleared first: redrawing may ask for the lines of a macro
    const bool isKnown = readLatestSettings();
    redraw();
    if (!isKnown)
        return false; // reported already
    const bool isMeant = meant == recordNamedBy(command, request);
    if (!isMeant)
        report({.event = StatusReport::Event::entryHasChanged});
    return isMeant;
}

bool KeyboardMainController::succeeds(Command command, const QVariantMap &request)
{
    return isSuccess(replyTo(command, request));
}

void KeyboardMainController::redraw()
{
    setProperties();
    updateUISettings();
}

void KeyboardMainController::redrawUnchanged()
{
    const QScopedValueRollback asking(mMayAskForLines, false);
    redraw();
}

void KeyboardMainController::refresh()
{
    loadLatestSettings();
    redraw();
}

void KeyboardMainController::applyReturnedDocument(const std::optional<QVariantMap> &reply)
{
    const std::optional<QVariantMap> document = reply ? returnedDocument(*reply) : std::nullopt;
    if (!document)
        return redrawUnchanged();
    updateToLatestSettings(*document);
    redraw();
}

void KeyboardMainController::refreshIf(bool hasSucceeded)
{
    if (hasSucceeded)
        refresh();
    else
        redrawUnchanged();
}

// Profiles ------------------------------------------------------------------------------------------------------------

void KeyboardMainController::addNewProfileWithSettings(const QVariantMap &profile)
{
    applyReturnedDocument(replyTo(Command::addProfile, DaemonCommands::addProfile(mDevicePID, replyPortName, profile)));
}

void KeyboardMainController::addInactiveProfile(const QVariantMap &profile)
{
    applyReturnedDocument(
        replyTo(Command::addProfile, DaemonCommands::addInactiveProfile(mDevicePID, replyPortName, profile)));
}

void KeyboardMainController::updateProfileWithIDAndSettings(int profileID, const QVariantMap &settings)
{
    applyReturnedDocument(
        replyTo(Command::updateProfile, DaemonCommands::updateProfile(mDevicePID, replyPortName, profileID, settings)));
}

void KeyboardMainController::renameProfileWithProfileIDAndSettings(int profileID, const QVariantMap &profile)
{
    updateProfileWithIDAndSettings(profileID, profile);
}

void KeyboardMainController::updateProfileWithSettings(const QVariantMap &settings)
{
    updateProfileWithIDAndSettings(mProfilesController->profilesTableView()->selectedRow(), settings);
}

void KeyboardMainController::updateKeySettings(const QVariantMap &settings)
{
    updateProfileWithSettings(settings);
}

void KeyboardMainController::updateValueForSetting(const QVariantMap &settings)
{
    updateProfileWithSettings(settings);
}

void KeyboardMainController::updateProfileKeyInDictionaryWithDictionary(const QVariantList &profiles)
{
    const QScopedValueRollback cleaningUp(mIsCleaningUp, true);
    // The callers reload the document themselves, so the returned one is ignored.
    (void)replyTo(Command::replaceAllProfiles, DaemonCommands::replaceAllProfiles(mDevicePID, replyPortName, profiles));
}

void KeyboardMainController::deleteProfileWithProfileID(int profileID)
{
    const QVariantMap request = DaemonCommands::deleteProfile(mDevicePID, replyPortName, profileID);
    if (!isMeantRecord(Command::deleteProfile, request))
        return;
    mIsDeleteProfile = true;
    mHasDeletionReply = false;
    mDeletedProfileID = profileID;
    mDeletedProfile = mProfilesArray.value(profileID).toMap();
    updateProfilesControlState(false);
    sendAndWait(Command::deleteProfile, request);
    reportOutcome(Command::deleteProfile, LatestReplySlot::shared().read());
    // Deliberate: without a returned document the slot stays unchanged, and the tab stays disabled and busy.
    mMayRowsHaveMoved = true; // also after a reply without a document: it may be the late one of an earlier command
    const std::optional<QVariantMap> reply = LatestReplySlot::shared().takeIf(
        [](const QVariantMap &latest) { return returnedDocument(latest).has_value(); });
    if (!reply)
        return;
    mHasDeletionReply = true;
    mMayRowsHaveMoved = false;
    {
        const QScopedValueRollback cleaningUp(mIsCleaningUp, true);
        switchProfileWithID(std::max(profileID - 1, 0));
    }
    if (!mIsDeleteProfile)
        return;
    // The switch failed, but the rows below the deleted one have moved.
    updateToLatestSettings(*returnedDocument(*reply));
    redraw();
}

void KeyboardMainController::switchProfileWithID(int profileID)
{
    const std::optional<QVariantMap> reply =
        replyTo(Command::switchProfile, DaemonCommands::switchProfile(mDevicePID, replyPortName, profileID));
    if (const std::optional<QVariantMap> document = reply ? returnedDocument(*reply) : std::nullopt) {
        updateToLatestSettings(*document);
        forgetDeletionThatFailed();
        setProperties();
        if (mIsDeleteProfile) {
            mKeysController->removeDeletedMacroProfileMappingsForMapping(mDeletedProfileID,
                                                                         int(KeyMappings::Assignment::switchProfile));
            loadLatestSettings();
            setProperties();
        }
        updateUISettings();
        mDeletedProfileID = 0;
        mIsDeleteProfile = false;
    } else {
        redrawUnchanged();
    }
    updateProfilesControlState(true);
}

// Macros --------------------------------------------------------------------------------------------------------------

void KeyboardMainController::addMacroWithSettings(const QVariantMap &macro)
{
    refreshIf(succeeds(Command::addMacro, DaemonCommands::addMacro(mDevicePID, replyPortName, macro)));
}

void KeyboardMainController::renameMacroAtIndexWithNewName(int macroIndex, const QString &newName)
{
    refreshIf(
        succeeds(Command::renameMacro, DaemonCommands::renameMacro(mDevicePID, replyPortName, macroIndex, newName)));
}

void KeyboardMainController::deleteMacroAtIndex(int macroIndex)
{
    const std::optional<QVariantMap> reply =
        replyTo(Command::deleteMacro, DaemonCommands::deleteMacro(mDevicePID, replyPortName, macroIndex));
    const bool isDeleted = isSuccess(reply);
    // The keys tab still holds the old list of macros, so the clean-up includes the deleted macro in its count.
    // Deliberate.
    if (isDeleted)
        mKeysController->removeDeletedMacroProfileMappingsForMapping(macroIndex,
                                                                     int(KeyMappings::Assignment::playMacro));
    mMayRowsHaveMoved = !reply || isDeleted; // until a document arrives
    refreshIf(isDeleted);
}

void KeyboardMainController::startMacroRecordingMacroIndex(int appendFlag, int macroIndex)
{
    (void)replyTo(Command::startMacroRecording,
                  DaemonCommands::startMacroRecording(mDevicePID, replyPortName, appendFlag, macroIndex));
}

void KeyboardMainController::stopMacroRecording()
{
    (void)replyTo(Command::stopMacroRecording, DaemonCommands::stopMacroRecording(mDevicePID, replyPortName));
}

void KeyboardMainController::saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording)
{
    refreshIf(succeeds(Command::saveRecordedEvents,
                       DaemonCommands::saveRecordedEvents(mDevicePID, replyPortName, macroIndex, isNewRecording)));
}

void KeyboardMainController::getMacroDetailsForMacroAtIndex(int macroIndex)
{
    if (!mMayAskForLines)
        return;
    const std::optional<QVariantMap> reply =
        replyTo(Command::readMacroLines, DaemonCommands::readMacroLines(mDevicePID, replyPortName, macroIndex));
    const QVariant lines = reply ? reply->value(DaemonProtocol::macroSequences) : QVariant();
    if (lines.typeId() == QMetaType::QVariantList)
        mMacrosController->updateSelectedMacroWithMacroDetails(lines.toList());
}

bool KeyboardMainController::reloadMacros()
{
    if (mAreMacroEventsOld)
        refresh();
    return !mAreMacroEventsOld;
}

void KeyboardMainController::recordButton(int button, bool isDown)
{
    // From the reply port's connection: the daemon takes buttons only from the program that owns the port.
    if (mLocalMessagePort)
        mLocalMessagePort->post(daemonObjectCall(MacrosKeys::objectPath, MacrosKeys::interfaceName,
                                                 MacrosKeys::recordButtonMethod, {uint(button), isDown}));
}

void KeyboardMainController::startTryMacroIndex(int repeat, int macroIndex)
{
    mMacroTry.start(MacroRecord::macroId(mMacrosArray.value(macroIndex).toMap()), repeat);
}

void KeyboardMainController::removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex)
{
    (void)replyTo(Command::removeEvent, DaemonCommands::removeEvent(mDevicePID, replyPortName, eventIndex, macroIndex));
}

void KeyboardMainController::removeAllEventsForMacroAtIndex(int macroIndex)
{
    (void)replyTo(Command::removeAllEvents, DaemonCommands::removeAllEvents(mDevicePID, replyPortName, macroIndex));
}

void KeyboardMainController::setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay)
{
    (void)replyTo(Command::setAllDelays,
                  DaemonCommands::setAllDelays(mDevicePID, replyPortName, delay, macroIndex, hasNoDelay));
}

void KeyboardMainController::setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex)
{
    (void)replyTo(Command::setDelay,
                  DaemonCommands::setDelay(mDevicePID, replyPortName, delay, eventIndex, macroIndex));
}

void KeyboardMainController::updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex,
                                                                 const QVariantMap &event)
{
    if (!succeeds(Command::updateEvent,
                  DaemonCommands::updateEvent(mDevicePID, replyPortName, macroIndex, eventIndex, event)))
        return;
    mMacrosController->setStateOfTableButtonsWithState(true);
    mMacrosController->setStateOfMacroTableWithState(true);
}

QVariantMap KeyboardMainController::getSequenceDetailsEventIndex(int macroIndex, int eventIndex)
{
    const std::optional<QVariantMap> reply =
        replyTo(Command::readEvent, DaemonCommands::readEvent(mDevicePID, replyPortName, macroIndex, eventIndex));
    return reply.value_or(QVariantMap()).value(DaemonProtocol::sequenceInMacro).toMap();
}

void KeyboardMainController::showKeyOfProfile(int keyCode, int profileIndex)
{
    const auto isActive = [this, profileIndex] {
        return DeviceSettings(mDeviceSettingsDict).activeProfileIndex() == profileIndex;
    };
    if (!isActive())
        switchProfileWithID(profileIndex);
    if (!isActive())
        return; // the status line has the reason
    selectTabAtIndex(keysTab);
    mKeysController->selectKeys({keyCode});
    if (KeyButton *key = mKeysController->currentButton())
        key->setFocus(Qt::OtherFocusReason);
}

bool KeyboardMainController::replaceEventsOfMacroAtIndex(int macroIndex, const QVariantList &readEvents,
                                                         const QVariantList &events)
{
    const int macroId = MacroRecord::macroId(mMacrosArray.value(macroIndex).toMap());
    const std::optional<QByteArray> bytes = PropertyList::writeBinary(events);
    if (!bytes) {
        report({.event = Event::refused, .number = int(Status::malformedRequest)});
        return false;
    }
    const QDBusMessage call = daemonObjectCall(
        MacrosKeys::objectPath, MacrosKeys::interfaceName, MacrosKeys::replace,
        {uint(macroId), MacroRecord::digest(readEvents), *bytes, QString(DaemonProtocol::configuratorIdentifier)});
    // Its own changes are not announced to the window, so a late one must be read.
    const std::optional<QDBusMessage> reply = callAndWait(call, [this](const QDBusMessage &) { refresh(); });
    if (!reply) {
        report({.event = Event::noReplyToChange});
        redrawUnchanged();
        return false;
    }
    if (reply->type() == QDBusMessage::ReplyMessage) {
        mStatus.changeSucceeded();
        refresh();
        return true;
    }
    reportRefusedReplacement(reply->errorName());
    refresh();
    return false;
}

void KeyboardMainController::reportRefusedReplacement(const QString &error)
{
    if (error == MacrosKeys::changedError)
        return report({.event = Event::entryHasChanged});
    struct Reason
    {
        MacrosKeys::Key error;
        Status status;
    };
    // The tab makes only events that can be stored, so only their number can be the reason.
    constexpr std::array reasons{
        Reason{MacrosKeys::goneError, Status::indexOutOfRange}, Reason{MacrosKeys::invalidError, Status::limitReached},
        Reason{MacrosKeys::notSavedError, Status::notSaved}, Reason{MacrosKeys::busyError, Status::busy}};
    const auto found = std::ranges::find(reasons, error, &Reason::error);
    report({.event = Event::refused, .number = int(found == reasons.end() ? Status::unknownCommand : found->status)});
}

void KeyboardMainController::startEditHID()
{
    (void)replyTo(Command::startEditHid, DaemonCommands::startEditHid(mDevicePID, replyPortName));
}

// Keys ----------------------------------------------------------------------------------------------------------------

void KeyboardMainController::startSingleKeyRecording()
{
    (void)replyTo(Command::startSingleKeyRecording, DaemonCommands::startSingleKeyRecording(mDevicePID, replyPortName));
}

void KeyboardMainController::stopSingleKeyRecording()
{
    (void)replyTo(Command::stopSingleKeyRecording, DaemonCommands::stopSingleKeyRecording(mDevicePID, replyPortName));
}

uint KeyboardMainController::newestChange()
{
    const std::optional<QDBusMessage> reply = callAndWait(
        daemonObjectCall(HistoryKeys::objectPath, HistoryKeys::interfaceName, QLatin1StringView("Next")), {});
    for (const QVariantMap &entry : historyEntries(reply.value_or(QDBusMessage()).arguments().value(0))) {
        if (entry.value(HistoryKeys::next).toString() == HistoryKeys::nextUndo)
            return entry.value(HistoryKeys::id).toUInt();
    }
    return 0;
}

void KeyboardMainController::beginAction()
{
    mFirstChange = newestChange();
}

void KeyboardMainController::endAction()
{
    const uint first = std::exchange(mFirstChange, 0);
    if (first == 0)
        return;
    const std::optional<QDBusMessage> reply =
        callAndWait(daemonObjectCall(HistoryKeys::objectPath, HistoryKeys::interfaceName, QLatin1StringView("Join"),
                                     {first, QString(DaemonProtocol::configuratorIdentifier)}),
                    {});
    // A refusal leaves several entries, which undo takes back one by one.
    if (reply && reply->type() == QDBusMessage::ErrorMessage)
        mHistory->passOver(newestChange());
}

// Device --------------------------------------------------------------------------------------------------------------

void KeyboardMainController::releaseQuillDeviceInstance()
{
    mTypedKeys->listen(nullptr);
    sendDaemonRequest(DaemonCommands::releaseDevice(mDevicePID), int(Command::releaseDevice));
}
