<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>Macros</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>Macros:</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>Add</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>Delete</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>Macro commands</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>Events of the selected macro:</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>Events</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>Event commands</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>Select a macro to see its events.</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>Append</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>Delete</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>Add a macro</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>Delete the selected macro</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>Record more events at the end of the macro</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>Delete the selected event</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>There are no macros yet.</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>Add a macro, then record its events.</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>This macro has no events yet. Click Record, then press keys on the keyboard.</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>Recording. Press the keys of the macro, then click Stop.</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>Type the keys of the macro here: the virtual keyboard is in use.</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>Press the keys of the macro on “%@”.</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>Import macro</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>Export macro</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>Macros (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>Record</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>Stop</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>Edit…</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>Only events in the first 256 rows can be edited.</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>Only events of the first 256 macros can be edited.</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>Delete event</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>Delete all events</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>Copy delay</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>No delay</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>Edit delay</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>Edit event</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>Delay in milliseconds:</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>Present delay: %@ ms. Enter a whole number.</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>Press the key for this event:</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>Press the key for this event on “%@”:</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>Delete the macro “%@”?</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>Keys that play this macro return to their default function. You can undo this.</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>Duplicate</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>Search macros</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>Macros found: %@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>No macro found</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@ in %@</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>, </translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>Played by: %@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>Played by:</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>No key plays this macro.</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>%@ more…</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>Show this key on the Keys tab</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>Make the profile “%@” active and show this key on the Keys tab</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>A key of another profile makes that profile active.</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>Click here to record mouse buttons.</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>Try…</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>Try the selected macro</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>Try Macro</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>See what the computer would receive from “%@”. Start sends nothing to it.</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>Playback</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>Start</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>What the computer would receive</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>Click Start to see the macro play.</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>Playing. Press Escape to stop.</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>The macro has played to its end.</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>Stopped.</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>Stopped: the macro has changed.</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>Stopped: a try lasts at most 10 minutes and has at most 100,000 events.</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>This macro plays nothing.</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>Too many programs are trying macros. Try again later.</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>The keyboard service cannot play this macro now.</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>Press the macro’s key here:</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>The macro’s key really types here. Leaving this field closes the sheet.</translation></message>
</context>
</TS>
