<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- The status line at the bottom of the window. -->
    <!-- The state. -->
    <message id="lkeyStatusServiceAwaited"><source>lkeyStatusServiceAwaited</source><translation>Warten auf den Tastaturdienst</translation></message>
    <message id="lkeyStatusServiceRunning"><source>lkeyStatusServiceRunning</source><translation>Dienst: läuft</translation></message>
    <message id="lkeyStatusServiceSilent"><source>lkeyStatusServiceSilent</source><translation>Dienst: antwortet nicht</translation></message>
    <message id="lkeyStatusServiceAbsent"><source>lkeyStatusServiceAbsent</source><translation>Dienst: läuft nicht</translation></message>
    <message id="lkeyStatusVirtualKeyboard"><source>lkeyStatusVirtualKeyboard</source><translation>%@ (virtuell)</translation></message>
    <message id="lkeyStatusRealKeyboard"><source>lkeyStatusRealKeyboard</source><translation>%@ (echt)</translation></message>
    <message id="lkeyStatusUnnamedKeyboard"><source>lkeyStatusUnnamedKeyboard</source><translation>echte Tastatur</translation></message>
    <message id="lkeyStatusKeyboardAttached"><source>lkeyStatusKeyboardAttached</source><translation>Tastatur: %@, angeschlossen</translation></message>
    <message id="lkeyStatusKeyboardAbsent"><source>lkeyStatusKeyboardAbsent</source><translation>Tastatur: %@, nicht angeschlossen</translation></message>
    <message id="lkeyStatusKeyboardWaiting"><source>lkeyStatusKeyboardWaiting</source><translation>Tastatur: %@, verwendbar, sobald keine Taste gedrückt ist</translation></message>
    <message id="lkeyStatusKeyboardSuspended"><source>lkeyStatusKeyboardSuspended</source><translation>Tastatur: %@, mit Rücktaste, Escape und Eingabetaste freigegeben</translation></message>
    <message id="lkeyStatusKeyboardFailed"><source>lkeyStatusKeyboardFailed</source><translation>Tastatur: %@, nicht verwendbar; „kestractl status“ zeigt den Grund</translation></message>
    <message id="lkeyStatusProfile"><source>lkeyStatusProfile</source><translation>Profil: %@</translation></message>
    <message id="lkeyStatusProfileChosen"><source>lkeyStatusProfileChosen</source><translation>Profil: %@, von Hand gewählt</translation></message>
    <message id="lkeyStatusProfileOfApplication"><source>lkeyStatusProfileOfApplication</source><translation>Profil: %@, weil %@ im Vordergrund ist</translation></message>
    <message id="lkeyStatusGameModeOn"><source>lkeyStatusGameModeOn</source><translation>Spielmodus: ein</translation></message>
    <message id="lkeyStatusGameModeOff"><source>lkeyStatusGameModeOff</source><translation>Spielmodus: aus</translation></message>
    <message id="lkeyStatusNeedsShellExtension"><source>lkeyStatusNeedsShellExtension</source><translation>Damit Profile Fenstern folgen: %@ installieren und einschalten</translation></message>
    <!-- The wait for an answer. -->
    <message id="lkeyStatusWaiting"><source>lkeyStatusWaiting</source><translation>Warten auf eine Antwort des Tastaturdiensts …</translation></message>
    <message id="lkeyStatusLateReply"><source>lkeyStatusLateReply</source><translation>Der Tastaturdienst hat erst nach %@ s geantwortet.</translation></message>
    <!-- Events. -->
    <message id="lkeyStatusExportFailed"><source>lkeyStatusExportFailed</source><translation>Die Datei „%@“ konnte nicht geschrieben werden: %@.</translation></message>
    <message id="lkeyStatusImportFailed"><source>lkeyStatusImportFailed</source><translation>Die Datei „%@“ konnte nicht gelesen werden: %@.</translation></message>
    <message id="lkeyStatusNotAProfile"><source>lkeyStatusNotAProfile</source><translation>Die Datei „%@“ ist kein Profil.</translation></message>
    <message id="lkeyStatusNotAMacro"><source>lkeyStatusNotAMacro</source><translation>Die Datei „%@“ ist kein Makro.</translation></message>
    <message id="lkeyStatusNotAnApplication"><source>lkeyStatusNotAnApplication</source><translation>„%@“ ist keine Anwendung.</translation></message>
    <message id="lkeyStatusMacroFull"><source>lkeyStatusMacroFull</source><translation>Das Makro „%@“ ist voll. Weitere Tasten werden nicht aufgenommen.</translation></message>
    <message id="lkeyStatusNewMacroKept"><source>lkeyStatusNewMacroKept</source><translation>Das neue Makro „%@“ ist gespeichert, aber keine Taste spielt es ab: Das Profil oder die Tastatur hat gewechselt.</translation></message>
    <message id="lkeyStatusRefused"><source>lkeyStatusRefused</source><translation>Der Tastaturdienst hat das abgelehnt: %@.</translation></message>
    <message id="lkeyStatusNoReply"><source>lkeyStatusNoReply</source><translation>Der Tastaturdienst hat nicht geantwortet.</translation></message>
    <message id="lkeyStatusNoReplyToChange"><source>lkeyStatusNoReplyToChange</source><translation>Der Tastaturdienst hat nicht geantwortet. Die Änderung fehlt möglicherweise.</translation></message>
    <message id="lkeyStatusEntryHasChanged"><source>lkeyStatusEntryHasChanged</source><translation>Die Änderung wurde nicht vorgenommen: Die Liste hat sich inzwischen geändert.</translation></message>
    <message id="lkeyStatusEventsNotCopied"><source>lkeyStatusEventsNotCopied</source><translation>Die Ereignisse wurden nicht kopiert: Darunter ist eines, das keine spielbare Taste, Maustaste oder Pause ist.</translation></message>
    <message id="lkeyStatusRecordingNotStored"><source>lkeyStatusRecordingNotStored</source><translation>Die Aufnahme konnte nicht gespeichert werden: %@.</translation></message>
    <message id="lkeyStatusRecordingWithoutReply"><source>lkeyStatusRecordingWithoutReply</source><translation>Der Tastaturdienst hat nicht geantwortet. Die Aufnahme fehlt möglicherweise.</translation></message>
    <message id="lkeyStatusCleanUpRefused"><source>lkeyStatusCleanUpRefused</source><translation>Der Eintrag wurde gelöscht, die Belegung der zugehörigen Tasten aber nicht: %@.</translation></message>
    <message id="lkeyStatusCleanUpWithoutReply"><source>lkeyStatusCleanUpWithoutReply</source><translation>Der Eintrag wurde gelöscht, aber danach hat der Tastaturdienst nicht geantwortet. Die zugehörigen Tasten sind möglicherweise noch belegt.</translation></message>
    <message id="lkeyStatusSettingsProblem"><source>lkeyStatusSettingsProblem</source><translation>Problem mit den Tastatureinstellungen: %@</translation></message>
    <message id="lkeyStatusShellExtensionMissing"><source>lkeyStatusShellExtensionMissing</source><translation>Profile folgen Fenstern unter GNOME nur mit dem Paket „%@“, installiert und eingeschaltet.</translation></message>
    <!-- The reason at the end of lkeyStatusRefused, lkeyStatusRecordingNotStored and lkeyStatusCleanUpRefused. -->
    <message id="lkeyStatusReasonGone"><source>lkeyStatusReasonGone</source><translation>Der Eintrag ist nicht mehr vorhanden</translation></message>
    <message id="lkeyStatusReasonFull"><source>lkeyStatusReasonFull</source><translation>Es ist kein Platz mehr</translation></message>
    <message id="lkeyStatusReasonLastProfile"><source>lkeyStatusReasonLastProfile</source><translation>Das letzte Profil kann nicht gelöscht werden</translation></message>
    <message id="lkeyStatusReasonNotSaved"><source>lkeyStatusReasonNotSaved</source><translation>Die Einstellungen konnten nicht auf die Festplatte geschrieben werden</translation></message>
    <message id="lkeyStatusReasonNoKeyboard"><source>lkeyStatusReasonNoKeyboard</source><translation>Die Tastatur ist nicht angeschlossen</translation></message>
    <message id="lkeyStatusReasonNothingRecorded"><source>lkeyStatusReasonNothingRecorded</source><translation>Der Dienst hat keine aufgenommenen Tasten</translation></message>
    <message id="lkeyStatusReasonBusy"><source>lkeyStatusReasonBusy</source><translation>Der Dienst ist überlastet</translation></message>
    <message id="lkeyStatusReasonInvalid"><source>lkeyStatusReasonInvalid</source><translation>Der Dienst akzeptiert diese Werte nicht</translation></message>
    <message id="lkeyStatusFileWaits"><source>lkeyStatusFileWaits</source><translation>Die Datei „%@“ wird geöffnet, sobald das offene Dialogfenster, die Namenseingabe oder die Aufnahme beendet ist.</translation></message>
    <message id="lkeyStatusFileWaitsForKeyboard"><source>lkeyStatusFileWaitsForKeyboard</source><translation>Die Datei „%@“ wird geöffnet, sobald die Tastatur bereit ist.</translation></message>
    <message id="lkeyStatusFileAdded"><source>lkeyStatusFileAdded</source><translation>Die Datei „%@“ wurde hinzugefügt.</translation></message>
    <message id="lkeyStatusNotAddable"><source>lkeyStatusNotAddable</source><translation>Die Datei „%@“ ist weder ein Profil noch ein Makro.</translation></message>
    <message id="lkeyStatusNotALocalFile"><source>lkeyStatusNotALocalFile</source><translation>„%@“ ist keine Datei auf diesem Computer.</translation></message>
    <message id="lkeyStatusFileRefused"><source>lkeyStatusFileRefused</source><translation>Die Datei „%@“ wurde nicht hinzugefügt: %@.</translation></message>
    <message id="lkeyStatusFilesNotOpened"><source>lkeyStatusFilesNotOpened</source><translation>Dateien, die nicht geöffnet wurden, weil schon zu viele warten: %@</translation></message>
</context>
</TS>
