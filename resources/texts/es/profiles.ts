<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>Perfiles</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>N.º</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>Nombre</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>Aplicación</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>Automático</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>Añadir</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>Eliminar</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>Acciones de perfil</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>Mostrar el perfil en pantalla al cambiar</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>Cambiar nombre</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>Nuevo</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>Importar…</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>Exportar…</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>Eliminar…</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>Copiar</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>Asignar aplicación…</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>Quitar asignación</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>Restablecer…</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>¿Eliminar el perfil «%@»?</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>Se eliminarán también sus asignaciones de teclas y su iluminación. Podrá deshacer esta acción.</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>¿Restablecer los ajustes predeterminados del perfil «%@»?</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>El perfil conservará su nombre. Sus teclas, la iluminación y todo lo demás volverán a sus valores predeterminados. Podrá deshacer esta acción.</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>Importar perfil</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>Exportar perfil</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>Perfiles (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>«%@» también sigue a %@</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>Cuando la aplicación pasa al primer plano, el perfil que ya está activo sigue activo. Si ninguno lo está, se activa el primero de la lista.</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>Ningún perfil sigue aún a una aplicación. Asigne una al perfil seleccionado: el perfil está activo mientras la aplicación está en primer plano.</translation></message>
</context>
</TS>
