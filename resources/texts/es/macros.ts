<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>Macros</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>Macros:</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>Añadir</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>Eliminar</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>Acciones de macro</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>Eventos de la macro seleccionada:</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>Eventos</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>Acciones de evento</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>Seleccione una macro para ver sus eventos.</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>Añadir al final</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>Eliminar</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>Añadir una macro</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>Eliminar la macro seleccionada</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>Grabar más eventos al final de la macro</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>Eliminar el evento seleccionado</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>Aún no hay macros.</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>Añada una macro y después grabe sus eventos.</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>Esta macro aún no tiene eventos. Haga clic en «Grabar» y pulse teclas en el teclado.</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>Grabando. Pulse las teclas de la macro y después haga clic en «Detener».</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>Pulse aquí las teclas de la macro: se está usando el teclado virtual.</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>Pulse en «%@» las teclas de la macro.</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>Importar macro</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>Exportar macro</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>Macros (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>Grabar</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>Detener</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>Editar…</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>Solo se pueden editar los eventos de las primeras 256 filas.</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>Solo se pueden editar los eventos de las primeras 256 macros.</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>Eliminar evento</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>Eliminar todos los eventos</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>Aplicar la pausa a todos</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>Sin pausas</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>Editar pausa</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>Editar evento</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>Pausa en milisegundos:</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>Pausa actual: %@ ms. Escriba un número entero.</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>Pulse la tecla de este evento:</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>Pulse en «%@» la tecla de este evento:</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>¿Eliminar la macro «%@»?</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>Las teclas que reproducen esta macro recuperarán su función predeterminada. Podrá deshacer esta acción.</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>Duplicar</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>Buscar macros</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>Macros encontradas: %@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>Ninguna macro encontrada</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@ en %@</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>, </translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>La reproducen: %@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>La reproducen:</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>Ninguna tecla reproduce esta macro.</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>%@ más…</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>Mostrar esta tecla en la pestaña Teclas</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>Activar el perfil «%@» y mostrar esta tecla en la pestaña Teclas</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>Una tecla de otro perfil activa ese perfil.</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>Haga clic aquí para grabar botones del ratón.</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>Probar…</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>Probar la macro seleccionada</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>Probar macro</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>Vea lo que el equipo recibiría de «%@». «Iniciar» no le envía nada.</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>Reproducción</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>Iniciar</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>Lo que recibiría el equipo</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>Haga clic en «Iniciar» para ver la macro en marcha.</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>Reproduciendo. Pulse Escape para detenerla.</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>La macro se ha reproducido hasta el final.</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>Detenida.</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>Detenida: la macro ha cambiado.</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>Detenida: una prueba dura como máximo 10 minutos y tiene como máximo 100 000 eventos.</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>Esta macro no reproduce nada.</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>Hay demasiados programas probando macros. Inténtelo más tarde.</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>El servicio del teclado no puede reproducir esta macro ahora.</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>Pulse aquí la tecla de la macro:</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>La tecla de la macro escribe aquí de verdad. Al salir de este campo, se cierra el cuadro.</translation></message>
</context>
</TS>
