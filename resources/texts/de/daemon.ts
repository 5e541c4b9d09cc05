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
</context>
</TS>
