<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <!-- The titles that macros and profiles share (lkeyRename to lkeyDelete) are in profiles.ts. -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>マクロ</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>追加</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>削除</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>マクロの操作</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>選択したマクロのイベント:</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>イベント</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>イベントの操作</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>マクロを選択するとイベントが表示されます。</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>追記</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>削除</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>記録</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>停止</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>編集…</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>イベントを削除</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>すべてのイベントを削除</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>待ち時間をコピー</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>待ち時間なし</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>待ち時間（ミリ秒）:</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>このイベントのキーを押してください:</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>マクロ「%@」を削除しますか？</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>このマクロを再生するキーは標準の機能に戻ります。この操作は取り消せません。</translation></message>
</context>
</TS>
