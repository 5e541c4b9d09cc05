<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>确定</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>取消</translation></message>
    <message id="lkeyCurrentProfile"><source>lkeyCurrentProfile</source><translation>配置文件：</translation></message>
    <message id="lkeyQuit"><source>lkeyQuit</source><translation>退出</translation></message>
    <message id="lkeyProductName"><source>lkeyProductName</source><translation>Quill Kestra 配置工具</translation></message>
    <message id="lkeyProductFamily"><source>lkeyProductFamily</source><translation>Quill Kestra</translation></message>
    <message id="lkeyProductModel"><source>lkeyProductModel</source><translation>Expert MMO Gaming Keyboard</translation></message>
    <message id="lkeyBusy"><source>lkeyBusy</source><translation>正忙</translation></message>
    <message id="lkeyHelp"><source>lkeyHelp</source><translation>帮助</translation></message>
    <message id="lkeyHelpBookTitle"><source>lkeyHelpBookTitle</source><translation>Quill Kestra Expert MMO Gaming Keyboard</translation></message>
    <!-- The folder of the help book in this language; not shown. -->
    <message id="lkeyHelpBookFolder"><source>lkeyHelpBookFolder</source><translation>help/zh_Hans</translation></message>
    <message id="lkeyHelpBack"><source>lkeyHelpBack</source><translation>后退</translation></message>
    <message id="lkeyHelpForward"><source>lkeyHelpForward</source><translation>前进</translation></message>
    <message id="lkeyHelpContents"><source>lkeyHelpContents</source><translation>目录</translation></message>
    <message id="lkeyHelpSearch"><source>lkeyHelpSearch</source><translation>搜索帮助</translation></message>
    <message id="lkeyHelpResults"><source>lkeyHelpResults</source><translation>找到的页面</translation></message>
    <message id="lkeyHelpNothingFound"><source>lkeyHelpNothingFound</source><translation>未找到结果</translation></message>
    <message id="lkeySocialNetworkPage"><source>lkeySocialNetworkPage</source><translation>Quill 主页</translation></message>
    <message id="lkeyCommunityFeed"><source>lkeyCommunityFeed</source><translation>新闻</translation></message>
    <message id="lkeyCommunityPage"><source>lkeyCommunityPage</source><translation>Quill Club</translation></message>
    <message id="lkeyKeysTab"><source>lkeyKeysTab</source><translation>按键</translation></message>
    <message id="lkeyProfilesTab"><source>lkeyProfilesTab</source><translation>配置文件</translation></message>
    <message id="lkeyMacrosTab"><source>lkeyMacrosTab</source><translation>宏</translation></message>
    <message id="lkeyLightingTab"><source>lkeyLightingTab</source><translation>灯光</translation></message>
    <message id="lkeyMaintenanceTab"><source>lkeyMaintenanceTab</source><translation>维护</translation></message>
    <message id="lkeyMaintenanceText"><source>lkeyMaintenanceText</source><translation>此键盘无需维护。</translation></message>
    <message id="lkeyCommErrorTitle"><source>lkeyCommErrorTitle</source><translation>键盘服务没有响应</translation></message>
    <message id="lkeyCommErrorDesc"><source>lkeyCommErrorDesc</source><translation>无法连接 QuillKestraDaemon 服务，该服务正在重新启动。您的设置不会丢失。服务响应后，配置工具会自动继续。</translation></message>
    <message id="lkeySessionEndedTitle"><source>lkeySessionEndedTitle</source><translation>会话已结束</translation></message>
    <message id="lkeySessionEndedDesc"><source>lkeySessionEndedDesc</source><translation>配置工具与桌面会话的连接已断开，无法使用键盘服务。您的设置是安全的。请关闭配置工具，然后重新启动。</translation></message>
    <message id="lkeyPageNotOpenedTitle"><source>lkeyPageNotOpenedTitle</source><translation>未能打开网页</translation></message>
    <message id="lkeyPageWithoutBrowserDesc"><source>lkeyPageWithoutBrowserDesc</source><translation>没有浏览器能够打开 %@。</translation></message>
    <message id="lkeyPageIsPlaceholderDesc"><source>lkeyPageIsPlaceholderDesc</source><translation>%@ 只是占位地址。本程序的发行方尚未填写地址。</translation></message>
    <message id="lkeyDeviceNotFoundTitle"><source>lkeyDeviceNotFoundTitle</source><translation>未找到键盘</translation></message>
    <message id="lkeyDeviceNotFoundDesc"><source>lkeyDeviceNotFoundDesc</source><translation>请连接您的 Quill Kestra 键盘。键盘连接后，配置工具会自动继续。</translation></message>
    <message id="lkeyRestoringStateTitle"><source>lkeyRestoringStateTitle</source><translation>正在连接键盘…</translation></message>
    <message id="lkeyRestoringStateDesc"><source>lkeyRestoringStateDesc</source><translation>正在等待键盘服务。服务响应后，即可使用此窗口。</translation></message>
    <message id="lkeyOptionRestored"><source>lkeyOptionRestored</source><translation>在恢复的会话中启动，并等待键盘服务。</translation></message>
    <message id="lkeyOptionBackground"><source>lkeyOptionBackground</source><translation>登录时启动，并等待键盘服务。</translation></message>
    <message id="lkeyOptionNoLaunchNotice"><source>lkeyOptionNoLaunchNotice</source><translation>立即打开键盘，不显示连接提示。</translation></message>
    <message id="lkeyArgumentFile"><source>lkeyArgumentFile</source><translation>宏文件或配置文件。配置工具会等待键盘服务，但不会导入该文件。</translation></message>
    <message id="lkeyChooseApplication"><source>lkeyChooseApplication</source><translation>选择应用程序</translation></message>
    <message id="lkeyApplicationFiles"><source>lkeyApplicationFiles</source><translation>应用程序 (%@)</translation></message>
    <message id="lkeyApplicationSearch"><source>lkeyApplicationSearch</source><translation>搜索应用程序</translation></message>
    <message id="lkeyApplicationList"><source>lkeyApplicationList</source><translation>应用程序</translation></message>
    <message id="lkeyApplicationsFound"><source>lkeyApplicationsFound</source><translation>应用程序：%@</translation></message>
    <message id="lkeyApplicationsNone"><source>lkeyApplicationsNone</source><translation>未找到应用程序</translation></message>
    <message id="lkeyApplicationRunning"><source>lkeyApplicationRunning</source><translation>正在运行</translation></message>
    <message id="lkeyApplicationWindow"><source>lkeyApplicationWindow</source><translation>打开的窗口</translation></message>
    <message id="lkeyApplicationOther"><source>lkeyApplicationOther</source><translation>其他…</translation></message>
    <message id="lkeyChoose"><source>lkeyChoose</source><translation>选择</translation></message>
    <message id="lkeyReplaceFileTitle"><source>lkeyReplaceFileTitle</source><translation>替换“%@”？</translation></message>
    <message id="lkeyReplaceFileDesc"><source>lkeyReplaceFileDesc</source><translation>已存在同名文件。替换它会覆盖其中的内容。</translation></message>
    <message id="lkeyReplace"><source>lkeyReplace</source><translation>替换</translation></message>
    <message id="lkeyHoldEscape"><source>lkeyHoldEscape</source><translation>按住 Escape 键一秒，即可重新在窗口中使用此键盘。</translation></message>
    <message id="lkeyCaptureEnded"><source>lkeyCaptureEnded</source><translation>您可以重新在窗口中使用此键盘。</translation></message>
    <message id="lkeyTypeKeyHere"><source>lkeyTypeKeyHere</source><translation>请在此处按下按键：正在使用虚拟键盘。</translation></message>
</context>
</TS>
