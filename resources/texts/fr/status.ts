<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <!-- The status line at the bottom of the window. -->
    <!-- The state. -->
    <message id="lkeyStatusServiceAwaited"><source>lkeyStatusServiceAwaited</source><translation>En attente du service du clavier</translation></message>
    <message id="lkeyStatusServiceRunning"><source>lkeyStatusServiceRunning</source><translation>Service : actif</translation></message>
    <message id="lkeyStatusServiceSilent"><source>lkeyStatusServiceSilent</source><translation>Service : ne répond pas</translation></message>
    <message id="lkeyStatusServiceAbsent"><source>lkeyStatusServiceAbsent</source><translation>Service : arrêté</translation></message>
    <message id="lkeyStatusVirtualKeyboard"><source>lkeyStatusVirtualKeyboard</source><translation>%@ (virtuel)</translation></message>
    <message id="lkeyStatusRealKeyboard"><source>lkeyStatusRealKeyboard</source><translation>%@ (réel)</translation></message>
    <message id="lkeyStatusUnnamedKeyboard"><source>lkeyStatusUnnamedKeyboard</source><translation>clavier réel</translation></message>
    <message id="lkeyStatusKeyboardAttached"><source>lkeyStatusKeyboardAttached</source><translation>Clavier : %@, connecté</translation></message>
    <message id="lkeyStatusKeyboardAbsent"><source>lkeyStatusKeyboardAbsent</source><translation>Clavier : %@, non connecté</translation></message>
    <message id="lkeyStatusKeyboardWaiting"><source>lkeyStatusKeyboardWaiting</source><translation>Clavier : %@, utilisable dès que toutes les touches sont relâchées</translation></message>
    <message id="lkeyStatusKeyboardSuspended"><source>lkeyStatusKeyboardSuspended</source><translation>Clavier : %@, libéré par Retour arrière, Échap et Entrée</translation></message>
    <message id="lkeyStatusKeyboardFailed"><source>lkeyStatusKeyboardFailed</source><translation>Clavier : %@, inutilisable ; « kestractl status » indique pourquoi</translation></message>
    <message id="lkeyStatusProfile"><source>lkeyStatusProfile</source><translation>Profil : %@</translation></message>
    <message id="lkeyStatusProfileChosen"><source>lkeyStatusProfileChosen</source><translation>Profil : %@, choisi manuellement</translation></message>
    <message id="lkeyStatusProfileOfApplication"><source>lkeyStatusProfileOfApplication</source><translation>Profil : %@, car %@ est au premier plan</translation></message>
    <message id="lkeyStatusGameModeOn"><source>lkeyStatusGameModeOn</source><translation>Mode jeu : activé</translation></message>
    <message id="lkeyStatusGameModeOff"><source>lkeyStatusGameModeOff</source><translation>Mode jeu : désactivé</translation></message>
    <message id="lkeyStatusNeedsShellExtension"><source>lkeyStatusNeedsShellExtension</source><translation>Pour que les profils suivent les fenêtres, installez et activez %@</translation></message>
    <!-- The wait for an answer. -->
    <message id="lkeyStatusWaiting"><source>lkeyStatusWaiting</source><translation>En attente d’une réponse du service du clavier…</translation></message>
    <message id="lkeyStatusLateReply"><source>lkeyStatusLateReply</source><translation>Le service du clavier a mis %@ s à répondre.</translation></message>
    <!-- Events. -->
    <message id="lkeyStatusExportFailed"><source>lkeyStatusExportFailed</source><translation>Impossible d’écrire le fichier « %@ » : %@.</translation></message>
    <message id="lkeyStatusImportFailed"><source>lkeyStatusImportFailed</source><translation>Impossible de lire le fichier « %@ » : %@.</translation></message>
    <message id="lkeyStatusNotAProfile"><source>lkeyStatusNotAProfile</source><translation>Le fichier « %@ » n’est pas un profil.</translation></message>
    <message id="lkeyStatusNotAMacro"><source>lkeyStatusNotAMacro</source><translation>Le fichier « %@ » n’est pas une macro.</translation></message>
    <message id="lkeyStatusNotAnApplication"><source>lkeyStatusNotAnApplication</source><translation>« %@ » n’est pas une application.</translation></message>
    <message id="lkeyStatusMacroFull"><source>lkeyStatusMacroFull</source><translation>La macro « %@ » est pleine. Les touches suivantes ne sont pas enregistrées.</translation></message>
    <message id="lkeyStatusNewMacroKept"><source>lkeyStatusNewMacroKept</source><translation>La nouvelle macro « %@ » est enregistrée, mais aucune touche ne l’exécute : le profil ou le clavier a changé.</translation></message>
    <message id="lkeyStatusRefused"><source>lkeyStatusRefused</source><translation>Le service du clavier a refusé cette action : %@.</translation></message>
    <message id="lkeyStatusNoReply"><source>lkeyStatusNoReply</source><translation>Le service du clavier n’a pas répondu.</translation></message>
    <message id="lkeyStatusNoReplyToChange"><source>lkeyStatusNoReplyToChange</source><translation>Le service du clavier n’a pas répondu. La modification est peut-être perdue.</translation></message>
    <message id="lkeyStatusEntryHasChanged"><source>lkeyStatusEntryHasChanged</source><translation>La modification n’a pas été faite : la liste a changé entre-temps.</translation></message>
    <message id="lkeyStatusEventsNotCopied"><source>lkeyStatusEventsNotCopied</source><translation>Les événements n’ont pas été copiés : l’un d’eux n’est ni une touche, ni un bouton de souris, ni une pause qu’une macro peut jouer.</translation></message>
    <message id="lkeyStatusRecordingNotStored"><source>lkeyStatusRecordingNotStored</source><translation>L’enregistrement n’a pas pu être sauvegardé : %@.</translation></message>
    <message id="lkeyStatusRecordingWithoutReply"><source>lkeyStatusRecordingWithoutReply</source><translation>Le service du clavier n’a pas répondu. L’enregistrement est peut-être perdu.</translation></message>
    <message id="lkeyStatusCleanUpRefused"><source>lkeyStatusCleanUpRefused</source><translation>L’élément a été supprimé, mais les touches qui l’utilisaient n’ont pas été réinitialisées : %@.</translation></message>
    <message id="lkeyStatusCleanUpWithoutReply"><source>lkeyStatusCleanUpWithoutReply</source><translation>L’élément a été supprimé, mais le service du clavier n’a pas répondu ensuite. Les touches qui l’utilisaient n’ont peut-être pas été réinitialisées.</translation></message>
    <message id="lkeyStatusSettingsProblem"><source>lkeyStatusSettingsProblem</source><translation>Problème avec les réglages du clavier : %@</translation></message>
    <message id="lkeyStatusShellExtensionMissing"><source>lkeyStatusShellExtensionMissing</source><translation>Sous GNOME, les profils ne suivent les fenêtres qu’avec le paquet « %@ », installé et activé.</translation></message>
    <!-- The reason at the end of lkeyStatusRefused, lkeyStatusRecordingNotStored and lkeyStatusCleanUpRefused. -->
    <message id="lkeyStatusReasonGone"><source>lkeyStatusReasonGone</source><translation>l’élément n’existe plus</translation></message>
    <message id="lkeyStatusReasonFull"><source>lkeyStatusReasonFull</source><translation>il n’y a plus de place</translation></message>
    <message id="lkeyStatusReasonLastProfile"><source>lkeyStatusReasonLastProfile</source><translation>le dernier profil ne peut pas être supprimé</translation></message>
    <message id="lkeyStatusReasonNotSaved"><source>lkeyStatusReasonNotSaved</source><translation>les réglages n’ont pas pu être écrits sur le disque</translation></message>
    <message id="lkeyStatusReasonNoKeyboard"><source>lkeyStatusReasonNoKeyboard</source><translation>le clavier n’est pas connecté</translation></message>
    <message id="lkeyStatusReasonNothingRecorded"><source>lkeyStatusReasonNothingRecorded</source><translation>le service n’a aucune touche enregistrée</translation></message>
    <message id="lkeyStatusReasonBusy"><source>lkeyStatusReasonBusy</source><translation>il est occupé</translation></message>
    <message id="lkeyStatusReasonInvalid"><source>lkeyStatusReasonInvalid</source><translation>il n’accepte pas ces valeurs</translation></message>
    <message id="lkeyStatusFileWaits"><source>lkeyStatusFileWaits</source><translation>Le fichier « %@ » s’ouvrira à la fin du dialogue, de la saisie du nom ou de l’enregistrement en cours.</translation></message>
    <message id="lkeyStatusFileWaitsForKeyboard"><source>lkeyStatusFileWaitsForKeyboard</source><translation>Le fichier « %@ » s’ouvrira dès que le clavier sera prêt.</translation></message>
    <message id="lkeyStatusFileAdded"><source>lkeyStatusFileAdded</source><translation>Le fichier « %@ » a été ajouté.</translation></message>
    <message id="lkeyStatusNotAddable"><source>lkeyStatusNotAddable</source><translation>Le fichier « %@ » n’est ni un profil ni une macro.</translation></message>
    <message id="lkeyStatusNotALocalFile"><source>lkeyStatusNotALocalFile</source><translation>« %@ » n’est pas un fichier de cet ordinateur.</translation></message>
    <message id="lkeyStatusFileRefused"><source>lkeyStatusFileRefused</source><translation>Le fichier « %@ » n’a pas été ajouté : %@.</translation></message>
    <message id="lkeyStatusFilesNotOpened"><source>lkeyStatusFilesNotOpened</source><translation>Fichiers non ouverts, car trop de fichiers attendent déjà : %@</translation></message>
</context>
</TS>
