<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>Aceptar</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>Cancelar</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>Perfil:</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>Salir</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Configurador de Quill Kestra</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>Ocupado</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>Ayuda</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/es</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>Atrás</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>Adelante</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>Contenido</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>Buscar en la ayuda</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>Páginas encontradas</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>No hay resultados</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Página de Quill</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>Noticias</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>Teclas</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>Perfiles</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>Macros</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>Iluminación</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>Mantenimiento</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>Este teclado no necesita mantenimiento.</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>El servicio del teclado no responde</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>El configurador no ha podido contactar con el servicio QuillKestraDaemon. El servicio se está reiniciando. Sus ajustes están a salvo. El configurador continuará automáticamente en cuanto el servicio responda.</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>La sesión ha terminado</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>El configurador ha perdido la conexión con la sesión de escritorio y, con ella, el servicio del teclado. Sus ajustes están a salvo. Cierre el configurador y vuelva a iniciarlo.</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>No se ha abierto la página web</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>Ningún navegador ha podido abrir %@.</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ es una dirección provisional. El distribuidor de este programa aún no ha indicado ninguna dirección.</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>No se ha encontrado ningún teclado</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>Conecte su teclado Quill Kestra. El configurador continuará automáticamente en cuanto el teclado esté conectado.</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>Conectando con el teclado…</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>Esperando al servicio del teclado. Podrá usar la ventana en cuanto el servicio responda.</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>Iniciar en una sesión restaurada y esperar al servicio del teclado.</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>Iniciar al comenzar la sesión y esperar al servicio del teclado.</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>Abrir el teclado de inmediato, sin el mensaje de conexión.</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>Un archivo de macro o de perfil. El configurador espera al servicio del teclado y no importa el archivo.</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>Elegir una aplicación</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>Aplicaciones (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>Buscar aplicaciones</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>Aplicaciones</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>Aplicaciones: %@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>No se ha encontrado ninguna aplicación</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>En ejecución</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>Ventana abierta</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>Otra…</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>Elegir</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>¿Reemplazar «%@»?</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>Ya existe un archivo con este nombre. Si lo reemplaza, se sobrescribirá su contenido.</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>Reemplazar</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>Mantenga pulsada la tecla Escape durante un segundo para volver a usar este teclado en la ventana.</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>Ya puede volver a usar este teclado en la ventana.</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>Pulse la tecla aquí: se está usando el teclado virtual.</translation></message>
</context>
</TS>
