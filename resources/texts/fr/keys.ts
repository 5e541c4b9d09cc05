<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="lkeyDefaultKey"><source>lkeyDefaultKey</source><translation>Fonction par défaut</translation></message>
    <message id="lkeySingleKey"><source>lkeySingleKey</source><translation>Touche unique</translation></message>
    <message id="lkeyMacro"><source>lkeyMacro</source><translation>Macro</translation></message>
    <message id="lkeyProfile"><source>lkeyProfile</source><translation>Changer de profil</translation></message>
    <message id="lkeyLaunchProgram"><source>lkeyLaunchProgram</source><translation>Lancer un programme</translation></message>
    <message id="lkeyDisable"><source>lkeyDisable</source><translation>Désactiver la touche</translation></message>
    <message id="lkeyManageProfile"><source>lkeyManageProfile</source><translation>Gérer les profils…</translation></message>
    <message id="lkeyManageMacro"><source>lkeyManageMacro</source><translation>Gérer les macros…</translation></message>
    <message id="lkeyPlayMacroOnce"><source>lkeyPlayMacroOnce</source><translation>Exécuter une fois</translation></message>
    <message id="lkeyRepeatUntilReleased"><source>lkeyRepeatUntilReleased</source><translation>Répéter jusqu’au relâchement</translation></message>
    <message id="lkeyRepeatUntilPressedAgain"><source>lkeyRepeatUntilPressedAgain</source><translation>Répéter jusqu’à un nouvel appui</translation></message>
    <message id="lkeyRepeat2Times"><source>lkeyRepeat2Times</source><translation>Exécuter 2 fois</translation></message>
    <message id="lkeyRepeat3Times"><source>lkeyRepeat3Times</source><translation>Exécuter 3 fois</translation></message>
    <message id="lkeyRepeat4Times"><source>lkeyRepeat4Times</source><translation>Exécuter 4 fois</translation></message>
    <message id="lkeyRepeat5Times"><source>lkeyRepeat5Times</source><translation>Exécuter 5 fois</translation></message>
    <message id="lkeyRepeat6Times"><source>lkeyRepeat6Times</source><translation>Exécuter 6 fois</translation></message>
    <message id="lkeyRepeat7Times"><source>lkeyRepeat7Times</source><translation>Exécuter 7 fois</translation></message>
    <message id="lkeyRepeat8Times"><source>lkeyRepeat8Times</source><translation>Exécuter 8 fois</translation></message>
    <message id="lkeyRepeat9Times"><source>lkeyRepeat9Times</source><translation>Exécuter 9 fois</translation></message>
    <message id="lkeyRepeat10Times"><source>lkeyRepeat10Times</source><translation>Exécuter 10 fois</translation></message>
    <message id="lkeySelectedKey"><source>lkeySelectedKey</source><translation>Touche :</translation></message>
    <message id="lkeyAssignFunction"><source>lkeyAssignFunction</source><translation>Fonction :</translation></message>
    <message id="lkeyPlaybackOption"><source>lkeyPlaybackOption</source><translation>Exécution :</translation></message>
    <message id="lkeySingleKeyInput"><source>lkeySingleKeyInput</source><translation>Sur votre Quill Kestra, appuyez sur la touche que la touche sélectionnée doit envoyer.</translation></message>
    <message id="lkeySingleKeyInputOn"><source>lkeySingleKeyInputOn</source><translation>Sur « %@ », appuyez sur la touche que la touche sélectionnée doit envoyer.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOn"><source>lkeyFunctionKeysInfoGameModeOn</source><translation>Le mode jeu est activé. %@ conserve sa fonction. Les touches Command sont sans effet.</translation></message>
    <message id="lkeyFunctionKeysInfoGameModeOff"><source>lkeyFunctionKeysInfoGameModeOff</source><translation>Le mode jeu est désactivé. %@ conserve sa fonction. Activez le mode jeu pour désactiver les touches Command pendant que vous jouez.</translation></message>
    <message id="lkeyKeysBox"><source>lkeyKeysBox</source><translation>Clavier</translation></message>
    <message id="lkeyKeysPicture"><source>lkeyKeysPicture</source><translation>Clavier. Sélectionnez une touche avec les touches fléchées ou en tapant son caractère.</translation></message>
    <message id="lkeyKeysToolTip"><source>lkeyKeysToolTip</source><translation>&lt;b&gt;%@&lt;/b&gt;&lt;br&gt;%@</translation></message>
    <message id="lkeyKeysMacroWithRepeat"><source>lkeyKeysMacroWithRepeat</source><translation>%@ (%@)</translation></message>
    <message id="lkeyKeysLegendSelected"><source>lkeyKeysLegendSelected</source><translation>Touche sélectionnée</translation></message>
    <message id="lkeyKeysLegendDisabled"><source>lkeyKeysLegendDisabled</source><translation>Désactivée</translation></message>
    <message id="lkeyKeysNoAssignment"><source>lkeyKeysNoAssignment</source><translation>Non modifiable</translation></message>
    <message id="lkeyKeysEjectKey"><source>lkeyKeysEjectKey</source><translation>Éjecter</translation></message>
    <message id="lkeyKeysMacroKey"><source>lkeyKeysMacroKey</source><translation>Enregistrement de macro</translation></message>
    <message id="lkeyKeysFnKey"><source>lkeyKeysFnKey</source><translation>FN</translation></message>
    <message id="lkeyKeysMenuKey"><source>lkeyKeysMenuKey</source><translation>Menu</translation></message>
    <message id="lkeyKeysBlankKey"><source>lkeyKeysBlankKey</source><translation>Touche vierge du pavé numérique</translation></message>
    <message id="lkeyKeysWordmark"><source>lkeyKeysWordmark</source><translation>QUILL KESTRA</translation></message>
    <message id="lkeyKeysUnknownAssignment"><source>lkeyKeysUnknownAssignment</source><translation>Fonction inconnue</translation></message>
    <message id="lkeyKeysLostRecord"><source>lkeyKeysLostRecord</source><translation>n° %@ (n’existe pas)</translation></message>
    <message id="lkeyKeysSearch"><source>lkeyKeysSearch</source><translation>Rechercher une touche ou une fonction</translation></message>
    <message id="lkeyKeysSearchNext"><source>lkeyKeysSearchNext</source><translation>Résultat suivant</translation></message>
    <message id="lkeyKeysSearchPrevious"><source>lkeyKeysSearchPrevious</source><translation>Résultat précédent</translation></message>
    <message id="lkeyKeysSearchResult"><source>lkeyKeysSearchResult</source><translation>Touches trouvées : %@</translation></message>
    <message id="lkeyKeysSearchNothing"><source>lkeyKeysSearchNothing</source><translation>Aucune touche trouvée</translation></message>
    <message id="lkeyKeysLayoutName"><source>lkeyKeysLayoutName</source><translation>%@ (touche %@)</translation></message>
    <message id="lkeyKeysMKeyInfo"><source>lkeyKeysMKeyInfo</source><translation>Une touche supplémentaire à gauche du clavier, pour vos propres fonctions. Elle a le code de %@. La plupart des programmes l’ignorent tant que vous ne lui attribuez rien.</translation></message>
    <message id="lkeyKeysTKeyInfo"><source>lkeyKeysTKeyInfo</source><translation>Une touche supplémentaire sous la barre d’espace, pour vos propres fonctions. Elle a le code de %@. La plupart des programmes l’ignorent tant que vous ne lui attribuez rien.</translation></message>
    <message id="lkeyKeysSeveralSelected"><source>lkeyKeysSeveralSelected</source><translation>%@ et %@ de plus</translation></message>
    <message id="lkeyKeysCopy"><source>lkeyKeysCopy</source><translation>Copier la fonction</translation></message>
    <message id="lkeyKeysPaste"><source>lkeyKeysPaste</source><translation>Coller la fonction</translation></message>
    <message id="lkeyKeysMacroGone"><source>lkeyKeysMacroGone</source><translation>La macro de cette touche n’existe plus. La touche ne fait rien tant que vous ne choisissez pas une autre fonction.</translation></message>
    <message id="lkeyKeysProfileGone"><source>lkeyKeysProfileGone</source><translation>Le profil de cette touche n’existe plus. La touche ne fait rien tant que vous ne choisissez pas une autre fonction.</translation></message>
    <message id="lkeyKeysKindUnknown"><source>lkeyKeysKindUnknown</source><translation>Ce programme ne connaît pas le type de fonction de cette touche. La touche ne fait rien tant que vous ne choisissez pas une autre fonction.</translation></message>
    <message id="lkeyKeysCardNone"><source>lkeyKeysCardNone</source><translation>Sélectionnez une touche sur l’image pour voir et modifier sa fonction.</translation></message>
    <message id="lkeyKeysCardDefault"><source>lkeyKeysCardDefault</source><translation>La touche fonctionne comme d’habitude.</translation></message>
    <message id="lkeyKeysCardSingleKey"><source>lkeyKeysCardSingleKey</source><translation>L’ordinateur reçoit cette touche à la place de la touche pressée.</translation></message>
    <message id="lkeyKeysCardDisabled"><source>lkeyKeysCardDisabled</source><translation>La touche ne fait rien.</translation></message>
    <message id="lkeyKeysCardProfile"><source>lkeyKeysCardProfile</source><translation>Touches configurées dans ce profil : %@</translation></message>
    <message id="lkeyKeysCardProgramGone"><source>lkeyKeysCardProgramGone</source><translation>Ce programme n’est plus installé. Choisissez une autre fonction.</translation></message>
    <message id="lkeyKeysCardMacro"><source>lkeyKeysCardMacro</source><translation>Événements : %@ · %@ s</translation></message>
    <message id="lkeyKeysCardNoEvents"><source>lkeyKeysCardNoEvents</source><translation>Cette macro n’a pas encore d’événements. Enregistrez-les dans l’onglet Macros.</translation></message>
    <message id="lkeyKeysCardDifferent"><source>lkeyKeysCardDifferent</source><translation>Fonctions différentes</translation></message>
    <message id="lkeyKeysCardSeveral"><source>lkeyKeysCardSeveral</source><translation>Un choix ici modifie les %@ touches sélectionnées.</translation></message>
    <message id="lkeyKeysCardPreview"><source>lkeyKeysCardPreview</source><translation>Touches de la macro : %@</translation></message>
    <message id="lkeyKeysCardExtraKey"><source>lkeyKeysCardExtraKey</source><translation>Une touche supplémentaire. La plupart des programmes l’ignorent tant que vous ne lui attribuez rien.</translation></message>
</context>
</TS>
