<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>The keyboard has been released</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Backspace, Escape and Return were held together. It types as without Quill Kestra until you choose it again, or plug it in again.</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problem with the keyboard settings</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>A settings file was damaged or is not what it should be. “kestractl status” shows what was wrong with it and where it is kept.</translation></message>
</context>
</TS>
