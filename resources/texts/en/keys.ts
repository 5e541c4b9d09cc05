<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>Default key</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>Single key</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>Macro</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>Switch profile</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>Launch program</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>Disable key</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>Manage profiles…</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>Manage macros…</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>Play once</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>Repeat until released</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>Repeat until pressed again</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>Play 2 times</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>Play 3 times</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>Play 4 times</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>Play 5 times</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>Play 6 times</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>Play 7 times</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>Play 8 times</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>Play 9 times</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>Play 10 times</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>Selected key:</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>Assignment:</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>Playback:</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>On your Quill Kestra, press the key that the selected key should send.</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>On “%@”, press the key that the selected key should send.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>Game mode is on. %@ keeps its assignment. The Command keys do nothing.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>Game mode is off. %@ keeps its assignment. Turn on game mode to disable the Command keys while you play.</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>Keyboard</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>Keyboard. Select a key with the arrow keys or by typing its character.</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@ (%@)</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>Selected key</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>Disabled</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>Cannot be assigned</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>Eject</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>Macro recording</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>Menu</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>Blank keypad key</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>Unknown assignment</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>no. %@ (does not exist)</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>Search keys and assignments</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>Next key found</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>Previous key found</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>Keys found: %@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>No key found</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@ (key %@)</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>An extra key at the left of the keyboard, for assignments of your own. It has the code of %@. Most programs ignore it until you assign something to it.</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>An extra key below the space bar, for assignments of your own. It has the code of %@. Most programs ignore it until you assign something to it.</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ and %@ more</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>Copy assignment</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>Paste assignment</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>This key plays a macro that no longer exists. It does nothing until you choose another assignment.</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>This key switches to a profile that no longer exists. It does nothing until you choose another assignment.</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>This program does not know the kind of assignment that this key has. The key does nothing until you choose another assignment.</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>Select a key in the picture to see and change its assignment.</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>The key works as usual.</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>The computer receives this key instead of the pressed one.</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>The key does nothing.</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>Assigned keys in this profile: %@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>This program was removed. Choose another assignment.</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>Events: %@ · %@ s</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>This macro has no events yet. Record them on the Macros tab.</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>Different assignments</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>A choice here changes all %@ selected keys.</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>Keys of the macro: %@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>An extra key. Most programs ignore it until you assign something to it.</translation></message>
</context>
</TS>
