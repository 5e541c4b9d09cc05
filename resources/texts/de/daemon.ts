<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>Die Tastatur ist freigegeben</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Rücktaste, Escape und Eingabe wurden zusammen gehalten. Sie schreibt wie ohne Quill Kestra, bis Sie sie wieder wählen oder neu einstecken.</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problem mit den Tastatureinstellungen</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Eine Datei der Einstellungen ist beschädigt oder nicht in Ordnung. „kestractl status“ zeigt, was daran nicht stimmt und wo sie aufbewahrt wird.</translation></message>
</context>
</TS>
