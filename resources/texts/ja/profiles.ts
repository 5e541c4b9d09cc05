<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="lkeyProfiles"><source>lkeyProfiles</source><translation>プロファイル</translation></message>
    <message id="lkeyProfileColumnId"><source>lkeyProfileColumnId</source><translation>番号</translation></message>
    <message id="lkeyProfileColumnName"><source>lkeyProfileColumnName</source><translation>名前</translation></message>
    <message id="lkeyProfileColumnApplication"><source>lkeyProfileColumnApplication</source><translation>アプリケーション</translation></message>
    <message id="lkeyProfileColumnAutoSwitch"><source>lkeyProfileColumnAutoSwitch</source><translation>自動切り替え</translation></message>
    <message id="lkeyAddProfile"><source>lkeyAddProfile</source><translation>追加</translation></message>
    <message id="lkeyDeleteProfile"><source>lkeyDeleteProfile</source><translation>削除</translation></message>
    <message id="lkeyProfileCommands"><source>lkeyProfileCommands</source><translation>プロファイルの操作</translation></message>
    <message id="lkeyEnableOnScreenDisplay"><source>lkeyEnableOnScreenDisplay</source><translation>切り替え時にプロファイルを画面に表示</translation></message>
    <message id="lkeyRename"><source>lkeyRename</source><translation>名前を変更</translation></message>
    <message id="lkeyNew"><source>lkeyNew</source><translation>新規</translation></message>
    <message id="lkeyImport"><source>lkeyImport</source><translation>読み込む…</translation></message>
    <message id="lkeyExport"><source>lkeyExport</source><translation>書き出す…</translation></message>
    <message id="lkeyDelete"><source>lkeyDelete</source><translation>削除…</translation></message>
    <message id="lkeyCopy"><source>lkeyCopy</source><translation>コピー</translation></message>
    <message id="lkeyAssignApplication"><source>lkeyAssignApplication</source><translation>アプリケーションを割り当てる…</translation></message>
    <message id="lkeyRemoveApplication"><source>lkeyRemoveApplication</source><translation>割り当てを解除</translation></message>
    <message id="lkeyRestoreDefault"><source>lkeyRestoreDefault</source><translation>デフォルトに戻す…</translation></message>
    <message id="lkeyDeleteProfileAlertTitle"><source>lkeyDeleteProfileAlertTitle</source><translation>プロファイル「%@」を削除しますか？</translation></message>
    <message id="lkeyDeleteProfileAlertDesc"><source>lkeyDeleteProfileAlertDesc</source><translation>キーの割り当てとライティングの設定も削除されます。この操作は後で取り消せます。</translation></message>
    <message id="lkeyRestoreDefaultTitle"><source>lkeyRestoreDefaultTitle</source><translation>プロファイル「%@」をデフォルトの設定に戻しますか？</translation></message>
    <message id="lkeyRestoreDefaultDesc"><source>lkeyRestoreDefaultDesc</source><translation>プロファイルの名前は残ります。あなたのキーの割り当て、ライティング、その他の設定は、すべてデフォルトに戻ります。この操作は後で取り消せます。</translation></message>
    <message id="lkeyImportProfile"><source>lkeyImportProfile</source><translation>プロファイルを読み込む</translation></message>
    <message id="lkeyExportProfile"><source>lkeyExportProfile</source><translation>プロファイルを書き出す</translation></message>
    <message id="lkeyProfileFiles"><source>lkeyProfileFiles</source><translation>プロファイル (%@)</translation></message>
    <message id="lkeySharedApplicationTitle"><source>lkeySharedApplicationTitle</source><translation>「%@」にも %@ が割り当てられています</translation></message>
    <message id="lkeySharedApplicationDesc"><source>lkeySharedApplicationDesc</source><translation>アプリケーションが前面に来たとき、どちらかのプロファイルを使用中であれば、そのまま使われます。どちらも使用中でなければ、リストで先にあるプロファイルが使われます。</translation></message>
    <message id="lkeyNoApplications"><source>lkeyNoApplications</source><translation>アプリケーションに連動するプロファイルはまだありません。選択したプロファイルに割り当てると、アプリケーションが前面にある間、そのプロファイルが使用されます。</translation></message>
</context>
</TS>
