<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <!-- profiles.ts has the titles that macros and profiles share (lkeyRename to lkeyDelete). -->
    <message id="lkeyMacroList"><source>lkeyMacroList</source><translation>Macros</translation></message>
    <message id="lkeyMacroListLabel"><source>lkeyMacroListLabel</source><translation>Macros :</translation></message>
    <message id="lkeyAddMacro"><source>lkeyAddMacro</source><translation>Ajouter</translation></message>
    <message id="lkeyDeleteMacro"><source>lkeyDeleteMacro</source><translation>Supprimer</translation></message>
    <message id="lkeyMacroCommands"><source>lkeyMacroCommands</source><translation>Commandes de macro</translation></message>
    <message id="lkeyMacroAssignment"><source>lkeyMacroAssignment</source><translation>Événements de la macro sélectionnée :</translation></message>
    <message id="lkeyMacroEvents"><source>lkeyMacroEvents</source><translation>Événements</translation></message>
    <message id="lkeyMacroEventCommands"><source>lkeyMacroEventCommands</source><translation>Commandes d’événement</translation></message>
    <message id="lkeyNoMacroSelected"><source>lkeyNoMacroSelected</source><translation>Sélectionnez une macro pour afficher ses événements.</translation></message>
    <message id="lkeyAppendEvents"><source>lkeyAppendEvents</source><translation>Compléter</translation></message>
    <message id="lkeyDeleteSelectedEvent"><source>lkeyDeleteSelectedEvent</source><translation>Supprimer</translation></message>
    <message id="lkeyAddMacroTip"><source>lkeyAddMacroTip</source><translation>Ajouter une macro</translation></message>
    <message id="lkeyDeleteMacroTip"><source>lkeyDeleteMacroTip</source><translation>Supprimer la macro sélectionnée</translation></message>
    <message id="lkeyAppendEventsTip"><source>lkeyAppendEventsTip</source><translation>Enregistrer d’autres événements à la fin de la macro</translation></message>
    <message id="lkeyDeleteSelectedEventTip"><source>lkeyDeleteSelectedEventTip</source><translation>Supprimer l’événement sélectionné</translation></message>
    <message id="lkeyNoMacros"><source>lkeyNoMacros</source><translation>Aucune macro pour le moment.</translation></message>
    <message id="lkeyNoMacrosHint"><source>lkeyNoMacrosHint</source><translation>Ajoutez une macro, puis enregistrez ses événements.</translation></message>
    <message id="lkeyNoEvents"><source>lkeyNoEvents</source><translation>Cette macro ne contient encore aucun événement. Cliquez sur « Enregistrer », puis appuyez sur des touches du clavier.</translation></message>
    <message id="lkeyRecordingHint"><source>lkeyRecordingHint</source><translation>Enregistrement en cours. Appuyez sur les touches de la macro, puis cliquez sur « Arrêter ».</translation></message>
    <message id="lkeyTypeMacroHere"><source>lkeyTypeMacroHere</source><translation>Appuyez ici sur les touches de la macro : le clavier virtuel est utilisé.</translation></message>
    <message id="lkeyRecordingOn"><source>lkeyRecordingOn</source><translation>Sur « %@ », appuyez sur les touches de la macro.</translation></message>
    <message id="lkeyImportMacroTitle"><source>lkeyImportMacroTitle</source><translation>Importer une macro</translation></message>
    <message id="lkeyExportMacroTitle"><source>lkeyExportMacroTitle</source><translation>Exporter la macro</translation></message>
    <message id="lkeyMacroFileFilter"><source>lkeyMacroFileFilter</source><translation>Macros (%@)</translation></message>
    <message id="lkeyRecord"><source>lkeyRecord</source><translation>Enregistrer</translation></message>
    <message id="lkeyStop"><source>lkeyStop</source><translation>Arrêter</translation></message>
    <message id="lkeyEdit"><source>lkeyEdit</source><translation>Modifier…</translation></message>
    <message id="lkeyEditTooFarTip"><source>lkeyEditTooFarTip</source><translation>Seuls les événements des 256 premières lignes sont modifiables.</translation></message>
    <message id="lkeyEditMacroTooFarTip"><source>lkeyEditMacroTooFarTip</source><translation>Seuls les événements des 256 premières macros sont modifiables.</translation></message>
    <message id="lkeyDeleteEvent"><source>lkeyDeleteEvent</source><translation>Supprimer l’événement</translation></message>
    <message id="lkeyDeleteAllEvents"><source>lkeyDeleteAllEvents</source><translation>Supprimer tous les événements</translation></message>
    <message id="lkeyCopyDelay"><source>lkeyCopyDelay</source><translation>Appliquer le délai à tous</translation></message>
    <message id="lkeyNoDelay"><source>lkeyNoDelay</source><translation>Aucun délai</translation></message>
    <message id="lkeyEditDelayTitle"><source>lkeyEditDelayTitle</source><translation>Modifier le délai</translation></message>
    <message id="lkeyEditEventTitle"><source>lkeyEditEventTitle</source><translation>Modifier l’événement</translation></message>
    <message id="lkeyEnterMacroDelay"><source>lkeyEnterMacroDelay</source><translation>Délai en millisecondes :</translation></message>
    <message id="lkeyPresentMacroDelay"><source>lkeyPresentMacroDelay</source><translation>Délai actuel : %@ ms. Saisissez un nombre entier.</translation></message>
    <message id="lkeyEnterMacroEvent"><source>lkeyEnterMacroEvent</source><translation>Appuyez sur la touche de cet événement :</translation></message>
    <message id="lkeyEnterMacroEventOn"><source>lkeyEnterMacroEventOn</source><translation>Sur « %@ », appuyez sur la touche de cet événement :</translation></message>
    <message id="lkeyDeleteMacroAlertTitle"><source>lkeyDeleteMacroAlertTitle</source><translation>Supprimer la macro « %@ » ?</translation></message>
    <message id="lkeyDeleteMacroAlertDesc"><source>lkeyDeleteMacroAlertDesc</source><translation>Les touches qui exécutent cette macro retrouvent leur fonction par défaut. Vous pourrez annuler cette action.</translation></message>
    <message id="lkeyDuplicateMacro"><source>lkeyDuplicateMacro</source><translation>Dupliquer</translation></message>
    <message id="lkeyMacroSearch"><source>lkeyMacroSearch</source><translation>Rechercher une macro</translation></message>
    <message id="lkeyMacroSearchResult"><source>lkeyMacroSearchResult</source><translation>Macros trouvées : %@</translation></message>
    <message id="lkeyMacroSearchNothing"><source>lkeyMacroSearchNothing</source><translation>Aucune macro trouvée</translation></message>
    <message id="lkeyMacroUse"><source>lkeyMacroUse</source><translation>%@ dans %@</translation></message>
    <message id="lkeyMacroUseSeparator"><source>lkeyMacroUseSeparator</source><translation>, </translation></message>
    <message id="lkeyMacroUses"><source>lkeyMacroUses</source><translation>Exécutée par : %@</translation></message>
    <message id="lkeyMacroUsesLabel"><source>lkeyMacroUsesLabel</source><translation>Exécutée par :</translation></message>
    <message id="lkeyMacroUnused"><source>lkeyMacroUnused</source><translation>Aucune touche n’exécute cette macro.</translation></message>
    <message id="lkeyMacroUsesMore"><source>lkeyMacroUsesMore</source><translation>%@ de plus…</translation></message>
    <message id="lkeyMacroUseTip"><source>lkeyMacroUseTip</source><translation>Afficher cette touche dans l’onglet Touches</translation></message>
    <message id="lkeyMacroUseSwitchTip"><source>lkeyMacroUseSwitchTip</source><translation>Activer le profil « %@ » et afficher cette touche dans l’onglet Touches</translation></message>
    <message id="lkeyMacroUsesSwitch"><source>lkeyMacroUsesSwitch</source><translation>Une touche d’un autre profil active ce profil.</translation></message>
    <message id="lkeyButtonArea"><source>lkeyButtonArea</source><translation>Cliquez ici pour enregistrer les boutons de la souris.</translation></message>
    <message id="lkeyTryMacro"><source>lkeyTryMacro</source><translation>Essayer…</translation></message>
    <message id="lkeyTryMacroTip"><source>lkeyTryMacroTip</source><translation>Essayer la macro sélectionnée</translation></message>
    <message id="lkeyTryTitle"><source>lkeyTryTitle</source><translation>Essayer la macro</translation></message>
    <message id="lkeyTryExplanation"><source>lkeyTryExplanation</source><translation>Voyez ce que l’ordinateur recevrait de « %@ ». « Démarrer » ne lui envoie rien.</translation></message>
    <message id="lkeyTryRepeat"><source>lkeyTryRepeat</source><translation>Lecture</translation></message>
    <message id="lkeyTryStart"><source>lkeyTryStart</source><translation>Démarrer</translation></message>
    <message id="lkeyTryOutput"><source>lkeyTryOutput</source><translation>Ce que l’ordinateur recevrait</translation></message>
    <message id="lkeyTryReady"><source>lkeyTryReady</source><translation>Cliquez sur « Démarrer » pour voir la macro se dérouler.</translation></message>
    <message id="lkeyTryPlaying"><source>lkeyTryPlaying</source><translation>Lecture en cours. Appuyez sur Échap pour l’arrêter.</translation></message>
    <message id="lkeyTryFinished"><source>lkeyTryFinished</source><translation>La macro s’est déroulée jusqu’à la fin.</translation></message>
    <message id="lkeyTryStopped"><source>lkeyTryStopped</source><translation>Arrêtée.</translation></message>
    <message id="lkeyTryChanged"><source>lkeyTryChanged</source><translation>Arrêtée : la macro a été modifiée.</translation></message>
    <message id="lkeyTryLimit"><source>lkeyTryLimit</source><translation>Arrêtée : un essai dure au plus 10 minutes et compte au plus 100 000 événements.</translation></message>
    <message id="lkeyTryEmpty"><source>lkeyTryEmpty</source><translation>Cette macro n’émet rien.</translation></message>
    <message id="lkeyTryTooMany"><source>lkeyTryTooMany</source><translation>Trop de programmes essaient des macros. Réessayez plus tard.</translation></message>
    <message id="lkeyTryUnavailable"><source>lkeyTryUnavailable</source><translation>Le service du clavier ne peut pas lire cette macro actuellement.</translation></message>
    <message id="lkeyTryField"><source>lkeyTryField</source><translation>Appuyez ici sur la touche de la macro :</translation></message>
    <message id="lkeyTryFieldTip"><source>lkeyTryFieldTip</source><translation>La touche de la macro écrit réellement ici. Si vous quittez ce champ, la boîte de dialogue se ferme.</translation></message>
</context>
</TS>
