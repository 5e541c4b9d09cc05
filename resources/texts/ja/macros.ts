<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>マクロ</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>マクロ:</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>追加</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>削除</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>マクロの操作</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>選択したマクロのイベント:</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>イベント</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>イベントの操作</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>マクロを選択するとイベントが表示されます。</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>続けて記録</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>削除</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>マクロを追加</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>選択したマクロを削除</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>マクロの末尾に続けてイベントを記録</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>選択したイベントを削除</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>マクロはまだありません。</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>マクロを追加してから、イベントを記録してください。</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>このマクロにはまだイベントがありません。「記録」をクリックしてから、キーボードのキーを押してください。</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>記録中です。マクロにするキーを押し、終わったら「停止」をクリックしてください。</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>ここでマクロのキーを押してください。仮想キーボードを使用中です。</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>マクロにするキーを「%@」で押してください。</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>マクロを読み込む</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>マクロを書き出す</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>マクロ (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>記録</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>停止</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>編集…</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>編集できるのは、最初の 256 行にあるイベントだけです。</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>編集できるのは、最初の 256 個のマクロのイベントだけです。</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>イベントを削除</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>すべてのイベントを削除</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>待ち時間をすべてに適用</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>待ち時間なし</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>待ち時間を編集</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>イベントを編集</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>待ち時間（ミリ秒）:</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>現在の待ち時間: %@ ミリ秒。整数で入力してください。</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>このイベントのキーを押してください:</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>このイベントのキーを「%@」で押してください:</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>マクロ「%@」を削除しますか？</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>このマクロを再生するキーは、デフォルトの機能に戻ります。この操作は後で取り消せます。</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>複製</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>マクロを検索</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>見つかったマクロ: %@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>マクロが見つかりません</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@（%@）</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>、</translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>再生するキー: %@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>再生するキー:</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>このマクロを再生するキーはありません。</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>ほか %@ 個…</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>このキーを「キー」タブに表示</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>プロファイル「%@」をアクティブにして、このキーを「キー」タブに表示</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>ほかのプロファイルのキーを選ぶと、そのプロファイルがアクティブになります。</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>マウスボタンを記録するには、ここをクリックしてください。</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>試す…</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>選択したマクロを試す</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>マクロを試す</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>「%@」でコンピューターが受け取る内容を確認できます。「開始」をクリックしても、コンピューターには何も送られません。</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>再生方法</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>開始</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>コンピューターが受け取る内容</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>「開始」をクリックすると、マクロの動きを確認できます。</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>再生中です。Escape キーで停止します。</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>マクロは最後まで再生されました。</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>停止しました。</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>停止しました。マクロが変更されました。</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>停止しました。試せるのは最大 10 分間、100,000 イベントまでです。</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>このマクロには再生する内容がありません。</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>マクロを試しているプログラムが多すぎます。しばらくしてからもう一度お試しください。</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>キーボードサービスは、現在このマクロを再生できません。</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>ここでマクロのキーを押してください：</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>ここではマクロのキーが実際に入力を行います。このフィールドから離れると、シートは閉じます。</translation></message>
</context>
</TS>
