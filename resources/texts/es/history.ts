<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@: %@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@: %@ (%@)</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>Asignación desconocida</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>Perfil %@: %@ teclas asignadas</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>Perfil %@ añadido</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>Perfil %@ eliminado</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>Perfil %@ renombrado a %@</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>Perfil %@ elegido</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>El perfil %@ sigue a %@</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>El perfil %@ no sigue a ninguna aplicación</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>Perfil %@: el nombre se muestra al cambiar</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>Perfil %@: el nombre no se muestra al cambiar</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>Perfil %@ modificado</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>Perfiles reordenados</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>Perfil %@: iluminación activada</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>Perfil %@: iluminación desactivada</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>Perfil %@: brillo %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>Perfil %@: color %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>Perfil %@: efecto de luz cambiado</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>Macro %@ añadida</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>Macro %@ eliminada</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>Macro %@ renombrada a %@</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>Macro %@: %@ eventos grabados</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>Macro %@: %@ evento grabado</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>Macro %@ modificada</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>Macro %@: %@ eventos añadidos</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>Macro %@: %@ evento añadido</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>Macro %@: %@ eventos eliminados</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>Macro %@: %@ evento eliminado</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>Macro %@: %@ eventos modificados</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>Macro %@: %@ evento modificado</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>Macro %@: %@ pausas definidas</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>Macro %@: %@ pausa definida</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>Modo de juego activado</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>Modo de juego desactivado</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>Varios ajustes modificados</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>Todos los ajustes restaurados desde %@</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>Ajustes modificados por otra vía</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>Deshecho: %@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>Rehecho: %@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>Retirado: %@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>un cambio anterior</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>Perfil %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>Perfiles: %@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>Macro %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>Macro %@: %@ eventos</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>Macro %@: %@ evento</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>Perfil %@: efecto de luz %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>Macro %@, evento %@: %@ pulsada tras %@ ms</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>Macro %@, evento %@: %@ soltada tras %@ ms</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>Macro %@, evento %@: pausa de %@ ms</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>no existe</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>Deshacer</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>Deshacer: %@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>No se ha deshecho: %@. Motivo: %@.</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>No se ha rehecho: %@. Motivo: %@.</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>los ajustes han cambiado entretanto y ahora va primero otro cambio</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>el cambio ya se había deshecho</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>los ajustes se han sustituido después de otra manera</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>el servicio del teclado no ha respondido</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@. «Deshacer» o Ctrl+Z lo revierte.</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>Historial…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>Historial</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>Buscar en los cambios</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>Hora</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>Cambio</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>Por</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>Estado</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>esta ventana</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>el teclado</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>otro programa</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>vigente</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>deshecho</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>no se puede deshacer</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>Restaurar</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>Olvidar…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>El historial aún no contiene ningún cambio.</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>Seleccione un cambio para ver su efecto.</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>Antes</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>Después</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>Efecto del cambio</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>El cambio tiene %@ partes; estas son las primeras %@.</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>El estado anterior no se conoce: %@.</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>«Restaurar» deshace solo este cambio.</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>«Restaurar» deshace también %@ cambios posteriores: %@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>«Restaurar» deshace también un cambio posterior: %@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>Este cambio no se puede deshacer: %@.</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>¿Desea eliminar el historial?</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>Se eliminan todos los cambios de esta lista, las copias diarias y todas las versiones anteriores de los ajustes. Los perfiles y macros eliminados se pierden entonces para siempre. Sus ajustes se conservan.</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>Eliminar</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>No se ha restaurado: %@. Motivo: %@.</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>El historial, las copias diarias y las versiones anteriores de los ajustes se han eliminado.</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>No se ha eliminado el historial: %@.</translation></message>
</context>
</TS>
