<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <!-- Desktop notification: the user has held the release chord. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>El teclado se ha liberado</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Se han mantenido pulsadas a la vez las teclas Retroceso, Escape e Intro. Para volver a usar el teclado con Quill Kestra, elíjalo con «kestractl device use» o desconéctelo y vuelva a conectarlo.</translation></message>
    <!-- Desktop notification: a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problema con los ajustes del teclado</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Un archivo de ajustes estaba dañado, no era válido o fue reemplazado por otro programa. «kestractl status» muestra el problema y dónde se conserva el archivo.</translation></message>
</context>
</TS>
