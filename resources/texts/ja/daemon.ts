<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>キーボードを解放しました</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>BackSpace、Escape、Enter キーが同時に押し続けられました。このキーボードを Quill Kestra で再び使うには、「kestractl device use」で選択するか、キーボードを接続し直してください。</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>キーボードの設定に問題があります</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>設定ファイルが破損しているか、正しくないか、ほかのプログラムによって置き換えられています。問題の内容とファイルの保管場所は、「kestractl status」で確認できます。</translation></message>
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>押したキーをすべて表示しますか？</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>プログラム %@ が、押したすべてのキーを最長 60 秒間読み取ることを求めています。パスワードも含まれます。ご自身で起動した直後の場合にのみ許可してください。</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>許可</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>拒否</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>押したキーがすべて表示されています</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>プログラム %@ は、押したすべてのキーを最長 60 秒間読み取ります。パスワードを入力しないでください。</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>停止</translation></message>
</context>
</TS>
