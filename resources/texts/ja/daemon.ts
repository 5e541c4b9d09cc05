<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>キーボードを解放しました</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>BackSpace、Escape、Return が同時に押されました。もう一度選ぶか接続し直すまで、Quill Kestra なしと同じように入力できます。</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>キーボードの設定に問題があります</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>設定ファイルが壊れているか、正しくありません。問題の内容とファイルの保管場所は「kestractl status」で確認できます。</translation></message>
</context>
</TS>
