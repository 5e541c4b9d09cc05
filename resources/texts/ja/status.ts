<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- The status line at the bottom of the window. -->
    <!-- The state. -->
    <message id="lkeyStatusServiceAwaited"><source>lkeyStatusServiceAwaited</source><translation>キーボードのサービスを待っています</translation></message>
    <message id="lkeyStatusServiceRunning"><source>lkeyStatusServiceRunning</source><translation>サービス: 実行中</translation></message>
    <message id="lkeyStatusServiceSilent"><source>lkeyStatusServiceSilent</source><translation>サービス: 応答なし</translation></message>
    <message id="lkeyStatusServiceAbsent"><source>lkeyStatusServiceAbsent</source><translation>サービス: 停止中</translation></message>
    <message id="lkeyStatusVirtualKeyboard"><source>lkeyStatusVirtualKeyboard</source><translation>%@（仮想）</translation></message>
    <message id="lkeyStatusRealKeyboard"><source>lkeyStatusRealKeyboard</source><translation>%@（実物）</translation></message>
    <message id="lkeyStatusUnnamedKeyboard"><source>lkeyStatusUnnamedKeyboard</source><translation>実際のキーボード</translation></message>
    <message id="lkeyStatusKeyboardAttached"><source>lkeyStatusKeyboardAttached</source><translation>キーボード: %@、接続済み</translation></message>
    <message id="lkeyStatusKeyboardAbsent"><source>lkeyStatusKeyboardAbsent</source><translation>キーボード: %@、未接続</translation></message>
    <message id="lkeyStatusKeyboardWaiting"><source>lkeyStatusKeyboardWaiting</source><translation>キーボード: %@、すべてのキーを離すと使えます</translation></message>
    <message id="lkeyStatusKeyboardSuspended"><source>lkeyStatusKeyboardSuspended</source><translation>キーボード: %@、BackSpace、Escape、Enter キーで解放済み</translation></message>
    <message id="lkeyStatusKeyboardFailed"><source>lkeyStatusKeyboardFailed</source><translation>キーボード: %@、使用できません（理由は「kestractl status」で確認できます）</translation></message>
    <message id="lkeyStatusProfile"><source>lkeyStatusProfile</source><translation>プロファイル: %@</translation></message>
    <message id="lkeyStatusProfileChosen"><source>lkeyStatusProfileChosen</source><translation>プロファイル: %@、手動で選択</translation></message>
    <message id="lkeyStatusProfileOfApplication"><source>lkeyStatusProfileOfApplication</source><translation>プロファイル: %@（%@ が前面にあるため）</translation></message>
    <message id="lkeyStatusGameModeOn"><source>lkeyStatusGameModeOn</source><translation>ゲームモード: オン</translation></message>
    <message id="lkeyStatusGameModeOff"><source>lkeyStatusGameModeOff</source><translation>ゲームモード: オフ</translation></message>
    <message id="lkeyStatusNeedsShellExtension"><source>lkeyStatusNeedsShellExtension</source><translation>プロファイルをウィンドウに連動させるには %@ をインストールして有効にしてください</translation></message>
    <!-- The wait for an answer. -->
    <message id="lkeyStatusWaiting"><source>lkeyStatusWaiting</source><translation>キーボードのサービスの応答を待っています…</translation></message>
    <message id="lkeyStatusLateReply"><source>lkeyStatusLateReply</source><translation>キーボードのサービスの応答に %@ 秒かかりました。</translation></message>
    <!-- Events. -->
    <message id="lkeyStatusExportFailed"><source>lkeyStatusExportFailed</source><translation>ファイル「%@」を書き込めませんでした: %@。</translation></message>
    <message id="lkeyStatusImportFailed"><source>lkeyStatusImportFailed</source><translation>ファイル「%@」を読み込めませんでした: %@。</translation></message>
    <message id="lkeyStatusNotAProfile"><source>lkeyStatusNotAProfile</source><translation>ファイル「%@」はプロファイルではありません。</translation></message>
    <message id="lkeyStatusNotAMacro"><source>lkeyStatusNotAMacro</source><translation>ファイル「%@」はマクロではありません。</translation></message>
    <message id="lkeyStatusNotAnApplication"><source>lkeyStatusNotAnApplication</source><translation>「%@」はアプリケーションではありません。</translation></message>
    <message id="lkeyStatusMacroFull"><source>lkeyStatusMacroFull</source><translation>マクロ「%@」はいっぱいです。これ以上のキーは記録されません。</translation></message>
    <message id="lkeyStatusNewMacroKept"><source>lkeyStatusNewMacroKept</source><translation>新しいマクロ「%@」は保存されましたが、どのキーにも割り当てられていません。プロファイルまたはキーボードが変わりました。</translation></message>
    <message id="lkeyStatusRefused"><source>lkeyStatusRefused</source><translation>キーボードのサービスに拒否されました: %@。</translation></message>
    <message id="lkeyStatusNoReply"><source>lkeyStatusNoReply</source><translation>キーボードのサービスが応答しませんでした。</translation></message>
    <message id="lkeyStatusNoReplyToChange"><source>lkeyStatusNoReplyToChange</source><translation>キーボードのサービスが応答しませんでした。変更が反映されていない可能性があります。</translation></message>
    <message id="lkeyStatusEntryHasChanged"><source>lkeyStatusEntryHasChanged</source><translation>その間に一覧が変わったため、変更は行われませんでした。</translation></message>
    <message id="lkeyStatusEventsNotCopied"><source>lkeyStatusEventsNotCopied</source><translation>イベントはコピーされませんでした。マクロが再生できるキー、マウスボタン、待ち時間のいずれでもないものが含まれています。</translation></message>
    <message id="lkeyStatusRecordingNotStored"><source>lkeyStatusRecordingNotStored</source><translation>記録を保存できませんでした: %@。</translation></message>
    <message id="lkeyStatusRecordingWithoutReply"><source>lkeyStatusRecordingWithoutReply</source><translation>キーボードのサービスが応答しませんでした。記録が保存されていない可能性があります。</translation></message>
    <message id="lkeyStatusCleanUpRefused"><source>lkeyStatusCleanUpRefused</source><translation>項目は削除されましたが、その項目を使うキーの割り当ては解除されませんでした: %@。</translation></message>
    <message id="lkeyStatusCleanUpWithoutReply"><source>lkeyStatusCleanUpWithoutReply</source><translation>項目は削除されましたが、その後キーボードのサービスが応答しませんでした。その項目を使うキーの割り当てが残っている可能性があります。</translation></message>
    <message id="lkeyStatusSettingsProblem"><source>lkeyStatusSettingsProblem</source><translation>キーボードの設定の問題: %@</translation></message>
    <message id="lkeyStatusShellExtensionMissing"><source>lkeyStatusShellExtensionMissing</source><translation>GNOME でプロファイルをウィンドウに連動させるには、パッケージ「%@」をインストールして有効にする必要があります。</translation></message>
    <!-- The reason at the end of lkeyStatusRefused, lkeyStatusRecordingNotStored and lkeyStatusCleanUpRefused. -->
    <message id="lkeyStatusReasonGone"><source>lkeyStatusReasonGone</source><translation>項目がもうありません</translation></message>
    <message id="lkeyStatusReasonFull"><source>lkeyStatusReasonFull</source><translation>空きがありません</translation></message>
    <message id="lkeyStatusReasonLastProfile"><source>lkeyStatusReasonLastProfile</source><translation>最後のプロファイルは削除できません</translation></message>
    <message id="lkeyStatusReasonNotSaved"><source>lkeyStatusReasonNotSaved</source><translation>設定をディスクに書き込めませんでした</translation></message>
    <message id="lkeyStatusReasonNoKeyboard"><source>lkeyStatusReasonNoKeyboard</source><translation>キーボードが接続されていません</translation></message>
    <message id="lkeyStatusReasonNothingRecorded"><source>lkeyStatusReasonNothingRecorded</source><translation>サービスに記録されたキーがありません</translation></message>
    <message id="lkeyStatusReasonBusy"><source>lkeyStatusReasonBusy</source><translation>サービスがほかの処理を行っています</translation></message>
    <message id="lkeyStatusReasonInvalid"><source>lkeyStatusReasonInvalid</source><translation>値を受け付けられません</translation></message>
    <message id="lkeyStatusFileWaits"><source>lkeyStatusFileWaits</source><translation>ファイル「%@」は、開いているダイアログ、名前の入力、または記録が終わってから開きます。</translation></message>
    <message id="lkeyStatusFileWaitsForKeyboard"><source>lkeyStatusFileWaitsForKeyboard</source><translation>ファイル「%@」は、キーボードの準備ができてから開きます。</translation></message>
    <message id="lkeyStatusFileAdded"><source>lkeyStatusFileAdded</source><translation>ファイル「%@」を追加しました。</translation></message>
    <message id="lkeyStatusNotAddable"><source>lkeyStatusNotAddable</source><translation>ファイル「%@」はプロファイルでもマクロでもありません。</translation></message>
    <message id="lkeyStatusNotALocalFile"><source>lkeyStatusNotALocalFile</source><translation>「%@」はこのコンピューター上のファイルではありません。</translation></message>
    <message id="lkeyStatusFileRefused"><source>lkeyStatusFileRefused</source><translation>ファイル「%@」を追加できませんでした: %@。</translation></message>
    <message id="lkeyStatusFilesNotOpened"><source>lkeyStatusFilesNotOpened</source><translation>待機中のファイルが多すぎるため、開かなかったファイルの数: %@</translation></message>
</context>
</TS>
