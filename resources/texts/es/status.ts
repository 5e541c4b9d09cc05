<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <!-- The status line at the bottom of the window. -->
    <!-- The state. -->
    <message id="lkeyStatusServiceAwaited"><source>lkeyStatusServiceAwaited</source><translation>Esperando al servicio del teclado</translation></message>
    <message id="lkeyStatusServiceRunning"><source>lkeyStatusServiceRunning</source><translation>Servicio: en marcha</translation></message>
    <message id="lkeyStatusServiceSilent"><source>lkeyStatusServiceSilent</source><translation>Servicio: no responde</translation></message>
    <message id="lkeyStatusServiceAbsent"><source>lkeyStatusServiceAbsent</source><translation>Servicio: parado</translation></message>
    <message id="lkeyStatusVirtualKeyboard"><source>lkeyStatusVirtualKeyboard</source><translation>%@ (virtual)</translation></message>
    <message id="lkeyStatusRealKeyboard"><source>lkeyStatusRealKeyboard</source><translation>%@ (real)</translation></message>
    <message id="lkeyStatusUnnamedKeyboard"><source>lkeyStatusUnnamedKeyboard</source><translation>teclado real</translation></message>
    <message id="lkeyStatusKeyboardAttached"><source>lkeyStatusKeyboardAttached</source><translation>Teclado: %@, conectado</translation></message>
    <message id="lkeyStatusKeyboardAbsent"><source>lkeyStatusKeyboardAbsent</source><translation>Teclado: %@, no conectado</translation></message>
    <message id="lkeyStatusKeyboardWaiting"><source>lkeyStatusKeyboardWaiting</source><translation>Teclado: %@, se podrá usar cuando no haya ninguna tecla pulsada</translation></message>
    <message id="lkeyStatusKeyboardSuspended"><source>lkeyStatusKeyboardSuspended</source><translation>Teclado: %@, liberado con Retroceso, Escape e Intro</translation></message>
    <message id="lkeyStatusKeyboardFailed"><source>lkeyStatusKeyboardFailed</source><translation>Teclado: %@, no se puede usar; «kestractl status» muestra el motivo</translation></message>
    <message id="lkeyStatusProfile"><source>lkeyStatusProfile</source><translation>Perfil: %@</translation></message>
    <message id="lkeyStatusProfileChosen"><source>lkeyStatusProfileChosen</source><translation>Perfil: %@, elegido a mano</translation></message>
    <message id="lkeyStatusProfileOfApplication"><source>lkeyStatusProfileOfApplication</source><translation>Perfil: %@, porque %@ está en primer plano</translation></message>
    <message id="lkeyStatusGameModeOn"><source>lkeyStatusGameModeOn</source><translation>Modo de juego: activado</translation></message>
    <message id="lkeyStatusGameModeOff"><source>lkeyStatusGameModeOff</source><translation>Modo de juego: desactivado</translation></message>
    <message id="lkeyStatusNeedsShellExtension"><source>lkeyStatusNeedsShellExtension</source><translation>Para que los perfiles sigan a las ventanas, instale y active %@</translation></message>
    <!-- The wait for an answer. -->
    <message id="lkeyStatusWaiting"><source>lkeyStatusWaiting</source><translation>Esperando la respuesta del servicio del teclado…</translation></message>
    <message id="lkeyStatusLateReply"><source>lkeyStatusLateReply</source><translation>El servicio del teclado ha tardado %@ s en responder.</translation></message>
    <!-- Events. -->
    <message id="lkeyStatusExportFailed"><source>lkeyStatusExportFailed</source><translation>No se ha podido escribir el archivo «%@»: %@.</translation></message>
    <message id="lkeyStatusImportFailed"><source>lkeyStatusImportFailed</source><translation>No se ha podido leer el archivo «%@»: %@.</translation></message>
    <message id="lkeyStatusNotAProfile"><source>lkeyStatusNotAProfile</source><translation>El archivo «%@» no es un perfil.</translation></message>
    <message id="lkeyStatusNotAMacro"><source>lkeyStatusNotAMacro</source><translation>El archivo «%@» no es una macro.</translation></message>
    <message id="lkeyStatusNotAnApplication"><source>lkeyStatusNotAnApplication</source><translation>«%@» no es una aplicación.</translation></message>
    <message id="lkeyStatusMacroFull"><source>lkeyStatusMacroFull</source><translation>La macro «%@» está llena. No se grabarán más teclas.</translation></message>
    <message id="lkeyStatusNewMacroKept"><source>lkeyStatusNewMacroKept</source><translation>La nueva macro «%@» está guardada, pero ninguna tecla la reproduce: ha cambiado el perfil o el teclado.</translation></message>
    <message id="lkeyStatusRefused"><source>lkeyStatusRefused</source><translation>El servicio del teclado lo ha rechazado: %@.</translation></message>
    <message id="lkeyStatusNoReply"><source>lkeyStatusNoReply</source><translation>El servicio del teclado no ha respondido.</translation></message>
    <message id="lkeyStatusNoReplyToChange"><source>lkeyStatusNoReplyToChange</source><translation>El servicio del teclado no ha respondido. Puede que el cambio se haya perdido.</translation></message>
    <message id="lkeyStatusEntryHasChanged"><source>lkeyStatusEntryHasChanged</source><translation>No se ha hecho el cambio: la lista ha cambiado entretanto.</translation></message>
    <message id="lkeyStatusEventsNotCopied"><source>lkeyStatusEventsNotCopied</source><translation>No se han copiado los eventos: uno de ellos no es una tecla, un botón del ratón ni una pausa que una macro pueda reproducir.</translation></message>
    <message id="lkeyStatusRecordingNotStored"><source>lkeyStatusRecordingNotStored</source><translation>No se ha podido guardar la grabación: %@.</translation></message>
    <message id="lkeyStatusRecordingWithoutReply"><source>lkeyStatusRecordingWithoutReply</source><translation>El servicio del teclado no ha respondido. Puede que la grabación se haya perdido.</translation></message>
    <message id="lkeyStatusCleanUpRefused"><source>lkeyStatusCleanUpRefused</source><translation>El elemento se ha eliminado, pero no la asignación de las teclas que lo usaban: %@.</translation></message>
    <message id="lkeyStatusCleanUpWithoutReply"><source>lkeyStatusCleanUpWithoutReply</source><translation>El elemento se ha eliminado, pero después el servicio del teclado no ha respondido. Puede que las teclas que lo usaban conserven su asignación.</translation></message>
    <message id="lkeyStatusSettingsProblem"><source>lkeyStatusSettingsProblem</source><translation>Problema con los ajustes del teclado: %@</translation></message>
    <message id="lkeyStatusShellExtensionMissing"><source>lkeyStatusShellExtensionMissing</source><translation>En GNOME, los perfiles solo siguen a las ventanas con el paquete «%@», instalado y activado.</translation></message>
    <!-- The reason at the end of lkeyStatusRefused, lkeyStatusRecordingNotStored and lkeyStatusCleanUpRefused. -->
    <message id="lkeyStatusReasonGone"><source>lkeyStatusReasonGone</source><translation>el elemento ya no existe</translation></message>
    <message id="lkeyStatusReasonFull"><source>lkeyStatusReasonFull</source><translation>no queda sitio</translation></message>
    <message id="lkeyStatusReasonLastProfile"><source>lkeyStatusReasonLastProfile</source><translation>el último perfil no se puede eliminar</translation></message>
    <message id="lkeyStatusReasonNotSaved"><source>lkeyStatusReasonNotSaved</source><translation>los ajustes no se han podido escribir en el disco</translation></message>
    <message id="lkeyStatusReasonNoKeyboard"><source>lkeyStatusReasonNoKeyboard</source><translation>el teclado no está conectado</translation></message>
    <message id="lkeyStatusReasonNothingRecorded"><source>lkeyStatusReasonNothingRecorded</source><translation>el servicio no tiene teclas grabadas</translation></message>
    <message id="lkeyStatusReasonBusy"><source>lkeyStatusReasonBusy</source><translation>está ocupado</translation></message>
    <message id="lkeyStatusReasonInvalid"><source>lkeyStatusReasonInvalid</source><translation>no acepta estos valores</translation></message>
    <message id="lkeyStatusFileWaits"><source>lkeyStatusFileWaits</source><translation>El archivo «%@» se abrirá cuando termine el cuadro de diálogo, el nombre o la grabación en curso.</translation></message>
    <message id="lkeyStatusFileWaitsForKeyboard"><source>lkeyStatusFileWaitsForKeyboard</source><translation>El archivo «%@» se abrirá cuando el teclado esté listo.</translation></message>
    <message id="lkeyStatusFileAdded"><source>lkeyStatusFileAdded</source><translation>Se ha añadido el archivo «%@».</translation></message>
    <message id="lkeyStatusNotAddable"><source>lkeyStatusNotAddable</source><translation>El archivo «%@» no es ni un perfil ni una macro.</translation></message>
    <message id="lkeyStatusNotALocalFile"><source>lkeyStatusNotALocalFile</source><translation>«%@» no es un archivo de este equipo.</translation></message>
    <message id="lkeyStatusFileRefused"><source>lkeyStatusFileRefused</source><translation>No se ha añadido el archivo «%@»: %@.</translation></message>
    <message id="lkeyStatusFilesNotOpened"><source>lkeyStatusFilesNotOpened</source><translation>Archivos que no se han abierto porque ya hay demasiados en espera: %@</translation></message>
</context>
</TS>
