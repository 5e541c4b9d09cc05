<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>Die Tastatur wurde freigegeben</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Rücktaste, Escape und Eingabetaste wurden gleichzeitig gedrückt gehalten. Um die Tastatur wieder mit Quill Kestra zu verwenden, wählen Sie sie mit „kestractl device use“ oder stecken Sie sie neu ein.</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problem mit den Tastatureinstellungen</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Eine Einstellungsdatei war beschädigt oder ungültig oder wurde von einem anderen Programm ersetzt. „kestractl status“ zeigt das Problem und wo die Datei aufbewahrt wird.</translation></message>
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>Alle gedrückten Tasten anzeigen?</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>Das Programm %@ möchte höchstens 60 Sekunden lang jede Taste sehen, die Sie drücken, auch Kennwörter. Erlauben Sie dies nur, wenn Sie das Programm gerade selbst gestartet haben.</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>Erlauben</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>Ablehnen</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>Alle gedrückten Tasten werden angezeigt</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>Das Programm %@ sieht höchstens 60 Sekunden lang jede Taste, die Sie drücken. Geben Sie keine Kennwörter ein.</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>Beenden</translation></message>
</context>
</TS>
