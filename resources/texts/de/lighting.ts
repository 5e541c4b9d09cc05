<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>Zonen</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>Haupttasten</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>Farbe der Haupttasten</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>Lichtleisten</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>Farbe der Lichtleisten</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>Unterseite</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>Farbe der Unterseite</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>Haupttasten im Spiel</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>Lichtleisten im Spiel</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>Unterseite im Spiel</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>Effekt</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>Vorschau des Lichts</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>Feste Farbe</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>Farbwechsel</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>Spiele dürfen Tasten beleuchten</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>Wird im Profil gespeichert, hat aber keine Wirkung auf das Licht.</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>Zeigt, ob das Licht an ist. Ankreuzen hat keine Wirkung.</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>Ohne Wirkung: Diese Tastatur hat nur eine Zone.</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>Helligkeit</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>Aus</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>Schwach</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>Normal</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>Hell</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>Treiberversion:</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>Firmware-Version:</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>Firmware-Version wird abgefragt</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>Nach Updates suchen</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>Standard wiederherstellen …</translation></message>
</context>
</TS>
