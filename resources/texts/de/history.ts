<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@: %@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@: %@ (%@)</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>Unbekannte Belegung</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>Profil %@: %@ Tasten belegt</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>Profil %@ hinzugefügt</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>Profil %@ gelöscht</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>Profil %@ in %@ umbenannt</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>Profil %@ gewählt</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>Profil %@ folgt %@</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>Profil %@ folgt keiner Anwendung</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>Profil %@: Name wird beim Wechsel angezeigt</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>Profil %@: Name wird beim Wechsel nicht angezeigt</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>Profil %@ geändert</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>Profile umgeordnet</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>Profil %@: Beleuchtung ein</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>Profil %@: Beleuchtung aus</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>Profil %@: Helligkeit %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>Profil %@: Farbe %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>Profil %@: Lichteffekt geändert</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>Makro %@ hinzugefügt</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>Makro %@ gelöscht</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>Makro %@ in %@ umbenannt</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>Makro %@: %@ Ereignisse aufgezeichnet</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>Makro %@: %@ Ereignis aufgezeichnet</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>Makro %@ geändert</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>Makro %@: %@ Ereignisse hinzugefügt</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>Makro %@: %@ Ereignis hinzugefügt</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>Makro %@: %@ Ereignisse entfernt</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>Makro %@: %@ Ereignis entfernt</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>Makro %@: %@ Ereignisse geändert</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>Makro %@: %@ Ereignis geändert</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>Makro %@: %@ Pausen gesetzt</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>Makro %@: %@ Pause gesetzt</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>Spielmodus ein</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>Spielmodus aus</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>Mehrere Einstellungen geändert</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>Alle Einstellungen aus %@ wiederhergestellt</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>Einstellungen anderweitig geändert</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>Rückgängig gemacht: %@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>Wiederholt: %@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>Zurückgenommen: %@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>eine frühere Änderung</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>Profil %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>Profile: %@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>Makro %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>Makro %@: %@ Ereignisse</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>Makro %@: %@ Ereignis</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>Profil %@: Lichteffekt %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>Makro %@, Ereignis %@: %@ nach %@ ms gedrückt</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>Makro %@, Ereignis %@: %@ nach %@ ms losgelassen</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>Makro %@, Ereignis %@: Pause von %@ ms</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>nicht vorhanden</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>Rückgängig</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>Rückgängig: %@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>Nicht rückgängig gemacht: %@. Der Grund: %@.</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>Nicht wiederholt: %@. Der Grund: %@.</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>Die Einstellungen haben sich inzwischen geändert, jetzt kommt eine andere Änderung zuerst</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>Die Änderung ist schon zurückgenommen</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>Die Einstellungen wurden seither auf andere Weise ersetzt</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>Der Tastaturdienst hat nicht geantwortet</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@. „Rückgängig“ oder Strg+Z nimmt das zurück.</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>Verlauf…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>Verlauf</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>In den Änderungen suchen</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>Zeit</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>Änderung</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>Von</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>Zustand</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>diesem Fenster</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>der Tastatur</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>einem anderen Programm</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>gilt</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>zurückgenommen</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>nicht zurückzunehmen</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>Wiederherstellen</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>Vergessen…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>Noch enthält der Verlauf keine Änderung.</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>Wählen Sie eine Änderung aus, um zu sehen, was sie bewirkt hat.</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>Vorher</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>Nachher</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>Wirkung der Änderung</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>Die Änderung hat %@ Teile; hier stehen die ersten %@.</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>Der Zustand vorher ist nicht bekannt: %@.</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>„Wiederherstellen“ nimmt nur diese Änderung zurück.</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>„Wiederherstellen“ nimmt auch %@ spätere Änderungen zurück: %@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>„Wiederherstellen“ nimmt auch eine spätere Änderung zurück: %@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>Diese Änderung lässt sich nicht zurücknehmen: %@.</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>Möchten Sie den Verlauf löschen?</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>Alle Änderungen in dieser Liste, die täglichen Sicherungen und alle vorherigen Versionen der Einstellungen werden gelöscht. Gelöschte Profile und Makros sind dann endgültig weg. Ihre Einstellungen bleiben.</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>Löschen</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>Nicht zurückgenommen: %@. Der Grund: %@.</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>Der Verlauf, die täglichen Sicherungen und die vorherigen Versionen der Einstellungen sind gelöscht.</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>Der Verlauf wurde nicht gelöscht: %@.</translation></message>
</context>
</TS>
