<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>Profils</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>N°</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>Nom</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>Application</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>Automatique</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>Ajouter</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>Supprimer</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>Commandes de profil</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>Afficher le profil à l’écran lorsqu’il change</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>Renommer</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>Nouveau</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>Importer…</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>Exporter…</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>Supprimer…</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>Copier</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>Associer une application…</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>Dissocier l’application</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>Réinitialiser…</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>Supprimer le profil « %@ » ?</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>Les fonctions de ses touches et son éclairage seront supprimés avec lui. Vous pourrez annuler cette action.</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>Rétablir les réglages par défaut du profil « %@ » ?</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>Le profil conserve son nom. Vos touches, l’éclairage et tout le reste reviennent à leurs réglages par défaut. Vous pourrez annuler cette action.</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>Importer un profil</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>Exporter le profil</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>Profils (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>« %@ » est aussi associé à %@</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>Lorsque l’application passe au premier plan, celui de ces profils qui est déjà actif le reste. Si aucun ne l’est, le premier de la liste devient actif.</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>Aucun profil ne suit encore d’application. Associez-en une au profil sélectionné : il est actif tant que l’application est au premier plan.</translation></message>
</context>
</TS>
