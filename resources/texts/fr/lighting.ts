<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>Zones</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>Touches principales</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>Couleur des touches principales</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>Bandes latérales</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>Couleur des bandes latérales</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>Éclairage inférieur</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>Couleur de l’éclairage inférieur</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>Touches principales en jeu</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>Bandes latérales en jeu</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>Éclairage inférieur en jeu</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>Effet</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>Aperçu de la lumière</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>Couleur fixe</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>Cycle des couleurs</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>Autoriser les jeux à éclairer des touches</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>Est enregistré dans le profil, mais n’a aucun effet sur la lumière.</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>Indique si la lumière est allumée. Cocher la case n’a aucun effet.</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>Sans effet : ce clavier n’a qu’une zone.</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>Luminosité</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>Éteint</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>Faible</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>Normale</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>Forte</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>Version du pilote :</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>Version du micrologiciel :</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>Lecture de la version du micrologiciel</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>Rechercher des mises à jour</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>Réinitialiser…</translation></message>
</context>
</TS>
