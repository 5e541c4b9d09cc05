<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>默认功能</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>单个按键</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>宏</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>切换配置文件</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>启动程序</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>禁用按键</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>管理配置文件…</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>管理宏…</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>播放一次</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>重复直到松开</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>重复直到再次按下</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>播放 2 次</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>播放 3 次</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>播放 4 次</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>播放 5 次</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>播放 6 次</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>播放 7 次</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>播放 8 次</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>播放 9 次</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>播放 10 次</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>所选按键：</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>功能：</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>播放：</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>请在 Quill Kestra 上按下要由所选按键发送的键。</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>请在“%@”上按下要由所选按键发送的键。</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>游戏模式已开启。%@ 仍执行您分配的功能，Command 键不起作用。</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>游戏模式已关闭。%@ 仍执行您分配的功能。如需在游戏时禁用 Command 键，请开启游戏模式。</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>键盘</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>键盘。使用方向键或输入字符来选择按键。</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@（%@）</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>所选按键</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>已禁用</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>无法分配功能</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>弹出</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>宏录制</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>菜单</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>数字区空白键</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>未知功能</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>第 %@ 个（不存在）</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>搜索按键和功能</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>下一个找到的按键</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>上一个找到的按键</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>找到的按键：%@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>未找到按键</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@（%@ 键）</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>位于键盘左侧的附加键，供您自行分配功能。其键码与 %@ 相同。分配功能之前，大多数程序会忽略它。</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>位于空格键下方的附加键，供您自行分配功能。其键码与 %@ 相同。分配功能之前，大多数程序会忽略它。</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ 及其他 %@ 个</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>复制功能</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>粘贴功能</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>此按键的宏已不存在。选择其他功能之前，此按键不起作用。</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>此按键要切换到的配置文件已不存在。选择其他功能之前，此按键不起作用。</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>本程序不认识此按键的功能类型。选择其他功能之前，此按键不起作用。</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>请在图中选择一个按键，以查看和更改其功能。</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>此按键照常工作。</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>电脑收到的是该按键，而不是所按下的按键。</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>此按键不起作用。</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>此配置文件中已设置的按键：%@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>此程序已不再安装。请选择其他功能。</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>事件：%@ · %@ 秒</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>此宏还没有事件。请在“宏”标签页中录制。</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>功能各不相同</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>此处的选择会更改全部 %@ 个所选按键。</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>宏中的按键：%@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>这是附加按键。在为它设置功能之前，大多数程序会忽略它。</translation></message>
</context>
</TS>
