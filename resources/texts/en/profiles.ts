<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>Profiles</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>No.</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>Name</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>Application</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>Auto switch</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>Add</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>Delete</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>Profile commands</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>Show the profile on screen when it changes</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>Rename</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>New</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>Import…</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>Export…</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>Delete…</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>Copy</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>Assign application…</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>Remove application</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>Restore defaults…</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>Delete the profile “%@”?</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>Its key assignments and lighting are deleted with it. You can undo this.</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>Restore the profile “%@” to its default settings?</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>The profile keeps its name. Your keys, the lighting and everything else return to their defaults. You can undo this.</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>Import profile</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>Export profile</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>Profiles (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>“%@” also follows %@</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>When the application comes to the front, the profile that is active then stays active. If neither is active, the first one in the list becomes active.</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>The profiles follow no application yet. Assign one to the selected profile: the profile is active while the application is in front.</translation></message>
</context>
</TS>
