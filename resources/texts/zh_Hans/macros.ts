<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>宏</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>宏：</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>添加</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>删除</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>宏操作</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>所选宏的事件：</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>事件</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>事件操作</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>选择一个宏以查看其事件。</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>追加</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>删除</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>添加宏</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>删除所选宏</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>在宏末尾继续录制事件</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>删除所选事件</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>还没有宏。</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>请添加一个宏，然后录制事件。</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>此宏还没有事件。请点击“录制”，然后按下键盘上的按键。</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>正在录制。请按下宏的各个按键，然后点击“停止”。</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>当前使用的是虚拟键盘，请在此处按下宏的各个按键。</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>请在“%@”上按下宏的各个按键。</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>导入宏</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>导出宏</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>宏 (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>录制</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>停止</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>编辑…</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>只能编辑前 256 行中的事件。</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>只能编辑前 256 个宏中的事件。</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>删除事件</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>删除所有事件</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>将延迟应用于全部</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>无延迟</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>编辑延迟</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>编辑事件</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>延迟（毫秒）：</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>当前延迟：%@ 毫秒。请输入整数。</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>请按下用于此事件的按键：</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>请在“%@”上按下用于此事件的按键：</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>删除宏“%@”？</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>播放此宏的按键将恢复默认功能。此操作可以撤销。</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>复制一份</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>搜索宏</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>找到的宏：%@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>未找到宏</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@（%@）</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>、</translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>播放此宏的按键：%@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>播放此宏的按键：</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>没有按键播放此宏。</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>另外 %@ 个…</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>在“按键”标签页中显示此按键</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>启用配置文件“%@”，并在“按键”标签页中显示此按键</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>选择其他配置文件的按键会启用该配置文件。</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>点击此处以录制鼠标按钮。</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>试用…</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>试用所选的宏</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>试用宏</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>查看电脑会从“%@”收到什么。点击“开始”不会向电脑发送任何内容。</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>播放方式</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>开始</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>电脑会收到的内容</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>点击“开始”以查看宏的播放过程。</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>正在播放。按 Escape 键停止。</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>宏已播放完毕。</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>已停止。</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>已停止：宏已更改。</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>已停止：试用最长 10 分钟，最多 100,000 个事件。</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>此宏不播放任何内容。</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>正在试用宏的程序过多。请稍后再试。</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>键盘服务目前无法播放此宏。</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>请在此处按下宏的按键：</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>宏的按键会在此处真正输入。离开此输入框时，面板会关闭。</translation></message>
</context>
</TS>
