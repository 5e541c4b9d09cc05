<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>Función predeterminada</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>Tecla única</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>Macro</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>Cambiar de perfil</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>Iniciar programa</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>Desactivar tecla</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>Gestionar perfiles…</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>Gestionar macros…</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>Reproducir una vez</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>Repetir hasta soltar</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>Repetir hasta volver a pulsar</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>Reproducir 2 veces</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>Reproducir 3 veces</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>Reproducir 4 veces</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>Reproducir 5 veces</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>Reproducir 6 veces</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>Reproducir 7 veces</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>Reproducir 8 veces</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>Reproducir 9 veces</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>Reproducir 10 veces</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>Tecla:</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>Asignación:</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>Reproducción:</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>Pulse en su Quill Kestra la tecla que debe enviarse al pulsar la tecla seleccionada.</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>Pulse en «%@» la tecla que debe enviarse al pulsar la tecla seleccionada.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>El modo de juego está activado. %@ conserva su asignación. Las teclas Command no hacen nada.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>El modo de juego está desactivado. %@ conserva su asignación. Active el modo de juego para desactivar las teclas Command mientras juega.</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>Teclado</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>Teclado. Seleccione una tecla con las teclas de flecha o escribiendo su carácter.</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@ (%@)</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>Tecla seleccionada</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>Desactivada</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>No se puede asignar</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>Expulsar</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>Grabación de macros</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>Menú</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>Tecla en blanco del teclado numérico</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>Asignación desconocida</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>n.º %@ (no existe)</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>Buscar teclas y asignaciones</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>Siguiente tecla encontrada</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>Tecla encontrada anterior</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>Teclas encontradas: %@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>Ninguna tecla encontrada</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@ (tecla %@)</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>Una tecla adicional a la izquierda del teclado, para sus propias asignaciones. Tiene el código de %@. La mayoría de los programas la ignoran hasta que usted le asigna algo.</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>Una tecla adicional debajo de la barra espaciadora, para sus propias asignaciones. Tiene el código de %@. La mayoría de los programas la ignoran hasta que usted le asigna algo.</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ y %@ más</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>Copiar asignación</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>Pegar asignación</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>La macro de esta tecla ya no existe. La tecla no hace nada hasta que usted elija otra asignación.</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>El perfil al que cambia esta tecla ya no existe. La tecla no hace nada hasta que usted elija otra asignación.</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>Este programa no conoce el tipo de asignación de esta tecla. La tecla no hace nada hasta que usted elija otra asignación.</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>Seleccione una tecla en la imagen para ver y cambiar su asignación.</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>La tecla funciona como siempre.</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>El ordenador recibe esta tecla en lugar de la pulsada.</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>La tecla no hace nada.</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>Teclas asignadas en este perfil: %@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>Este programa ya no está instalado. Elija otra asignación.</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>Eventos: %@ · %@ s</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>Esta macro aún no tiene eventos. Grábelos en la pestaña Macros.</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>Asignaciones diferentes</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>Lo que elija aquí cambia las %@ teclas seleccionadas.</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>Teclas de la macro: %@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>Una tecla adicional. La mayoría de los programas la ignoran hasta que usted le asigna algo.</translation></message>
</context>
</TS>
