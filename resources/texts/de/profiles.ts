<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>Profile</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>Nr.</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>Name</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>Anwendung</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>Automatisch</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>Hinzufügen</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>Löschen</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>Profilbefehle</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>Profil beim Wechsel auf dem Bildschirm anzeigen</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>Umbenennen</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>Neu</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>Importieren …</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>Exportieren …</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>Löschen …</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>Kopieren</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>Anwendung zuordnen …</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>Zuordnung aufheben</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>Standard wiederherstellen …</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>Profil „%@“ löschen?</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>Tastenbelegung und Beleuchtung des Profils werden mit ihm gelöscht. Sie können dies rückgängig machen.</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>Profil „%@“ auf die Standardeinstellungen zurücksetzen?</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>Das Profil behält seinen Namen. Ihre Tasten, die Beleuchtung und alles andere werden auf den Standard zurückgesetzt. Sie können dies rückgängig machen.</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>Profil importieren</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>Profil exportieren</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>Profile (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>„%@“ folgt ebenfalls %@</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>Wenn die Anwendung in den Vordergrund kommt, bleibt das gerade aktive der beiden Profile aktiv. Ist keines aktiv, wird das erste in der Liste aktiv.</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>Noch folgt kein Profil einer Anwendung. Ordnen Sie dem gewählten Profil eine zu: Das Profil ist aktiv, solange die Anwendung im Vordergrund ist.</translation></message>
</context>
</TS>
