<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="lkeyLightingZones"><source>lkeyLightingZones</source><translation>ゾーン</translation></message>
    <message id="lkeyZoneMain"><source>lkeyZoneMain</source><translation>メインキー</translation></message>
    <message id="lkeyZoneMainColor"><source>lkeyZoneMainColor</source><translation>メインキーの色</translation></message>
    <message id="lkeyZoneSidestrips"><source>lkeyZoneSidestrips</source><translation>サイドストリップ</translation></message>
    <message id="lkeyZoneSidestripsColor"><source>lkeyZoneSidestripsColor</source><translation>サイドストリップの色</translation></message>
    <message id="lkeyZoneUnderglow"><source>lkeyZoneUnderglow</source><translation>アンダーグロー</translation></message>
    <message id="lkeyZoneUnderglowColor"><source>lkeyZoneUnderglowColor</source><translation>アンダーグローの色</translation></message>
    <message id="lkeyInGameMain"><source>lkeyInGameMain</source><translation>ゲーム中のメインキー</translation></message>
    <message id="lkeyInGameSidestrips"><source>lkeyInGameSidestrips</source><translation>ゲーム中のサイドストリップ</translation></message>
    <message id="lkeyInGameUnderglow"><source>lkeyInGameUnderglow</source><translation>ゲーム中のアンダーグロー</translation></message>
    <message id="lkeyLightingEffect"><source>lkeyLightingEffect</source><translation>エフェクト</translation></message>
    <message id="lkeyLightPreview"><source>lkeyLightPreview</source><translation>ライトのプレビュー</translation></message>
    <message id="lkeyEffectFixedColor"><source>lkeyEffectFixedColor</source><translation>単色</translation></message>
    <message id="lkeyEffectSpectrumCycling"><source>lkeyEffectSpectrumCycling</source><translation>スペクトル循環</translation></message>
    <message id="lkeyEnableAddOnHighlight"><source>lkeyEnableAddOnHighlight</source><translation>ゲームによるキーの点灯を許可</translation></message>
    <message id="lkeyEnableAddOnHighlightTip"><source>lkeyEnableAddOnHighlightTip</source><translation>プロファイルに保存されますが、ライトには効果がありません。</translation></message>
    <message id="lkeyZoneMainTip"><source>lkeyZoneMainTip</source><translation>ライトがオンかどうかを示します。切り替えても効果はありません。</translation></message>
    <message id="lkeyOtherZoneTip"><source>lkeyOtherZoneTip</source><translation>効果はありません。このキーボードのゾーンは 1 つだけです。</translation></message>
    <message id="lkeyBrightness"><source>lkeyBrightness</source><translation>明るさ</translation></message>
    <message id="lkeyBrightnessOff"><source>lkeyBrightnessOff</source><translation>オフ</translation></message>
    <message id="lkeyBrightnessDim"><source>lkeyBrightnessDim</source><translation>暗い</translation></message>
    <message id="lkeyBrightnessNormal"><source>lkeyBrightnessNormal</source><translation>標準</translation></message>
    <message id="lkeyBrightnessBright"><source>lkeyBrightnessBright</source><translation>明るい</translation></message>
    <message id="lkeyDriverVersion"><source>lkeyDriverVersion</source><translation>ドライバーのバージョン:</translation></message>
    <message id="lkeyFirmwareVersion"><source>lkeyFirmwareVersion</source><translation>ファームウェアのバージョン:</translation></message>
    <message id="lkeyFirmwareVersionQuery"><source>lkeyFirmwareVersionQuery</source><translation>ファームウェアのバージョンを確認中</translation></message>
    <message id="lkeyCheckUpdates"><source>lkeyCheckUpdates</source><translation>アップデートを確認</translation></message>
    <message id="lkeyRestoreSettings"><source>lkeyRestoreSettings</source><translation>デフォルトに戻す…</translation></message>
</context>
</TS>
