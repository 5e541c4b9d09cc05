<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@：%@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@：%@（%@）</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>不明な割り当て</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>プロファイル %@：%@ 個のキーに割り当て</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>プロファイル %@ を追加</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>プロファイル %@ を削除</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>プロファイル %@ の名前を %@ に変更</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>プロファイル %@ を選択</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>プロファイル %@ を %@ に連動</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>プロファイル %@ のアプリ連動を解除</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>プロファイル %@：切り替え時に名前を表示</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>プロファイル %@：切り替え時に名前を表示しない</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>プロファイル %@ を変更</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>プロファイルを並べ替え</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>プロファイル %@：ライトをオン</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>プロファイル %@：ライトをオフ</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>プロファイル %@：明るさ %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>プロファイル %@：色 %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>プロファイル %@：ライト効果を変更</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>マクロ %@ を追加</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>マクロ %@ を削除</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>マクロ %@ の名前を %@ に変更</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>マクロ %@：%@ 個のイベントを記録</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>マクロ %@：%@ 個のイベントを記録</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>マクロ %@ を変更</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>マクロ %@：%@ 個のイベントを追加</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>マクロ %@：%@ 個のイベントを追加</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>マクロ %@：%@ 個のイベントを削除</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>マクロ %@：%@ 個のイベントを削除</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>マクロ %@：%@ 個のイベントを変更</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>マクロ %@：%@ 個のイベントを変更</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>マクロ %@：%@ 個の待ち時間を設定</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>マクロ %@：%@ 個の待ち時間を設定</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>ゲームモードをオン</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>ゲームモードをオフ</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>複数の設定を変更</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>すべての設定を %@ から復元</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>設定が別の方法で変更されました</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>取り消し：%@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>やり直し：%@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>元に戻す：%@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>以前の変更</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>プロファイル %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>プロファイル：%@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>マクロ %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>マクロ %@：%@ 個のイベント</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>マクロ %@：%@ 個のイベント</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>プロファイル %@：ライト効果 %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>マクロ %@、イベント %@：%@ を押す（%@ ミリ秒後）</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>マクロ %@、イベント %@：%@ を離す（%@ ミリ秒後）</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>マクロ %@、イベント %@：%@ ミリ秒の待機</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>存在しません</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>元に戻す</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>元に戻す: %@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>元に戻せませんでした: %@。理由: %@。</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>やり直せませんでした: %@。理由: %@。</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>その間に設定が変わり、別の変更が先になりました</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>この変更はすでに取り消されています</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>その後、設定が別の方法で置き換えられました</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>キーボードのサービスが応答しませんでした</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@。「元に戻す」または Ctrl+Z で取り消せます。</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>履歴…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>履歴</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>変更を検索</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>時刻</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>変更</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>変更元</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>状態</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>このウインドウ</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>キーボード</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>ほかのプログラム</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>有効</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>取り消し済み</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>取り消せません</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>復元</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>履歴を消去…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>履歴にはまだ変更がありません。</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>変更を選択すると、その内容が表示されます。</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>変更前</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>変更後</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>変更の内容</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>この変更には %@ 個の項目があります。最初の %@ 個を表示しています。</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>変更前の状態は不明です：%@。</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>「復元」はこの変更だけを取り消します。</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>「復元」は後の変更 %@ 件も取り消します: %@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>「復元」は後の変更 1 件も取り消します: %@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>この変更は取り消せません: %@。</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>履歴を削除しますか？</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>この一覧のすべての変更、毎日のバックアップ、以前のバージョンの設定がすべて削除されます。削除したプロファイルとマクロは二度と戻せません。現在の設定はそのまま残ります。</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>削除</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>取り消せませんでした: %@。理由: %@。</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>履歴、毎日のバックアップ、以前のバージョンの設定を削除しました。</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>履歴を削除できませんでした: %@。</translation></message>
</context>
</TS>
