<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>Makros</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>Makros:</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>Hinzufügen</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>Löschen</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>Makrobefehle</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>Ereignisse des gewählten Makros:</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>Ereignisse</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>Ereignisbefehle</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>Wählen Sie ein Makro, um seine Ereignisse anzuzeigen.</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>Anhängen</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>Löschen</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>Ein Makro hinzufügen</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>Das gewählte Makro löschen</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>Am Ende des Makros weitere Ereignisse aufnehmen</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>Das gewählte Ereignis löschen</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>Es gibt noch keine Makros.</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>Fügen Sie ein Makro hinzu und nehmen Sie dann seine Ereignisse auf.</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>Dieses Makro enthält noch keine Ereignisse. Klicken Sie auf „Aufnehmen“ und drücken Sie Tasten auf der Tastatur.</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>Aufnahme läuft. Drücken Sie die Tasten des Makros und klicken Sie dann auf „Stopp“.</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>Drücken Sie die Tasten des Makros hier im Fenster: Die virtuelle Tastatur wird verwendet.</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>Drücken Sie auf „%@“ die Tasten des Makros.</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>Makro importieren</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>Makro exportieren</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>Makros (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>Aufnehmen</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>Stopp</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>Bearbeiten …</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>Nur Ereignisse in den ersten 256 Zeilen können bearbeitet werden.</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>Nur Ereignisse der ersten 256 Makros können bearbeitet werden.</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>Ereignis löschen</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>Alle Ereignisse löschen</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>Pause für alle übernehmen</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>Keine Pausen</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>Pause bearbeiten</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>Ereignis bearbeiten</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>Pause in Millisekunden:</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>Jetzige Pause: %@ ms. Geben Sie eine ganze Zahl ein.</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>Drücken Sie die Taste für dieses Ereignis:</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>Drücken Sie auf „%@“ die Taste für dieses Ereignis:</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>Makro „%@“ löschen?</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>Tasten, die dieses Makro abspielen, erhalten wieder ihre Standardfunktion. Sie können dies rückgängig machen.</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>Duplizieren</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>Makros suchen</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>Gefundene Makros: %@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>Kein Makro gefunden</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@ in %@</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>, </translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>Abgespielt von: %@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>Abgespielt von:</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>Keine Taste spielt dieses Makro ab.</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>%@ weitere …</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>Diese Taste auf dem Reiter „Tasten“ zeigen</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>Das Profil „%@“ aktivieren und diese Taste auf dem Reiter „Tasten“ zeigen</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>Die Taste eines anderen Profils aktiviert dieses Profil.</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>Klicken Sie hier, um Maustasten aufzunehmen.</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>Testen …</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>Ausgewähltes Makro testen</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>Makro testen</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>Hier sehen Sie, was der Computer von „%@“ empfangen würde. „Starten“ sendet ihm nichts.</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>Wiedergabe</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>Starten</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>Was der Computer empfangen würde</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>Klicken Sie auf „Starten“, um den Ablauf des Makros zu sehen.</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>Das Makro läuft. Drücken Sie Escape, um es zu stoppen.</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>Das Makro ist bis zum Ende gelaufen.</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>Gestoppt.</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>Gestoppt: Das Makro wurde geändert.</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>Gestoppt: Ein Test dauert höchstens 10 Minuten und hat höchstens 100.000 Ereignisse.</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>Dieses Makro gibt nichts wieder.</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>Zu viele Programme testen gerade Makros. Versuchen Sie es später noch einmal.</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>Der Tastaturdienst kann dieses Makro zurzeit nicht wiedergeben.</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>Drücken Sie hier die Taste des Makros:</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>Die Taste des Makros schreibt hier wirklich. Wenn Sie das Feld verlassen, schließt sich der Dialog.</translation></message>
</context>
</TS>
