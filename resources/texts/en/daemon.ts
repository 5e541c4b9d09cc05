<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>The keyboard has been released</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Backspace, Escape and Return were held together. To use the keyboard with Quill Kestra again, choose it with “kestractl device use” or plug it in again.</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problem with the keyboard settings</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>A settings file was damaged, invalid or replaced by another program. “kestractl status” shows the problem and where the file is kept.</translation></message>
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>Show all keys that you press?</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>The program %@ asks to see every key that you press, for at most 60 seconds. That includes passwords. Allow this only if you have just started it yourself.</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>Allow</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>Refuse</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>All keys that you press are shown</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>The program %@ sees every key that you press, for at most 60 seconds. Do not type passwords.</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>Stop</translation></message>
</context>
</TS>
