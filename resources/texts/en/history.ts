<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@: %@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@: %@ (%@)</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>Unknown assignment</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>Profile %@: %@ keys assigned</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>Profile %@ added</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>Profile %@ deleted</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>Profile %@ renamed to %@</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>Profile %@ chosen</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>Profile %@ follows %@</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>Profile %@ follows no application</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>Profile %@: name shown on a switch</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>Profile %@: name not shown on a switch</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>Profile %@ changed</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>Profiles rearranged</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>Profile %@: lighting on</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>Profile %@: lighting off</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>Profile %@: brightness %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>Profile %@: colour %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>Profile %@: lighting effect changed</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>Macro %@ added</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>Macro %@ deleted</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>Macro %@ renamed to %@</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>Macro %@: %@ events recorded</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>Macro %@: %@ event recorded</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>Macro %@ changed</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>Macro %@: %@ events added</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>Macro %@: %@ event added</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>Macro %@: %@ events removed</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>Macro %@: %@ event removed</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>Macro %@: %@ events changed</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>Macro %@: %@ event changed</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>Macro %@: %@ delays set</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>Macro %@: %@ delay set</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>Game mode on</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>Game mode off</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>Several settings changed</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>All settings restored from %@</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>Settings changed elsewhere</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>Undone: %@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>Redone: %@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>Taken back: %@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>an earlier change</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>Profile %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>Profiles: %@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>Macro %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>Macro %@: %@ events</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>Macro %@: %@ event</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>Profile %@: lighting effect %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>Macro %@, event %@: %@ pressed after %@ ms</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>Macro %@, event %@: %@ released after %@ ms</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>Macro %@, event %@: pause of %@ ms</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>does not exist</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>Undo</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>Undo: %@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>Not undone: %@. The reason: %@.</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>Not redone: %@. The reason: %@.</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>the settings have changed meanwhile, and another change comes first now</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>the change has been taken back already</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>the settings were replaced in another way since</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>the keyboard service did not respond</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@. “Undo” or Ctrl+Z takes this back.</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>History…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>History</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>Search the changes</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>Time</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>Change</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>By</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>State</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>this window</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>the keyboard</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>another program</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>in effect</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>taken back</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>cannot be taken back</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>Restore</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>Forget…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>No change is in the history yet.</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>Select a change to see what it did.</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>Before</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>After</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>Effect of the change</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>The change has %@ parts; these are the first %@.</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>The state before is not known: %@.</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>“Restore” takes back this change alone.</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>“Restore” also takes back %@ later changes: %@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>“Restore” also takes back a later change: %@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>This change cannot be taken back: %@.</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>Do you want to delete the history?</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>All changes in this list, the daily backups and all previous versions of the settings are deleted. Deleted profiles and macros are then gone for good. Your settings stay.</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>Delete</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>Not taken back: %@. The reason: %@.</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>The history, the daily backups and the previous versions of the settings are deleted.</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>The history was not deleted: %@.</translation></message>
</context>
</TS>
