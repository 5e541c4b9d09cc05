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
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>显示您按下的所有按键？</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>程序 %@ 请求在最长 60 秒内查看您按下的每个按键，包括密码。仅当您刚刚亲自启动该程序时才应允许。</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>允许</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>拒绝</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>您按下的所有按键正在显示</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>程序 %@ 会在最长 60 秒内看到您按下的每个按键。请勿输入密码。</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>停止</translation></message>
</context>
</TS>
