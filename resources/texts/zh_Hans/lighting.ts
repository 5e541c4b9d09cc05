<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>区域</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>主键区</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>主键区颜色</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>侧边灯条</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>侧边灯条颜色</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>底部灯光</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>底部灯光颜色</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>游戏中的主键区</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>游戏中的侧边灯条</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>游戏中的底部灯光</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>灯效</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>灯光预览</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>固定颜色</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>光谱循环</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>允许游戏点亮按键</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>会保存到配置文件中，但对灯光没有效果。</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>显示灯光是否打开。勾选没有效果。</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>没有效果：此键盘只有一个区域。</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>亮度</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>关</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>暗</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>正常</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>亮</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>驱动程序版本：</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>固件版本：</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>正在查询固件版本</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>检查更新</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>恢复默认设置…</translation></message>
</context>
</TS>
