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
</context>
</TS>
