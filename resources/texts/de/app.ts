<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>OK</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>Abbrechen</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>Profil:</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>Beenden</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Quill-Kestra-Konfigurator</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>Beschäftigt</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>Hilfe</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/de</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>Zurück</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>Vor</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>Inhalt</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>Hilfe durchsuchen</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>Gefundene Seiten</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>Nichts gefunden</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Quill-Seite</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>Neuigkeiten</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>Tasten</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>Profile</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>Makros</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>Beleuchtung</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>Wartung</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>Diese Tastatur benötigt keine Wartung.</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>Der Tastaturdienst antwortet nicht</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>Der Konfigurator konnte den Dienst QuillKestraDaemon nicht erreichen. Der Dienst wird neu gestartet. Ihre Einstellungen sind sicher. Der Konfigurator fährt automatisch fort, sobald der Dienst antwortet.</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>Die Sitzung ist beendet</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>Der Konfigurator hat die Verbindung zur Desktop-Sitzung verloren und damit auch zum Tastaturdienst. Ihre Einstellungen sind sicher. Schließen Sie den Konfigurator und starten Sie ihn neu.</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>Die Webseite wurde nicht geöffnet</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>Kein Browser konnte %@ öffnen.</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ ist ein Platzhalter. Der Anbieter dieses Programms hat noch keine Adresse eingetragen.</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>Keine Tastatur gefunden</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>Schließen Sie Ihre Quill-Kestra-Tastatur an. Der Konfigurator fährt automatisch fort, sobald die Tastatur angeschlossen ist.</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>Verbindung zur Tastatur wird hergestellt …</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>Der Konfigurator wartet auf den Tastaturdienst. Sobald der Dienst antwortet, können Sie das Fenster verwenden.</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>In einer wiederhergestellten Sitzung starten und auf den Tastaturdienst warten.</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>Bei der Anmeldung starten und auf den Tastaturdienst warten.</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>Die Tastatur sofort öffnen, ohne den Hinweis auf die Verbindung.</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>Eine Makro- oder Profildatei. Der Konfigurator wartet auf den Tastaturdienst und importiert die Datei nicht.</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>Anwendung wählen</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>Anwendungen (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>Anwendungen suchen</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>Anwendungen</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>Anwendungen: %@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>Keine Anwendung gefunden</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>Läuft</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>Offenes Fenster</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>Andere …</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>Wählen</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>„%@“ ersetzen?</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>Eine Datei mit diesem Namen existiert bereits. Beim Ersetzen wird ihr Inhalt überschrieben.</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>Ersetzen</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>Halten Sie Escape eine Sekunde lang gedrückt, um diese Tastatur wieder im Fenster zu verwenden.</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>Sie können diese Tastatur wieder im Fenster verwenden.</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>Drücken Sie die Taste hier: Die virtuelle Tastatur wird verwendet.</translation></message>
</context>
</TS>
