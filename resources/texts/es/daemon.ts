<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>El teclado ha quedado libre</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>Se han mantenido pulsadas a la vez Retroceso, Escape e Intro. Escribe como sin Quill Kestra hasta que vuelva a elegirlo o a conectarlo.</translation></message>
    <!-- Told by the desktop when a settings file was damaged, repaired or replaced. -->
    <message id="lkeySettingsProblem"><source>lkeySettingsProblem</source><translation>Problema con los ajustes del teclado</translation></message>
    <message id="lkeySettingsProblemHow"><source>lkeySettingsProblemHow</source><translation>Un archivo de los ajustes está dañado o no es correcto. «kestractl status» indica qué falla y dónde se conserva el archivo.</translation></message>
</context>
</TS>
