<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>Die Tastatur ist freigegeben</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Rücktaste, Escape und Eingabe wurden zusammen gehalten. Sie schreibt wie ohne Quill Kestra, bis Sie sie wieder wählen oder neu einstecken.</translation></message>
</context>
</TS>
