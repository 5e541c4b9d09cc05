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
</context>
</TS>
