// SPDX-License-Identifier: MIT
#include "tests/app/hubfixture.h"

#include "base/resources.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "tests/support/texts.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

HubResources::HubResources()
{
    // The build's own document may contain the last selected key of a program that ran there.
    if (!QFile::copy(QStringLiteral(KESTRA_FACTORY_DOCUMENT), kestraPlist()))
        qFatal("there is no %s", KESTRA_FACTORY_DOCUMENT);
    qputenv("QUILL_KESTRA_RESOURCES", QFile::encodeName(mFolder.path()));
    installTexts(textsFolder(), {u"en"_s});
    setReplyPollInterval(std::chrono::microseconds(100));
}

HubResources::~HubResources()
{
    setReplyPollInterval(replyPollInterval);
}

QString HubResources::kestraPlist() const
{
    return mFolder.filePath(u"Kestra.plist"_s);
}

QVariantMap sampleDocument()
{
    const auto profile = [](const QString &name, int brightness) {
        const QVariantMap disabled{{u"command"_s, 20}, {u"param1"_s, 0}, {u"param2"_s, 0}};
        const QVariantMap byDefault{{u"command"_s, 45}, {u"param1"_s, 5}, {u"param2"_s, 0}};
        const QVariantMap color{{u"Red"_s, 0.25}, {u"Green"_s, 0.5}, {u"Blue"_s, 1.0}};
        const QVariantMap noApplication{
            {u"application"_s, u""_s}, {u"executable"_s, u""_s}, {u"identifier"_s, u""_s}, {u"signature"_s, u""_s}};
        return QVariantMap{
            {u"ProfileName"_s, name},      {u"Keys"_s, QVariantMap{{u"4"_s, disabled}, {u"5"_s, byDefault}}},
            {u"AppInfo"_s, noApplication}, {u"AutoSwitchOn"_s, 0},
            {u"BacklightLED"_s, 1},        {u"LEDKBColors"_s, QVariantList{color}},
            {u"LEDKBEffects"_s, 4},        {u"BrightnessKBNormal"_s, brightness},
            {u"GameLightingOn"_s, true}};
    };
    const auto macro = [](const QString &name) {
        return QVariantMap{{u"MacroName"_s, name}, {u"delay"_s, 20}, {u"sequence"_s, QVariantMap()}};
    };
    return {{u"Profiles"_s, QVariantList{profile(u"Default Profile"_s, 4), profile(u"Raid"_s, 2)}},
            {u"Macros"_s, QVariantList{macro(u"Heal"_s), macro(u"Mount"_s), macro(u"Dance"_s)}},
            {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 1}, {u"ProfileOSDOn"_s, 1}}}};
}

QVariantMap withActiveProfile(QVariantMap document, int index)
{
    QVariantMap device = document.value(SettingsKeys::deviceSettings).toMap();
    device.insert(SettingsKeys::activeProfile, index);
    document.insert(SettingsKeys::deviceSettings, device);
    return document;
}

Hub::Hub(std::chrono::milliseconds firmwareQueryInterval, StatusTimes statusTimes)
{
    LatestReplySlot::shared().clear();
    MainControllerServices services;
    services.endProcesses = [this](const QString &name) {
        endedProcesses.append(name);
        if (atEndOfProcesses)
            atEndOfProcesses();
    };
    services.openPage = [this](const QUrl &page) {
        openedPages.append(page);
        return outcomeOfPages;
    };
    services.firmwareQueryInterval = firmwareQueryInterval;
    services.statusTimes = statusTimes;
    controller = std::make_unique<KeyboardMainController>(std::move(services));
    window = std::make_unique<MainWindow>();
    window->assemble(controller.get());
    controller->setMMainWindow(window.get());
    window->show();
}

void Hub::open(ScriptedDaemon &daemon)
{
    controller->initializeDevice();
    daemon.forgetRequests();
}

bool Hub::openInFront() const
{
    controller->initializeDevice();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window.get());
}
