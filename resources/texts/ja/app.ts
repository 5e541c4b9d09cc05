<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>OK</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>キャンセル</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>プロファイル:</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>終了</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Quill Kestra 設定</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>処理中</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>ヘルプ</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/ja</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>戻る</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>進む</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>目次</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>ヘルプを検索</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>見つかったページ</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>見つかりませんでした</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Quill のページ</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>ニュース</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>キー</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>プロファイル</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>マクロ</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>ライティング</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>メンテナンス</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>このキーボードにメンテナンスは必要ありません。</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>キーボードのサービスが応答しません</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>QuillKestraDaemon サービスに接続できませんでした。サービスを再起動しています。設定は失われません。サービスが応答すると、自動的に再開します。</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>セッションが終了しました</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>デスクトップセッションとの接続が切れたため、キーボードのサービスを利用できません。設定は失われません。このアプリを閉じて、もう一度起動してください。</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>ウェブページを開けませんでした</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>%@ を開けるブラウザーがありません。</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ は仮のアドレスです。このプログラムの配布元は、まだアドレスを設定していません。</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>キーボードが見つかりません</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>Quill Kestra キーボードを接続してください。接続すると、自動的に再開します。</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>キーボードに接続中…</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>キーボードのサービスの応答を待っています。応答があると、ウィンドウを操作できるようになります。</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>復元されたセッションで起動し、キーボードのサービスを待ちます。</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>ログイン時に起動し、キーボードのサービスを待ちます。</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>接続中のメッセージを表示せずに、すぐにキーボードを開きます。</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>マクロまたはプロファイルのファイル。キーボードのサービスを待ちますが、ファイルは読み込みません。</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>アプリケーションを選択</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>アプリケーション (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>アプリケーションを検索</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>アプリケーション</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>アプリケーション: %@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>該当するアプリケーションはありません</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>実行中</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>開いているウィンドウ</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>その他…</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>選択</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>「%@」を置き換えますか？</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>同じ名前のファイルがすでに存在します。置き換えると、内容は上書きされます。</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>置き換える</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>Escape キーを 1 秒間押し続けると、このキーボードをウィンドウで再び使えます。</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>このキーボードをウィンドウで再び使えます。</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>ここでキーを押してください。仮想キーボードを使用中です。</translation></message>
</context>
</TS>
