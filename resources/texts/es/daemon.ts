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
    <!-- Desktop notification: a program asks to see the keys, and the notification while it does. %@ is its name. -->
    <message id="lkeyWatchQuestion"><source>lkeyWatchQuestion</source><translation>¿Mostrar todas las teclas que pulse?</translation></message>
    <message id="lkeyWatchQuestionHow"><source>lkeyWatchQuestionHow</source><translation>El programa %@ pide ver cada tecla que pulse durante un máximo de 60 segundos, incluidas las contraseñas. Permítalo solo si acaba de iniciarlo usted.</translation></message>
    <message id="lkeyWatchAllow"><source>lkeyWatchAllow</source><translation>Permitir</translation></message>
    <message id="lkeyWatchRefuse"><source>lkeyWatchRefuse</source><translation>Rechazar</translation></message>
    <message id="lkeyWatchRuns"><source>lkeyWatchRuns</source><translation>Se muestran todas las teclas que pulsa</translation></message>
    <message id="lkeyWatchRunsHow"><source>lkeyWatchRunsHow</source><translation>El programa %@ ve cada tecla que pulsa durante un máximo de 60 segundos. No escriba contraseñas.</translation></message>
    <message id="lkeyWatchStop"><source>lkeyWatchStop</source><translation>Detener</translation></message>
</context>
</TS>
