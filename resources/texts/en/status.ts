<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- The status line at the bottom of the window. -->
    <!-- The state. -->
    <message id="lkeyStatusServiceAwaited"><source>lkeyStatusServiceAwaited</source><translation>Waiting for the keyboard service</translation></message>
    <message id="lkeyStatusServiceRunning"><source>lkeyStatusServiceRunning</source><translation>Service: running</translation></message>
    <message id="lkeyStatusServiceSilent"><source>lkeyStatusServiceSilent</source><translation>Service: not responding</translation></message>
    <message id="lkeyStatusServiceAbsent"><source>lkeyStatusServiceAbsent</source><translation>Service: not running</translation></message>
    <message id="lkeyStatusVirtualKeyboard"><source>lkeyStatusVirtualKeyboard</source><translation>%@ (virtual)</translation></message>
    <message id="lkeyStatusRealKeyboard"><source>lkeyStatusRealKeyboard</source><translation>%@ (real)</translation></message>
    <message id="lkeyStatusUnnamedKeyboard"><source>lkeyStatusUnnamedKeyboard</source><translation>real keyboard</translation></message>
    <message id="lkeyStatusKeyboardAttached"><source>lkeyStatusKeyboardAttached</source><translation>Keyboard: %@, connected</translation></message>
    <message id="lkeyStatusKeyboardAbsent"><source>lkeyStatusKeyboardAbsent</source><translation>Keyboard: %@, not connected</translation></message>
    <message id="lkeyStatusKeyboardWaiting"><source>lkeyStatusKeyboardWaiting</source><translation>Keyboard: %@, usable once all keys are up</translation></message>
    <message id="lkeyStatusKeyboardSuspended"><source>lkeyStatusKeyboardSuspended</source><translation>Keyboard: %@, released by Backspace, Escape and Return</translation></message>
    <message id="lkeyStatusKeyboardFailed"><source>lkeyStatusKeyboardFailed</source><translation>Keyboard: %@, cannot be used; “kestractl status” shows why</translation></message>
    <message id="lkeyStatusProfile"><source>lkeyStatusProfile</source><translation>Profile: %@</translation></message>
    <message id="lkeyStatusProfileChosen"><source>lkeyStatusProfileChosen</source><translation>Profile: %@, chosen by hand</translation></message>
    <message id="lkeyStatusProfileOfApplication"><source>lkeyStatusProfileOfApplication</source><translation>Profile: %@, because %@ is in front</translation></message>
    <message id="lkeyStatusGameModeOn"><source>lkeyStatusGameModeOn</source><translation>Game mode: on</translation></message>
    <message id="lkeyStatusGameModeOff"><source>lkeyStatusGameModeOff</source><translation>Game mode: off</translation></message>
    <message id="lkeyStatusNeedsShellExtension"><source>lkeyStatusNeedsShellExtension</source><translation>For profiles that follow windows, install and enable %@</translation></message>
    <!-- The wait for an answer. -->
    <message id="lkeyStatusWaiting"><source>lkeyStatusWaiting</source><translation>Waiting for the keyboard service to respond…</translation></message>
    <message id="lkeyStatusLateReply"><source>lkeyStatusLateReply</source><translation>The keyboard service took %@ s to respond.</translation></message>
    <!-- Events. -->
    <message id="lkeyStatusExportFailed"><source>lkeyStatusExportFailed</source><translation>The file “%@” could not be written: %@.</translation></message>
    <message id="lkeyStatusImportFailed"><source>lkeyStatusImportFailed</source><translation>The file “%@” could not be read: %@.</translation></message>
    <message id="lkeyStatusNotAProfile"><source>lkeyStatusNotAProfile</source><translation>The file “%@” is not a profile.</translation></message>
    <message id="lkeyStatusNotAMacro"><source>lkeyStatusNotAMacro</source><translation>The file “%@” is not a macro.</translation></message>
    <message id="lkeyStatusNotAnApplication"><source>lkeyStatusNotAnApplication</source><translation>“%@” is not an application.</translation></message>
    <message id="lkeyStatusMacroFull"><source>lkeyStatusMacroFull</source><translation>The macro “%@” is full. Further keys are not recorded.</translation></message>
    <message id="lkeyStatusNewMacroKept"><source>lkeyStatusNewMacroKept</source><translation>The new macro “%@” is stored, but no key plays it: the profile or the keyboard has changed.</translation></message>
    <message id="lkeyStatusRefused"><source>lkeyStatusRefused</source><translation>The keyboard service has refused this: %@.</translation></message>
    <message id="lkeyStatusNoReply"><source>lkeyStatusNoReply</source><translation>The keyboard service did not respond.</translation></message>
    <message id="lkeyStatusNoReplyToChange"><source>lkeyStatusNoReplyToChange</source><translation>The keyboard service did not respond. The change may be missing.</translation></message>
    <message id="lkeyStatusEntryHasChanged"><source>lkeyStatusEntryHasChanged</source><translation>The change was not made: the list has changed meanwhile.</translation></message>
    <message id="lkeyStatusEventsNotCopied"><source>lkeyStatusEventsNotCopied</source><translation>The events were not copied: one of them is not a key, mouse button or pause that a macro can play.</translation></message>
    <message id="lkeyStatusRecordingNotStored"><source>lkeyStatusRecordingNotStored</source><translation>The recording could not be stored: %@.</translation></message>
    <message id="lkeyStatusRecordingWithoutReply"><source>lkeyStatusRecordingWithoutReply</source><translation>The keyboard service did not respond. The recording may be missing.</translation></message>
    <message id="lkeyStatusCleanUpRefused"><source>lkeyStatusCleanUpRefused</source><translation>The entry was deleted, but the keys that used it were not cleared: %@.</translation></message>
    <message id="lkeyStatusCleanUpWithoutReply"><source>lkeyStatusCleanUpWithoutReply</source><translation>The entry was deleted, but then the keyboard service did not respond. The keys that used it may not have been cleared.</translation></message>
    <message id="lkeyStatusSettingsProblem"><source>lkeyStatusSettingsProblem</source><translation>Problem with the keyboard settings: %@</translation></message>
    <message id="lkeyStatusShellExtensionMissing"><source>lkeyStatusShellExtensionMissing</source><translation>Profiles follow windows of GNOME only with the package “%@”, installed and enabled.</translation></message>
    <!-- The reason at the end of lkeyStatusRefused, lkeyStatusRecordingNotStored and lkeyStatusCleanUpRefused. -->
    <message id="lkeyStatusReasonGone"><source>lkeyStatusReasonGone</source><translation>the entry no longer exists</translation></message>
    <message id="lkeyStatusReasonFull"><source>lkeyStatusReasonFull</source><translation>there is no more room</translation></message>
    <message id="lkeyStatusReasonLastProfile"><source>lkeyStatusReasonLastProfile</source><translation>the last profile cannot be deleted</translation></message>
    <message id="lkeyStatusReasonNotSaved"><source>lkeyStatusReasonNotSaved</source><translation>the settings could not be written to the disk</translation></message>
    <message id="lkeyStatusReasonNoKeyboard"><source>lkeyStatusReasonNoKeyboard</source><translation>the keyboard is not connected</translation></message>
    <message id="lkeyStatusReasonNothingRecorded"><source>lkeyStatusReasonNothingRecorded</source><translation>the service has no recorded keys</translation></message>
    <message id="lkeyStatusReasonBusy"><source>lkeyStatusReasonBusy</source><translation>it is busy</translation></message>
    <message id="lkeyStatusReasonInvalid"><source>lkeyStatusReasonInvalid</source><translation>it does not accept these values</translation></message>
    <message id="lkeyStatusFileWaits"><source>lkeyStatusFileWaits</source><translation>The file “%@” opens when the open sheet, name or recording has ended.</translation></message>
    <message id="lkeyStatusFileWaitsForKeyboard"><source>lkeyStatusFileWaitsForKeyboard</source><translation>The file “%@” opens when the keyboard is ready.</translation></message>
    <message id="lkeyStatusFileAdded"><source>lkeyStatusFileAdded</source><translation>The file “%@” was added.</translation></message>
    <message id="lkeyStatusNotAddable"><source>lkeyStatusNotAddable</source><translation>The file “%@” is neither a profile nor a macro.</translation></message>
    <message id="lkeyStatusNotALocalFile"><source>lkeyStatusNotALocalFile</source><translation>“%@” is not a file on this computer.</translation></message>
    <message id="lkeyStatusFileRefused"><source>lkeyStatusFileRefused</source><translation>The file “%@” was not added: %@.</translation></message>
    <message id="lkeyStatusFilesNotOpened"><source>lkeyStatusFilesNotOpened</source><translation>Files that were not opened, because too many are already waiting: %@</translation></message>
</context>
</TS>
