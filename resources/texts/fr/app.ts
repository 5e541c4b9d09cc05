<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>OK</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>Annuler</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>Profil :</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>Quitter</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Configurateur Quill Kestra</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>Occupé</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>Aide</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/fr</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>Précédent</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>Suivant</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>Sommaire</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>Rechercher dans l’aide</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>Pages trouvées</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>Aucun résultat</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Page Quill</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>Actualités</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>Touches</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>Profils</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>Macros</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>Éclairage</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>Entretien</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>Ce clavier ne nécessite aucun entretien.</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>Le service du clavier ne répond pas</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>Le configurateur n’a pas pu joindre le service QuillKestraDaemon. Le service redémarre. Vos réglages sont conservés. Le configurateur reprendra automatiquement dès que le service répondra.</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>La session est terminée</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>Le configurateur a perdu la connexion à la session de bureau et, avec elle, le service du clavier. Vos réglages sont en sécurité. Fermez le configurateur et redémarrez-le.</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>La page web ne s’est pas ouverte</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>Aucun navigateur n’a pu ouvrir %@.</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ est une adresse fictive. Le distributeur de ce programme n’a pas encore indiqué d’adresse.</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>Aucun clavier trouvé</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>Branchez votre clavier Quill Kestra. Le configurateur reprendra automatiquement dès que le clavier sera connecté.</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>Connexion au clavier…</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>En attente du service du clavier. Vous pourrez utiliser la fenêtre dès que le service répondra.</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>Démarrer dans une session restaurée et attendre le service du clavier.</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>Démarrer à l’ouverture de session et attendre le service du clavier.</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>Ouvrir le clavier immédiatement, sans le message de connexion.</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>Un fichier de macro ou de profil. Le configurateur attend le service du clavier et n’importe pas le fichier.</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>Choisir une application</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>Applications (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>Rechercher une application</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>Applications</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>Applications : %@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>Aucune application trouvée</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>En cours d’exécution</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>Fenêtre ouverte</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>Autre…</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>Choisir</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>Remplacer « %@ » ?</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>Un fichier portant ce nom existe déjà. Le remplacer écrasera son contenu.</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>Remplacer</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>Maintenez la touche Échap enfoncée pendant une seconde pour utiliser de nouveau ce clavier dans la fenêtre.</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>Vous pouvez de nouveau utiliser ce clavier dans la fenêtre.</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>Appuyez sur la touche ici : le clavier virtuel est utilisé.</translation></message>
</context>
</TS>
