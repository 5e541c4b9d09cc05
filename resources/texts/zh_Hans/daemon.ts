<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>键盘已释放</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>退格键、Escape 键和回车键被同时按住。要重新通过 Quill Kestra 使用该键盘，请用“kestractl device use”选择它，或重新插入键盘。</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>键盘设置出现问题</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>某个设置文件已损坏、无效，或被其他程序替换。“kestractl status”会显示问题以及该文件的保存位置。</translation></message>
</context>
</TS>
