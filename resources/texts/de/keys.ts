<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>Standardfunktion</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>Einzelne Taste</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>Makro</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>Profil wechseln</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>Programm starten</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>Taste deaktivieren</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>Profile verwalten …</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>Makros verwalten …</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>Einmal abspielen</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>Bis zum Loslassen wiederholen</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>Bis zum nächsten Drücken wiederholen</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>2-mal abspielen</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>3-mal abspielen</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>4-mal abspielen</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>5-mal abspielen</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>6-mal abspielen</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>7-mal abspielen</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>8-mal abspielen</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>9-mal abspielen</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>10-mal abspielen</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>Gewählte Taste:</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>Belegung:</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>Wiedergabe:</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>Drücken Sie auf Ihrer Quill Kestra die Taste, die die gewählte Taste senden soll.</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>Drücken Sie auf „%@“ die Taste, die die gewählte Taste senden soll.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>Der Spielmodus ist eingeschaltet. %@ behält die Belegung. Die Command-Tasten haben keine Funktion.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>Der Spielmodus ist ausgeschaltet. %@ behält die Belegung. Schalten Sie ihn ein, um die Command-Tasten beim Spielen zu deaktivieren.</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>Tastatur</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>Tastatur. Wählen Sie eine Taste mit den Pfeiltasten oder durch Eingabe ihres Zeichens aus.</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@ (%@)</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>Gewählte Taste</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>Deaktiviert</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>Kann nicht belegt werden</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>Auswerfen</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>Makroaufnahme</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>Menü</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>Leere Taste im Ziffernblock</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>Unbekannte Belegung</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>Nr. %@ (nicht vorhanden)</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>Tasten und Belegungen suchen</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>Nächste gefundene Taste</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>Vorherige gefundene Taste</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>Gefundene Tasten: %@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>Keine Taste gefunden</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@ (Taste %@)</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>Eine Zusatztaste am linken Rand der Tastatur für Ihre eigenen Belegungen. Sie hat den Code von %@. Die meisten Programme beachten sie erst, wenn Sie sie belegen.</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>Eine Zusatztaste unter der Leertaste für Ihre eigenen Belegungen. Sie hat den Code von %@. Die meisten Programme beachten sie erst, wenn Sie sie belegen.</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ und %@ weitere</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>Belegung kopieren</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>Belegung einfügen</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>Das Makro dieser Taste ist nicht mehr vorhanden. Sie hat keine Funktion, bis Sie eine andere Belegung wählen.</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>Das Profil, zu dem diese Taste wechselt, ist nicht mehr vorhanden. Sie hat keine Funktion, bis Sie eine andere Belegung wählen.</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>Dieses Programm kennt die Art der Belegung dieser Taste nicht. Sie hat keine Funktion, bis Sie eine andere Belegung wählen.</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>Wählen Sie im Bild eine Taste, um ihre Belegung zu sehen und zu ändern.</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>Die Taste funktioniert wie gewohnt.</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>Der Computer empfängt diese Taste anstelle der gedrückten.</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>Die Taste hat keine Funktion.</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>Belegte Tasten in diesem Profil: %@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>Dieses Programm ist nicht mehr installiert. Wählen Sie eine andere Belegung.</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>Ereignisse: %@ · %@ s</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>Dieses Makro hat noch keine Ereignisse. Nehmen Sie sie auf dem Reiter „Makros“ auf.</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>Verschiedene Belegungen</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>Eine Auswahl hier ändert alle %@ gewählten Tasten.</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>Tasten des Makros: %@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>Eine Zusatztaste. Die meisten Programme beachten sie erst, wenn Sie sie belegen.</translation></message>
</context>
</TS>
