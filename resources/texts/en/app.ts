<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>OK</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>Cancel</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>Profile:</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>Quit</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Quill Kestra Configurator</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>Busy</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>Help</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/en</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>Back</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>Forward</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>Contents</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>Search help</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>Pages found</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>Nothing found</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Quill page</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>News feed</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>Keys</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>Profiles</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>Macros</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>Lighting</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>Maintenance</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>This keyboard needs no maintenance.</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>The keyboard service does not respond</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>The configurator could not reach the QuillKestraDaemon service. The service is restarting. Your settings are safe. The configurator continues automatically as soon as the service responds.</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>The session has ended</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>The configurator has lost its connection to the desktop session and therefore to the keyboard service. Your settings are safe. Close the configurator and start it again.</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>The web page was not opened</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>No browser could open %@.</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ is a placeholder. The distributor of this program has not entered an address yet.</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>No keyboard found</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>Connect your Quill Kestra keyboard. The configurator continues automatically as soon as the keyboard is connected.</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>Connecting to your keyboard…</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>Waiting for the keyboard service. You can use the window as soon as the service responds.</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>Start in a restored session and wait for the keyboard service.</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>Start at login and wait for the keyboard service.</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>Open the keyboard at once, without the message about the connection.</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>A macro or profile file. The configurator waits for the keyboard service and does not import the file.</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>Choose an application</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>Applications (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>Search applications</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>Applications</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>Applications: %@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>No application found</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>Running</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>Open window</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>Other…</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>Choose</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>Replace “%@”?</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>A file with this name already exists. Replacing it overwrites its contents.</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>Replace</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>Hold Escape for one second to use this keyboard in the window again.</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>You can use this keyboard in the window again.</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>Type the key here: the virtual keyboard is in use.</translation></message>
</context>
</TS>
