<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@：%@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@：%@（%@）</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>未知分配</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>配置文件 %@：已分配 %@ 个键</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>已添加配置文件 %@</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>已删除配置文件 %@</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>配置文件 %@ 已重命名为 %@</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>已选择配置文件 %@</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>配置文件 %@ 跟随 %@</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>配置文件 %@ 不再跟随应用程序</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>配置文件 %@：切换时显示名称</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>配置文件 %@：切换时不显示名称</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>已更改配置文件 %@</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>已重新排列配置文件</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>配置文件 %@：灯光已打开</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>配置文件 %@：灯光已关闭</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>配置文件 %@：亮度 %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>配置文件 %@：颜色 %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>配置文件 %@：已更改灯光效果</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>已添加宏 %@</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>已删除宏 %@</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>宏 %@ 已重命名为 %@</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>宏 %@：已录制 %@ 个事件</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>宏 %@：已录制 %@ 个事件</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>已更改宏 %@</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>宏 %@：已添加 %@ 个事件</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>宏 %@：已添加 %@ 个事件</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>宏 %@：已移除 %@ 个事件</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>宏 %@：已移除 %@ 个事件</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>宏 %@：已更改 %@ 个事件</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>宏 %@：已更改 %@ 个事件</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>宏 %@：已设置 %@ 个延迟</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>宏 %@：已设置 %@ 个延迟</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>游戏模式已打开</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>游戏模式已关闭</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>已更改多项设置</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>已从 %@ 恢复所有设置</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>设置已在别处更改</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>已撤销：%@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>已重做：%@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>已还原：%@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>先前的更改</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>配置文件 %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>配置文件：%@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>宏 %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>宏 %@：%@ 个事件</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>宏 %@：%@ 个事件</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>配置文件 %@：灯光效果 %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>宏 %@，事件 %@：%@ 按下（%@ 毫秒后）</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>宏 %@，事件 %@：%@ 松开（%@ 毫秒后）</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>宏 %@，事件 %@：停顿 %@ 毫秒</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>不存在</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>撤销</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>撤销：%@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>未撤销：%@。原因：%@。</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>未重做：%@。原因：%@。</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>设置已发生变化，现在应先处理另一项更改</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>此更改已被撤回</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>此后设置已以其他方式被替换</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>键盘服务没有响应</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@。可通过“撤销”或 Ctrl+Z 撤回。</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>历史记录…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>历史记录</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>搜索更改</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>时间</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>更改</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>来源</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>状态</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>此窗口</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>键盘</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>其他程序</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>有效</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>已撤回</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>无法撤回</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>恢复</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>清除…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>历史记录中还没有更改。</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>选择一项更改即可查看其内容。</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>更改前</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>更改后</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>更改内容</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>此更改包含 %@ 项，此处显示前 %@ 项。</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>更改前的状态未知：%@。</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>“恢复”仅撤回此更改。</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>“恢复”还会撤回之后的 %@ 项更改：%@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>“恢复”还会撤回之后的一项更改：%@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>无法撤回此更改：%@。</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>要删除历史记录吗？</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>此列表中的所有更改、每日备份以及设置的所有先前版本都将被删除，已删除的配置文件和宏将无法找回。您的设置会保留。</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>删除</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>未撤回：%@。原因：%@。</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>历史记录、每日备份和设置的先前版本已删除。</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>未能删除历史记录：%@。</translation></message>
</context>
</TS>
