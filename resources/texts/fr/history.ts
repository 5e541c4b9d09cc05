<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <!-- Entries of the history of the settings. -->
    <message id="lkeyHistoryKey"><source>lkeyHistoryKey</source><translation>%@ : %@</translation></message>
    <message id="lkeyHistoryKeyWithDetail"><source>lkeyHistoryKeyWithDetail</source><translation>%@ : %@ (%@)</translation></message>
    <message id="lkeyHistoryUnknownAssignment"><source>lkeyHistoryUnknownAssignment</source><translation>Affectation inconnue</translation></message>
    <message id="lkeyHistoryKeys"><source>lkeyHistoryKeys</source><translation>Profil %@ : %@ touches affectées</translation></message>
    <message id="lkeyHistoryProfileAdded"><source>lkeyHistoryProfileAdded</source><translation>Profil %@ ajouté</translation></message>
    <message id="lkeyHistoryProfileDeleted"><source>lkeyHistoryProfileDeleted</source><translation>Profil %@ supprimé</translation></message>
    <message id="lkeyHistoryProfileRenamed"><source>lkeyHistoryProfileRenamed</source><translation>Profil %@ renommé en %@</translation></message>
    <message id="lkeyHistoryProfileChosen"><source>lkeyHistoryProfileChosen</source><translation>Profil %@ choisi</translation></message>
    <message id="lkeyHistoryProfileBound"><source>lkeyHistoryProfileBound</source><translation>Le profil %@ suit %@</translation></message>
    <message id="lkeyHistoryProfileUnbound"><source>lkeyHistoryProfileUnbound</source><translation>Le profil %@ ne suit aucune application</translation></message>
    <message id="lkeyHistoryProfileShown"><source>lkeyHistoryProfileShown</source><translation>Profil %@ : nom affiché lors du changement</translation></message>
    <message id="lkeyHistoryProfileNotShown"><source>lkeyHistoryProfileNotShown</source><translation>Profil %@ : nom non affiché lors du changement</translation></message>
    <message id="lkeyHistoryProfileChanged"><source>lkeyHistoryProfileChanged</source><translation>Profil %@ modifié</translation></message>
    <message id="lkeyHistoryProfilesMoved"><source>lkeyHistoryProfilesMoved</source><translation>Profils réorganisés</translation></message>
    <message id="lkeyHistoryLightOn"><source>lkeyHistoryLightOn</source><translation>Profil %@ : éclairage activé</translation></message>
    <message id="lkeyHistoryLightOff"><source>lkeyHistoryLightOff</source><translation>Profil %@ : éclairage désactivé</translation></message>
    <message id="lkeyHistoryBrightness"><source>lkeyHistoryBrightness</source><translation>Profil %@ : luminosité %@</translation></message>
    <message id="lkeyHistoryColor"><source>lkeyHistoryColor</source><translation>Profil %@ : couleur %@</translation></message>
    <message id="lkeyHistoryEffect"><source>lkeyHistoryEffect</source><translation>Profil %@ : effet lumineux modifié</translation></message>
    <message id="lkeyHistoryMacroAdded"><source>lkeyHistoryMacroAdded</source><translation>Macro %@ ajoutée</translation></message>
    <message id="lkeyHistoryMacroDeleted"><source>lkeyHistoryMacroDeleted</source><translation>Macro %@ supprimée</translation></message>
    <message id="lkeyHistoryMacroRenamed"><source>lkeyHistoryMacroRenamed</source><translation>Macro %@ renommée en %@</translation></message>
    <message id="lkeyHistoryMacroRecorded"><source>lkeyHistoryMacroRecorded</source><translation>Macro %@ : %@ évènements enregistrés</translation></message>
    <message id="lkeyHistoryMacroRecordedOne"><source>lkeyHistoryMacroRecordedOne</source><translation>Macro %@ : %@ évènement enregistré</translation></message>
    <message id="lkeyHistoryMacroChanged"><source>lkeyHistoryMacroChanged</source><translation>Macro %@ modifiée</translation></message>
    <message id="lkeyHistoryEventsAdded"><source>lkeyHistoryEventsAdded</source><translation>Macro %@ : %@ évènements ajoutés</translation></message>
    <message id="lkeyHistoryEventAdded"><source>lkeyHistoryEventAdded</source><translation>Macro %@ : %@ évènement ajouté</translation></message>
    <message id="lkeyHistoryEventsRemoved"><source>lkeyHistoryEventsRemoved</source><translation>Macro %@ : %@ évènements supprimés</translation></message>
    <message id="lkeyHistoryEventRemoved"><source>lkeyHistoryEventRemoved</source><translation>Macro %@ : %@ évènement supprimé</translation></message>
    <message id="lkeyHistoryEventsChanged"><source>lkeyHistoryEventsChanged</source><translation>Macro %@ : %@ évènements modifiés</translation></message>
    <message id="lkeyHistoryEventChanged"><source>lkeyHistoryEventChanged</source><translation>Macro %@ : %@ évènement modifié</translation></message>
    <message id="lkeyHistoryDelaysSet"><source>lkeyHistoryDelaysSet</source><translation>Macro %@ : %@ délais définis</translation></message>
    <message id="lkeyHistoryDelaySet"><source>lkeyHistoryDelaySet</source><translation>Macro %@ : %@ délai défini</translation></message>
    <message id="lkeyHistoryGameModeOn"><source>lkeyHistoryGameModeOn</source><translation>Mode jeu activé</translation></message>
    <message id="lkeyHistoryGameModeOff"><source>lkeyHistoryGameModeOff</source><translation>Mode jeu désactivé</translation></message>
    <message id="lkeyHistorySeveral"><source>lkeyHistorySeveral</source><translation>Plusieurs réglages modifiés</translation></message>
    <message id="lkeyHistoryDocument"><source>lkeyHistoryDocument</source><translation>Tous les réglages restaurés depuis %@</translation></message>
    <message id="lkeyHistoryElsewhere"><source>lkeyHistoryElsewhere</source><translation>Réglages modifiés ailleurs</translation></message>
    <message id="lkeyHistoryUndone"><source>lkeyHistoryUndone</source><translation>Annulé : %@</translation></message>
    <message id="lkeyHistoryRedone"><source>lkeyHistoryRedone</source><translation>Rétabli : %@</translation></message>
    <message id="lkeyHistoryRestored"><source>lkeyHistoryRestored</source><translation>Repris : %@</translation></message>
    <message id="lkeyHistoryEarlierChange"><source>lkeyHistoryEarlierChange</source><translation>une modification antérieure</translation></message>
    <message id="lkeyHistoryProfile"><source>lkeyHistoryProfile</source><translation>Profil %@</translation></message>
    <message id="lkeyHistoryProfileOrder"><source>lkeyHistoryProfileOrder</source><translation>Profils : %@</translation></message>
    <message id="lkeyHistoryMacro"><source>lkeyHistoryMacro</source><translation>Macro %@</translation></message>
    <message id="lkeyHistoryMacroEvents"><source>lkeyHistoryMacroEvents</source><translation>Macro %@ : %@ évènements</translation></message>
    <message id="lkeyHistoryMacroEvent"><source>lkeyHistoryMacroEvent</source><translation>Macro %@ : %@ évènement</translation></message>
    <message id="lkeyHistoryEffectIs"><source>lkeyHistoryEffectIs</source><translation>Profil %@ : effet lumineux %@</translation></message>
    <message id="lkeyHistoryEventDown"><source>lkeyHistoryEventDown</source><translation>Macro %@, évènement %@ : %@ enfoncée après %@ ms</translation></message>
    <message id="lkeyHistoryEventUp"><source>lkeyHistoryEventUp</source><translation>Macro %@, évènement %@ : %@ relâchée après %@ ms</translation></message>
    <message id="lkeyHistoryEventDelay"><source>lkeyHistoryEventDelay</source><translation>Macro %@, évènement %@ : pause de %@ ms</translation></message>
    <message id="lkeyHistoryNotThere"><source>lkeyHistoryNotThere</source><translation>n’existe pas</translation></message>
    <!-- The window. -->
    <message id="lkeyHistoryUndo"><source>lkeyHistoryUndo</source><translation>Annuler</translation></message>
    <message id="lkeyHistoryUndoEntry"><source>lkeyHistoryUndoEntry</source><translation>Annuler : %@</translation></message>
    <message id="lkeyHistoryNotUndone"><source>lkeyHistoryNotUndone</source><translation>Non annulé : %@. Raison : %@.</translation></message>
    <message id="lkeyHistoryNotRedone"><source>lkeyHistoryNotRedone</source><translation>Non rétabli : %@. Raison : %@.</translation></message>
    <message id="lkeyHistoryReasonOutdated"><source>lkeyHistoryReasonOutdated</source><translation>les réglages ont changé entre-temps, une autre modification vient maintenant en premier</translation></message>
    <message id="lkeyHistoryReasonNotInEffect"><source>lkeyHistoryReasonNotInEffect</source><translation>la modification a déjà été annulée</translation></message>
    <message id="lkeyHistoryReasonUnreachable"><source>lkeyHistoryReasonUnreachable</source><translation>les réglages ont depuis été remplacés autrement</translation></message>
    <message id="lkeyHistoryReasonNoReply"><source>lkeyHistoryReasonNoReply</source><translation>le service du clavier n’a pas répondu</translation></message>
    <message id="lkeyHistoryCanBeUndone"><source>lkeyHistoryCanBeUndone</source><translation>%@. « Annuler » ou Ctrl+Z revient en arrière.</translation></message>
    <!-- The sheet. -->
    <message id="lkeyHistoryOpen"><source>lkeyHistoryOpen</source><translation>Historique…</translation></message>
    <message id="lkeyHistoryTitle"><source>lkeyHistoryTitle</source><translation>Historique</translation></message>
    <message id="lkeyHistorySearch"><source>lkeyHistorySearch</source><translation>Rechercher dans les modifications</translation></message>
    <message id="lkeyHistoryTime"><source>lkeyHistoryTime</source><translation>Heure</translation></message>
    <message id="lkeyHistoryChange"><source>lkeyHistoryChange</source><translation>Modification</translation></message>
    <message id="lkeyHistoryAuthor"><source>lkeyHistoryAuthor</source><translation>Par</translation></message>
    <message id="lkeyHistoryState"><source>lkeyHistoryState</source><translation>État</translation></message>
    <message id="lkeyHistoryByWindow"><source>lkeyHistoryByWindow</source><translation>cette fenêtre</translation></message>
    <message id="lkeyHistoryByKestractl"><source>lkeyHistoryByKestractl</source><translation>kestractl</translation></message>
    <message id="lkeyHistoryByKeyboard"><source>lkeyHistoryByKeyboard</source><translation>le clavier</translation></message>
    <message id="lkeyHistoryByClient"><source>lkeyHistoryByClient</source><translation>un autre programme</translation></message>
    <message id="lkeyHistoryIsDone"><source>lkeyHistoryIsDone</source><translation>en vigueur</translation></message>
    <message id="lkeyHistoryIsUndone"><source>lkeyHistoryIsUndone</source><translation>annulée</translation></message>
    <message id="lkeyHistoryIsOutOfReach"><source>lkeyHistoryIsOutOfReach</source><translation>ne peut être annulée</translation></message>
    <message id="lkeyHistoryRestore"><source>lkeyHistoryRestore</source><translation>Restaurer</translation></message>
    <message id="lkeyHistoryClear"><source>lkeyHistoryClear</source><translation>Oublier…</translation></message>
    <message id="lkeyHistoryEmpty"><source>lkeyHistoryEmpty</source><translation>L’historique ne contient encore aucune modification.</translation></message>
    <message id="lkeyHistoryNothingSelected"><source>lkeyHistoryNothingSelected</source><translation>Sélectionnez une modification pour voir son effet.</translation></message>
    <message id="lkeyHistoryBefore"><source>lkeyHistoryBefore</source><translation>Avant</translation></message>
    <message id="lkeyHistoryAfter"><source>lkeyHistoryAfter</source><translation>Après</translation></message>
    <message id="lkeyHistoryParts"><source>lkeyHistoryParts</source><translation>Effet de la modification</translation></message>
    <message id="lkeyHistoryMoreParts"><source>lkeyHistoryMoreParts</source><translation>La modification comporte %@ éléments ; voici les %@ premiers.</translation></message>
    <message id="lkeyHistoryPartsUnknown"><source>lkeyHistoryPartsUnknown</source><translation>L’état antérieur n’est pas connu : %@.</translation></message>
    <message id="lkeyHistoryAlone"><source>lkeyHistoryAlone</source><translation>« Restaurer » annule seulement cette modification.</translation></message>
    <message id="lkeyHistoryNotAlone"><source>lkeyHistoryNotAlone</source><translation>« Restaurer » annule aussi %@ modifications ultérieures : %@</translation></message>
    <message id="lkeyHistoryNotAloneOne"><source>lkeyHistoryNotAloneOne</source><translation>« Restaurer » annule aussi une modification ultérieure : %@</translation></message>
    <message id="lkeyHistoryCannotRestore"><source>lkeyHistoryCannotRestore</source><translation>Cette modification ne peut pas être annulée : %@.</translation></message>
    <message id="lkeyHistoryClearTitle"><source>lkeyHistoryClearTitle</source><translation>Voulez-vous supprimer l’historique ?</translation></message>
    <message id="lkeyHistoryClearDesc"><source>lkeyHistoryClearDesc</source><translation>Toutes les modifications de cette liste, les sauvegardes quotidiennes et toutes les versions précédentes des réglages sont supprimées. Les profils et macros supprimés sont alors définitivement perdus. Vos réglages restent.</translation></message>
    <message id="lkeyHistoryClearNow"><source>lkeyHistoryClearNow</source><translation>Supprimer</translation></message>
    <message id="lkeyHistoryNotRestored"><source>lkeyHistoryNotRestored</source><translation>Non restauré : %@. Raison : %@.</translation></message>
    <message id="lkeyHistoryCleared"><source>lkeyHistoryCleared</source><translation>L’historique, les sauvegardes quotidiennes et les versions précédentes des réglages sont supprimés.</translation></message>
    <message id="lkeyHistoryNotCleared"><source>lkeyHistoryNotCleared</source><translation>L’historique n’a pas été supprimé : %@.</translation></message>
</context>
</TS>
