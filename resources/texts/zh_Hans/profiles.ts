<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>配置文件</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>编号</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>名称</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>应用程序</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>自动切换</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>添加</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>删除</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>配置文件操作</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>切换时在屏幕上显示配置文件</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>重命名</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>新建</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>导入…</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>导出…</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>删除…</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>复制</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>关联应用程序…</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>取消关联</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>恢复默认设置…</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>删除配置文件“%@”？</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>此配置文件的按键功能和灯光设置也将一并删除。此操作可以撤销。</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>将配置文件“%@”恢复为默认设置？</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>配置文件的名称会保留，您的按键、灯光和其他设置都将恢复为默认值。此操作可以撤销。</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>导入配置文件</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>导出配置文件</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>配置文件 (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>“%@”也关联了 %@</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>当该应用程序切换到前台时，如果正在使用其中一个配置文件，则继续使用；否则使用列表中靠前的配置文件。</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>还没有跟随应用程序的配置文件。为所选配置文件关联应用程序后，只要该应用程序在前台，此配置文件就会生效。</translation></message>
</context>
</TS>
