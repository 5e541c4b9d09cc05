<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>デフォルトの機能</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>単一キー</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>マクロ</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>プロファイルを切り替え</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>プログラムを起動</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>キーを無効化</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>プロファイルを管理…</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>マクロを管理…</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>1 回再生</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>離すまで繰り返す</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>もう一度押すまで繰り返す</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>2 回再生</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>3 回再生</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>4 回再生</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>5 回再生</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>6 回再生</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>7 回再生</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>8 回再生</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>9 回再生</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>10 回再生</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>選択したキー:</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>割り当て:</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>再生:</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>選択したキーから送信するキーを、Quill Kestra で押してください。</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>選択したキーから送信するキーを、「%@」で押してください。</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>ゲームモードはオンです。%@ は割り当てどおりに動作します。Command キーは無効です。</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>ゲームモードはオフです。%@ は割り当てどおりに動作します。プレイ中に Command キーを無効にするには、ゲームモードをオンにしてください。</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>キーボード</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>キーボード。矢印キーまたは文字の入力でキーを選択します。</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@（%@）</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>選択したキー</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>無効</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>割り当て不可</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>取り出し</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>マクロの記録</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>メニュー</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>テンキーの無刻印キー</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>不明な割り当て</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>%@ 番（存在しません）</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>キーと割り当てを検索</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>次に見つかったキー</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>前に見つかったキー</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>見つかったキー: %@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>キーが見つかりません</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@（%@ キー）</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>キーボードの左端にある追加キーです。自由に割り当てられます。コードは %@ と同じです。割り当てるまで、多くのプログラムはこのキーを無視します。</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>スペースキーの下にある追加キーです。自由に割り当てられます。コードは %@ と同じです。割り当てるまで、多くのプログラムはこのキーを無視します。</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ ほか %@ 個</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>割り当てをコピー</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>割り当てを貼り付け</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>このキーのマクロは存在しません。別の割り当てを選ぶまで、キーは何もしません。</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>このキーの切り替え先のプロファイルは存在しません。別の割り当てを選ぶまで、キーは何もしません。</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>このキーの割り当ての種類は、このプログラムでは不明です。別の割り当てを選ぶまで、キーは何もしません。</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>図のキーを選択すると、割り当ての確認と変更ができます。</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>キーは通常どおりに動作します。</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>押したキーの代わりに、このキーがコンピューターに送られます。</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>キーは何もしません。</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>このプロファイルで割り当てたキー: %@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>このプログラムはインストールされていません。別の割り当てを選んでください。</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>イベント: %@ · %@ 秒</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>このマクロにはまだイベントがありません。「マクロ」タブで記録してください。</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>異なる割り当て</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>ここで選ぶと、選択した %@ 個のキーがすべて変わります。</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>マクロのキー: %@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>追加キーです。何かを割り当てるまで、ほとんどのプログラムはこのキーを無視します。</translation></message>
</context>
</TS>
