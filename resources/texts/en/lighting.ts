<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>Zones</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>Main keys</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>Colour of the main keys</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>Side strips</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>Colour of the side strips</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>Underglow</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>Colour of the underglow</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>Main keys in games</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>Side strips in games</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>Underglow in games</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>Effect</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>Preview of the light</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>Fixed colour</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>Spectrum cycling</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>Let games light keys</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>Is saved in the profile, but has no effect on the light.</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>Shows whether the light is on. Ticking it has no effect.</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>Has no effect: this keyboard has only one zone.</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>Brightness</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>Off</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>Dim</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>Normal</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>Bright</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>Driver version:</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>Firmware version:</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>Reading the firmware version</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>Check for updates</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>Restore defaults…</translation></message>
</context>
</TS>
