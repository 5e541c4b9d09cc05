<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>Zonas</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>Teclas principales</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>Color de las teclas principales</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>Franjas laterales</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>Color de las franjas laterales</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>Luz inferior</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>Color de la luz inferior</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>Teclas principales en juegos</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>Franjas laterales en juegos</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>Luz inferior en juegos</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>Efecto</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>Vista previa de la luz</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>Color fijo</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>Ciclo de colores</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>Permitir que los juegos iluminen teclas</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>Se guarda en el perfil, pero no tiene efecto en la luz.</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>Indica si la luz está encendida. Marcar la casilla no tiene efecto.</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>Sin efecto: este teclado tiene una sola zona.</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>Brillo</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>Apagado</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>Tenue</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>Normal</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>Intenso</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>Versión del controlador:</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>Versión del firmware:</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>Consultando la versión del firmware</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>Buscar actualizaciones</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>Restablecer…</translation></message>
</context>
</TS>
