<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>Le clavier a été libéré</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Les touches Retour arrière, Échap et Entrée ont été maintenues enfoncées simultanément. Pour utiliser de nouveau le clavier avec Quill Kestra, choisissez-le avec « kestractl device use » ou rebranchez-le.</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problème avec les réglages du clavier</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Un fichier de réglages était endommagé ou non valide, ou a été remplacé par un autre programme. « kestractl status » indique le problème et l’endroit où le fichier est conservé.</translation></message>
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>Montrer toutes les touches sur lesquelles vous appuyez ?</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>Le programme %@ demande à voir toutes les touches sur lesquelles vous appuyez, pendant 60 secondes au plus, y compris vos mots de passe. N’acceptez que si vous venez de le lancer vous-même.</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>Autoriser</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>Refuser</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>Toutes les touches sur lesquelles vous appuyez sont montrées</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>Le programme %@ voit toutes les touches sur lesquelles vous appuyez, pendant 60 secondes au plus. Ne saisissez pas de mot de passe.</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>Arrêter</translation></message>
</context>
</TS>
