<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>The keyboard has been released</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Backspace, Escape and Return were held together. It types as without Quill Kestra until you choose it again, or plug it in again.</translation></message>
</context>
</TS>
