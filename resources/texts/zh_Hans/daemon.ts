<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>键盘已释放</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>退格键、Escape 和回车键被同时按住。在您重新选择或重新插入它之前，它的输入与没有 Quill Kestra 时相同。</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>键盘设置出现问题</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>有一个设置文件已损坏或不正确。“kestractl status”会显示问题所在以及该文件的保存位置。</translation></message>
</context>
</TS>
