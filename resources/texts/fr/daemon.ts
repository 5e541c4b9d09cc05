<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>Le clavier est libéré</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Retour arrière, Échap et Entrée ont été maintenues ensemble. Il écrit comme sans Quill Kestra jusqu’à ce que vous le choisissiez ou le branchiez de nouveau.</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problème avec les réglages du clavier</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Un fichier des réglages est endommagé ou n’est pas en ordre. « kestractl status » indique ce qui ne va pas et où le fichier est conservé.</translation></message>
</context>
</TS>
