// SPDX-License-Identifier: MIT
// The hub from start to end: opening the device, its three outcomes, handing out the document, versions.
#include "app/connectionnotice.h"
#include "app/keyboard_configuratorappdelegate.h"
#include "app/keyboardmaintenancecontroller.h"
#include "base/propertylist.h"
#include "base/resources.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/latestreplyslot.h"
#include "keys/keyboardkeyscontroller.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "platform/mnemonics.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "tests/app/hubfixture.h"
#include "tests/support/languages.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPaintEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QSet>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

/// Records the painted parts of a window.
class PaintProbe : public QObject
{
public:
    QRegion painted;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent *>(event)->region();
        return false;
    }
};

} // namespace

class KeyboardMainControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startsWithEmptyDictionariesAndDisabledControls();
    void opensAFoundKeyboard();
    void requestsToOpenTheDevice();
    void readsTheOpenStatusAsAFoundFlag_data();
    void readsTheOpenStatusAsAFoundFlag();
    void showsTheFactoryDocumentWithoutKeyboard();
    void reportsAndEndsASilentDaemon();
    void reportsAnAbsentDaemon_data();
    void reportsAnAbsentDaemon();
    void registersItsObserversOnce_data();
    void registersItsObserversOnce();
    void enablesTheControlsWhenReadingFails();
    void performsTheStartInOrder();
    void recoversWhenTheKeyboardIsAttachedLater();
    void closesTheRestoringSheetBeforeItSendsARequest();
    void paintsThePlaceOfTheRestoringSheetBeforeItWaits();
    void processesNoEventWhileItOpens_data();
    void processesNoEventWhileItOpens();
    void keepsItsPace();
    void handsOutThePiecesOfTheDocument();
    void readsAnActiveProfileOutOfRangeAsEmpty();
    void keepsTheDeviceSettingsWithTheFactoryDocument();
    void enablesAndDisablesEveryTab();
    void showsThatAProfileOperationIsPending();
    void redrawsMacrosOnlyThroughTheirTable();
    void selectsTabsByIndex();
    void stopsARecordingWhenItsTabIsLeft();
    void queriesTheFirmwareUntilItIsKnown();
    void showsTheVersions();
    void ignoresVersionsOfAFailedQuery();
    void queriesNoFirmwareWithoutKeyboard();
    void showsNoSpinnerForAnImmediateAnswer_data();
    void showsNoSpinnerForAnImmediateAnswer();
    void showsNoSpinnerOnceTheVersionIsKnown();
    void ignoresRepliesToOtherCommands();
    void registersTheHelpBook();
    void savesTheLastSelectedKey();

private:
    void controlsAre(const Hub &hub, bool enabled);

    HubResources mResources;
};

namespace {

/// Calls a function whenever the hub requests the help book's title, as it does to register the book.
class HelpBookTitleHook : public QTranslator
{
public:
    explicit HelpBookTitleHook(std::function<void()> function) : mFunction(std::move(function))
    {
        QCoreApplication::installTranslator(this);
    }

    [[nodiscard]] bool isEmpty() const override { return false; }
    QString translate(const char *, const char *key, const char *, int) const override
    {
        if (QLatin1StringView(key) == "lkeyHelpBookTitle"_L1)
            mFunction();
        return {}; // left to the other translators
    }

private:
    std::function<void()> mFunction;
};

/// Calls a function when a widget is enabled or disabled.
class EnablingHook : public QObject
{
public:
    EnablingHook(QWidget *widget, std::function<void()> function) : mFunction(std::move(function))
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            mFunction();
        return false;
    }

private:
    std::function<void()> mFunction;
};

/// The numbers of the program's current threads.
QSet<QString> threads()
{
    const QStringList numbers = QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return {numbers.begin(), numbers.end()};
}

} // namespace

void KeyboardMainControllerTest::init()
{
    LatestReplySlot::shared().clear();
}

void KeyboardMainControllerTest::controlsAre(const Hub &hub, bool enabled)
{
    QCOMPARE(hub.find<QWidget>("mAssignFunction")->isEnabled(), enabled);
    QCOMPARE(hub.find<QWidget>("mA")->isEnabled(), enabled);
    QCOMPARE(hub.find<QWidget>("mM1")->isEnabled(), enabled);
    QCOMPARE(hub.find<QWidget>("mProfilesTableView")->isEnabled(), enabled);
    QCOMPARE(hub.find<QWidget>("mMacroTableView")->isEnabled(), enabled);
    QCOMPARE(hub.find<QWidget>("mBrightnessValue")->isEnabled(), enabled);
    QCOMPARE(hub.controller->maintenanceController()->view()->isEnabled(), enabled);
}

void KeyboardMainControllerTest::startsWithEmptyDictionariesAndDisabledControls()
{
    const Hub hub;
    QVERIFY(hub.controller->currentProfileDict().isEmpty());
    QVERIFY(hub.controller->deviceSettingsDict().isEmpty());
    QVERIFY(hub.controller->profilesArray().isEmpty());
    QVERIFY(hub.controller->macrosArray().isEmpty());
    QCOMPARE(hub.controller->devicePID(), 0);
    QVERIFY(!hub.find<Spinner>("mBusyIndicator")->isAnimating());
    controlsAre(hub, false);
}

void KeyboardMainControllerTest::opensAFoundKeyboard()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    QSignalSpy initialized(hub.controller.get(), &KeyboardMainController::deviceInitialized);
    hub.controller->initializeDevice();
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
    QCOMPARE(initialized.count(), 1);
    QCOMPARE(hub.controller->devicePID(), 271);
    QVERIFY(hub.controller->isWiredDevice());
    QCOMPARE(hub.controller->profilesArray(), sampleDocument().value(u"Profiles"_s).toList());
    QCOMPARE(hub.controller->macrosArray(), sampleDocument().value(u"Macros"_s).toList());
    QCOMPARE(hub.controller->deviceSettingsDict(), sampleDocument().value(u"DeviceSettings"_s).toMap());
    QCOMPARE(hub.controller->currentProfileDict().value(u"ProfileName"_s).toString(), u"Raid"_s);
    QVERIFY(hub.controller->firmwareVersionString().isEmpty());
    controlsAre(hub, true);
    QVERIFY(!hub.find<Sheet>("mCommunicationAlertWindow")->isUp());
    QVERIFY(!hub.window->findChild<Sheet *>(u"alert"_s));
    QVERIFY(hub.endedProcesses.isEmpty());
}

void KeyboardMainControllerTest::requestsToOpenTheDevice()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    hub.controller->initializeDevice();
    const QVariantMap expected{{u"ProductName"_s, u"Kestra"_s},
                               {u"ProductID"_s, 271},
                               {u"ResponseMsgPortName"_s, u"KeyboardConfiguratorReplyPort"_s},
                               {u"IsDeviceWired"_s, 1},
                               {u"DefaultQlPlistPath"_s, mResources.kestraPlist()}};
    QCOMPARE(daemon.requests().front().data, ScriptedDaemon::encoded(expected));
}

void KeyboardMainControllerTest::readsTheOpenStatusAsAFoundFlag_data()
{
    QTest::addColumn<QVariantMap>("reply");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("true") << QVariantMap{{u"ReturnStatus"_s, true}} << true;
    QTest::newRow("1") << QVariantMap{{u"ReturnStatus"_s, 1}} << true;
    QTest::newRow("-3") << QVariantMap{{u"ReturnStatus"_s, -3}} << true;
    QTest::newRow("0") << QVariantMap{{u"ReturnStatus"_s, 0}} << false;
    QTest::newRow("false") << QVariantMap{{u"ReturnStatus"_s, false}} << false;
    QTest::newRow("missing") << QVariantMap() << false;
}

void KeyboardMainControllerTest::readsTheOpenStatusAsAFoundFlag()
{
    QFETCH(QVariantMap, reply);
    QFETCH(bool, isFound);
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, reply);
    const Hub hub;
    hub.controller->initializeDevice();
    controlsAre(hub, isFound);
    QCOMPARE(hub.find<Sheet>("mCommunicationAlertWindow")->isUp(), !isFound);
}

void KeyboardMainControllerTest::showsTheFactoryDocumentWithoutKeyboard()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 0}});
    const Hub hub;
    hub.controller->initializeDevice();
    QCOMPARE(daemon.commands(), std::vector<int>{0});
    const QVariantMap factory =
        PropertyList::readPropertyListFile(kestraPlistPath())->value(u"Default Settings"_s).toMap();
    QVERIFY(!factory.isEmpty());
    QCOMPARE(hub.controller->profilesArray(), factory.value(u"Profiles"_s).toList());
    QCOMPARE(hub.controller->currentProfileDict(), factory.value(u"Profiles"_s).toList().constFirst().toMap());
    QCOMPARE(hub.controller->firmwareVersionString(), u"-"_s);
    QCOMPARE(hub.controller->devicePID(), 271);
    QVERIFY(hub.controller->isWiredDevice());
    controlsAre(hub, false);
    QVERIFY(hub.find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QVERIFY(!hub.window->findChild<Sheet *>(u"alert"_s));
    QVERIFY(hub.endedProcesses.isEmpty());
}

void KeyboardMainControllerTest::reportsAndEndsASilentDaemon()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.setSilent(Command::openDevice);
    Hub hub;
    bool wasToldBefore = false;
    hub.atEndOfProcesses = [&] { wasToldBefore = hub.find<Sheet>("alert") != nullptr; };
    hub.controller->initializeDevice();
    QVERIFY(wasToldBefore);
    QCOMPARE(daemon.commands(), std::vector<int>{0});
    QVERIFY(!hub.controller->profilesArray().isEmpty());
    QVERIFY(hub.controller->firmwareVersionString().isEmpty());
    controlsAre(hub, false);
    QVERIFY(!hub.find<Sheet>("mCommunicationAlertWindow")->isUp());
    auto *alert = hub.find<Sheet>("alert");
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->windowTitle(), u"The keyboard service does not respond"_s);
    QVERIFY(alert->findChild<QLabel *>(u"alertDescription"_s)->text().contains(u"The service is restarting."_s));
    QVERIFY(!alert->findChild<QPushButton *>(u"alertAlternativeButton"_s));
    QCOMPARE(hub.endedProcesses, QStringList{u"QuillKestraDaemon"_s});
}

void KeyboardMainControllerTest::reportsAnAbsentDaemon_data()
{
    addLanguageRows();
}

void KeyboardMainControllerTest::reportsAnAbsentDaemon()
{
    QFETCH(QString, language);
    installTexts(textsFolder(), {language});
    const auto guard = qScopeGuard([] { installTexts(textsFolder(), {u"en"_s}); });
    const Hub hub;
    hub.controller->initializeDevice();
    auto *alert = hub.find<Sheet>("alert");
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->windowTitle(), localizedText("lkeyCommErrorTitle"));
    const QString description = alert->findChild<QLabel *>(u"alertDescription"_s)->text();
    // Nothing restarts a service that does not run: the user must start it.
    QVERIFY(description != localizedText("lkeyCommErrorDesc"));
    if (language == u"en")
        QVERIFY2(description.startsWith(u"The QuillKestraDaemon service is not running."_s), qPrintable(description));
    // The button that the header shows is one of those that the message names, whether or not it can start the service.
    auto *notice = hub.find<ConnectionNotice>("mConnectionNotice");
    disconnect(notice, &ConnectionNotice::serviceMissed, nullptr, nullptr); // this test answers
    QTRY_VERIFY(notice->isVisible());
    for (const bool canStart : {true, false}) {
        notice->show({.service = StatusState::Service::absent});
        notice->setCanStartService(canStart);
        const QString button = notice->findChild<QPushButton *>(u"mConnectionNoticeHelp"_s)->text();
        QVERIFY2(description.contains(Mnemonics::plainText(button)), qPrintable(description));
    }
    QCOMPARE(hub.endedProcesses, QStringList{u"QuillKestraDaemon"_s});
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QVERIFY(!alert->isVisible());
}

void KeyboardMainControllerTest::registersItsObserversOnce_data()
{
    QTest::addColumn<int>("found");
    QTest::newRow("keyboard found") << 1;
    QTest::newRow("no keyboard") << 0;
    QTest::newRow("no answer") << -1;
}

void KeyboardMainControllerTest::registersItsObserversOnce()
{
    QFETCH(int, found);
    ScriptedDaemon daemon(sampleDocument());
    if (found < 0)
        daemon.setSilent(Command::openDevice);
    else
        daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, found}});
    const Hub hub;
    hub.controller->initializeDevice();
    const DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    for (const QString &name :
         {u"Device Attached 271"_s, u"Device Removed 271"_s, u"Profile Updated 271"_s, u"DPI Updated 271"_s,
          u"Saved New OTFM 271"_s, u"Illumination Updated 271"_s, u"commandReplyNotification271"_s})
        QCOMPARE(center.observationCount(hub.controller.get(), name), 1);
}

void KeyboardMainControllerTest::enablesTheControlsWhenReadingFails()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.setSilent(Command::readSettings);
    const Hub hub;
    hub.controller->initializeDevice();
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
    QVERIFY(hub.controller->profilesArray().isEmpty());
    QVERIFY(hub.controller->macrosArray().isEmpty());
    controlsAre(hub, true);
    QVERIFY(!hub.find<Sheet>("mCommunicationAlertWindow")->isUp());
    QVERIFY(!hub.find<Sheet>("alert"));
    QVERIFY(hub.endedProcesses.isEmpty());
}

void KeyboardMainControllerTest::performsTheStartInOrder()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    const DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    QStringList steps;
    const auto note = [&](const QString &step) {
        steps += u"%1; profile %2, keys %3, %4 observers"_s
                     .arg(step, hub.find<QLabel>("mProfileNameLabel")->text(),
                          hub.find<QWidget>("mA")->isEnabled() ? u"on"_s : u"off"_s)
                     .arg(center.observationCount(hub.controller.get(), u"Illumination Updated 271"_s));
    };
    QSet<QString> threadsAtHelpBook;
    const EnablingHook maintenance(hub.controller->maintenanceController()->view(), [&] { note(u"enabled"_s); });
    const HelpBookTitleHook helpBook([&] {
        note(u"help book"_s);
        threadsAtHelpBook = threads();
    });
    hub.controller->initializeDevice();
    QCOMPARE(steps, (QStringList{u"enabled; profile Raid, keys on, 0 observers"_s,
                                 u"help book; profile Raid, keys on, 1 observers"_s}));
    // The firmware query begins last.
    QCOMPARE((threads() - threadsAtHelpBook).size(), 1);
}

void KeyboardMainControllerTest::recoversWhenTheKeyboardIsAttachedLater()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 0}});
    const Hub hub;
    hub.controller->initializeDevice();
    controlsAre(hub, false);
    daemon.postNotification(u"Device Attached 271"_s);
    QTRY_VERIFY(hub.find<QWidget>("mA")->isEnabled());
    controlsAre(hub, true);
    QVERIFY(!hub.find<Sheet>("mCommunicationAlertWindow")->isUp());
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
    QCOMPARE(hub.controller->profilesArray().size(), 2);
}

void KeyboardMainControllerTest::closesTheRestoringSheetBeforeItSendsARequest()
{
    ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    const auto *sheet = hub.find<Sheet>("mRestoringStateWindow");
    const auto *progress = hub.find<QProgressBar>("mRestoringStateProgress");
    hub.controller->showRestoringStateWindow();
    QVERIFY(sheet->isVisible());
    QCOMPARE(progress->maximum(), 0); // busy: the spinner runs
    std::atomic<bool> wasUp = true;
    daemon.setScript(Command::openDevice, [&](const auto &) {
        wasUp = sheet->isUp(); // the main thread is blocked meanwhile
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded({{u"ReturnStatus"_s, 1}})}};
    });
    hub.controller->initializeDevice();
    QVERIFY(!wasUp);
    QVERIFY(!sheet->isVisible());
    QCOMPARE(progress->maximum(), 1);
}

void KeyboardMainControllerTest::paintsThePlaceOfTheRestoringSheetBeforeItWaits()
{
    const Hub hub;
    QVERIFY(QTest::qWaitForWindowExposed(hub.window.get()));
    const auto *sheet = hub.find<Sheet>("mRestoringStateWindow");
    hub.controller->showRestoringStateWindow();
    QCoreApplication::processEvents();
    PaintProbe probe;
    hub.window->installEventFilter(&probe);
    hub.controller->initializeDevice(); // there is no daemon
    QVERIFY(probe.painted.contains(sheet->geometry()));
}

void KeyboardMainControllerTest::processesNoEventWhileItOpens_data()
{
    QTest::addColumn<QString>("daemonState");
    QTest::addColumn<bool>("isSheetShown");
    for (const char *state : {"answers", "has no keyboard", "is silent", "is absent"}) {
        QTest::addRow("%s", state) << QString::fromLatin1(state) << false;
        QTest::addRow("%s, sheet shown", state) << QString::fromLatin1(state) << true;
    }
}

void KeyboardMainControllerTest::processesNoEventWhileItOpens()
{
    QFETCH(QString, daemonState);
    QFETCH(bool, isSheetShown);
    ScriptedDaemon daemon(sampleDocument());
    if (daemonState == u"has no keyboard")
        daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 0}});
    if (daemonState == u"is silent")
        daemon.setSilent(Command::openDevice);
    if (daemonState == u"is absent")
        daemon.disappear();
    const Hub hub;
    QVERIFY(QTest::qWaitForWindowExposed(hub.window.get()));
    if (isSheetShown)
        hub.controller->showRestoringStateWindow();
    QCoreApplication::processEvents();

    int delivered = 0;
    QObject probe;
    QTimer::singleShot(0, &probe, [&delivered] { ++delivered; });
    QMetaObject::invokeMethod(
        &probe, [&delivered] { ++delivered; }, Qt::QueuedConnection);
    int deliveredAtLastStep = -1;
    connect(hub.controller.get(), &KeyboardMainController::deviceInitialized, &probe,
            [&] { deliveredAtLastStep = delivered; });
    hub.controller->initializeDevice();
    QCOMPARE(deliveredAtLastStep, 0);
    QCOMPARE(delivered, 0);
    QTRY_COMPARE(delivered, 2); // they were only delayed
}

void KeyboardMainControllerTest::keepsItsPace()
{
    QCOMPARE(MainControllerServices().firmwareQueryInterval, std::chrono::seconds(3));
    QCOMPARE(daemonPollInterval, std::chrono::seconds(1));
}

void KeyboardMainControllerTest::handsOutThePiecesOfTheDocument()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    hub.controller->initializeDevice();
    const QVariantList profiles = sampleDocument().value(u"Profiles"_s).toList();
    const QVariantMap factoryProfile = PropertyList::readPropertyListFile(kestraPlistPath())
                                           ->value(u"Default Settings"_s)
                                           .toMap()
                                           .value(u"Profiles"_s)
                                           .toList()
                                           .constFirst()
                                           .toMap();
    const auto *profilesTab = hub.controller->profilesController();
    QCOMPARE(profilesTab->defaultProfileDict(), factoryProfile);
    QCOMPARE(profilesTab->currentProfileDict(), profiles[1].toMap());
    QCOMPARE(profilesTab->deviceSettingsDict(), hub.controller->deviceSettingsDict());
    QCOMPARE(profilesTab->allProfilesArray(), profiles);
    QCOMPARE(profilesTab->profileDelegate(), hub.controller.get());
    QCOMPARE(profilesTab->profilesWindow(), hub.window.get());
    const auto *keysTab = hub.controller->keysController();
    QCOMPARE(keysTab->keysCurrentProfileDict(), profiles[1].toMap());
    QCOMPARE(keysTab->allProfilesArray(), profiles);
    QCOMPARE(keysTab->allMacrosArray(), hub.controller->macrosArray());
    QCOMPARE(keysTab->deviceSettingsDict(), hub.controller->deviceSettingsDict());
    QCOMPARE(keysTab->defaultDict(), factoryProfile);
    QCOMPARE(keysTab->keysDelegate(), hub.controller.get());
    QCOMPARE(keysTab->keysWindow(), hub.window.get());
    QCOMPARE(hub.find<QLabel>("mProfileNameLabel")->text(), u"Raid"_s);
    const auto *macrosTab = hub.controller->macrosController();
    QCOMPARE(macrosTab->macrosSettingsArray(), hub.controller->macrosArray());
    QCOMPARE(macrosTab->macroDelegate(), hub.controller.get());
    QCOMPARE(macrosTab->macrosWindow(), hub.window.get());
    const auto *lightingTab = hub.controller->lightingController();
    QCOMPARE(lightingTab->defaultDict(), factoryProfile);
    QCOMPARE(lightingTab->lightingSettingsDict(), profiles[1].toMap());
    QCOMPARE(lightingTab->deviceSettingsDict(), hub.controller->deviceSettingsDict());
    QCOMPARE(lightingTab->lightingDelegate(), hub.controller.get());
    QCOMPARE(lightingTab->lightingWindow(), hub.window.get());
}

void KeyboardMainControllerTest::readsAnActiveProfileOutOfRangeAsEmpty()
{
    const ScriptedDaemon daemon(withActiveProfile(sampleDocument(), 9));
    const Hub hub;
    hub.controller->initializeDevice();
    QVERIFY(hub.controller->currentProfileDict().isEmpty());
    QCOMPARE(hub.controller->profilesArray().size(), 2);
}

void KeyboardMainControllerTest::keepsTheDeviceSettingsWithTheFactoryDocument()
{
    const Hub hub;
    const QVariantMap device{{u"ActiveProfile"_s, 0}, {u"mark"_s, 1}};
    hub.controller->updateToLatestSettings({{u"DeviceSettings"_s, device}});
    hub.controller->loadDefaultDict();
    hub.controller->loadDictionariesWithDefaultDict();
    QCOMPARE(hub.controller->deviceSettingsDict(), device);
    QCOMPARE(hub.controller->profilesArray().size(), 1);
}

void KeyboardMainControllerTest::enablesAndDisablesEveryTab()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    hub.controller->setControlsState(false);
    controlsAre(hub, false);
    hub.controller->setControlsState(true);
    controlsAre(hub, true);
}

void KeyboardMainControllerTest::showsThatAProfileOperationIsPending()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    hub.controller->updateProfilesControlState(false);
    QVERIFY(hub.find<Spinner>("mBusyIndicator")->isAnimating());
    QVERIFY(!hub.find<QWidget>("mProfilesTableView")->isEnabled());
    QVERIFY(hub.find<QWidget>("mAssignFunction")->isEnabled());
    hub.controller->updateProfilesControlState(true);
    QVERIFY(!hub.find<Spinner>("mBusyIndicator")->isAnimating());
    QVERIFY(hub.find<QWidget>("mProfilesTableView")->isEnabled());
}

void KeyboardMainControllerTest::redrawsMacrosOnlyThroughTheirTable()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    QVariantMap document = sampleDocument();
    document[u"Macros"_s] = QVariantList{QVariantMap{{u"MacroName"_s, u"Only"_s}}};
    hub.controller->updateToLatestSettings(document);
    hub.controller->setProperties();
    hub.controller->updateUISettings();
    QCOMPARE(hub.find<TableView>("mMacroTableView")->numberOfRows(), 1);
    // Only a selection requests lines.
    QCOMPARE(daemon.commands(), std::vector<int>());
}

void KeyboardMainControllerTest::selectsTabsByIndex()
{
    const Hub hub;
    const auto *tabs = hub.find<QTabWidget>("mKeyboardTabView");
    QStringList titles;
    for (int index = 0; index < tabs->count(); ++index) {
        hub.controller->selectTabAtIndex(index);
        QCOMPARE(tabs->currentIndex(), index);
        titles.append(tabs->tabText(index).remove(u'&'));
    }
    QCOMPARE(titles, (QStringList{u"Keys"_s, u"Profiles"_s, u"Macros"_s, u"Lighting"_s, u"Maintenance"_s}));
}

void KeyboardMainControllerTest::queriesTheFirmwareUntilItIsKnown()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub(std::chrono::milliseconds(20));
    hub.open(daemon);
    QTRY_VERIFY(daemon.count(Command::queryFirmwareVersion) >= 3);
    QTRY_VERIFY(hub.find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    daemon.postNotification(u"commandReplyNotification271"_s,
                            {{u"MessageID"_s, 14}, {u"ReturnStatus"_s, 0}, {u"FirmwareVersion"_s, u"1.07"_s}});
    QTRY_COMPARE(hub.controller->firmwareVersionString(), u"1.07"_s);
    QVERIFY(!hub.find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    // One query may be under way. It is the last, although the timer continues.
    daemon.forgetRequests();
    QTest::qWait(200);
    QVERIFY(daemon.count(Command::queryFirmwareVersion) <= 1);
    QVERIFY(!hub.find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
}

void KeyboardMainControllerTest::showsTheVersions()
{
    const Hub hub;
    hub.controller->updateDriverVersions(QVariantMap{{u"ReturnStatus"_s, 0}, {u"FirmwareVersion"_s, u"1.07"_s}});
    QCOMPARE(hub.controller->firmwareVersionString(), u"1.07"_s);
    QCOMPARE(hub.find<QLabel>("mFirmwareVersion")->text(), u"1.07"_s);
    QCOMPARE(hub.find<QLabel>("mDriverVersion")->text(), QStringLiteral(KESTRA_VERSION));
}

void KeyboardMainControllerTest::ignoresVersionsOfAFailedQuery()
{
    const Hub hub;
    const QString shownBefore = hub.find<QLabel>("mFirmwareVersion")->text();
    hub.controller->updateDriverVersions(std::nullopt);
    QVERIFY(hub.controller->firmwareVersionString().isEmpty());
    hub.controller->updateDriverVersions(QVariantMap{{u"ReturnStatus"_s, 1}, {u"FirmwareVersion"_s, u"1.07"_s}});
    QCOMPARE(hub.controller->firmwareVersionString(), u"1.07"_s);
    QCOMPARE(hub.find<QLabel>("mFirmwareVersion")->text(), shownBefore);
}

void KeyboardMainControllerTest::queriesNoFirmwareWithoutKeyboard()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 0}});
    Hub hub;
    hub.open(daemon);
    hub.controller->setDriverVersions();
    QCOMPARE(daemon.commands(), std::vector<int>());
}

void KeyboardMainControllerTest::showsNoSpinnerForAnImmediateAnswer_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("with a keyboard") << u"1.07"_s;
    QTest::newRow("without") << QString();
}

void KeyboardMainControllerTest::showsNoSpinnerForAnImmediateAnswer()
{
    QFETCH(QString, version);
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    daemon.setScript(Command::queryFirmwareVersion, [&](const ScriptedDaemon::Request &) {
        // The call arrives while the request is on its way.
        QMetaObject::invokeMethod(
            hub.controller.get(),
            [&] {
                hub.controller->commandReplyReceived(
                    {u"commandReplyNotification271"_s, {{u"MessageID"_s, 14}, {u"FirmwareVersion"_s, version}}});
            },
            Qt::QueuedConnection);
        return std::vector<ScriptedDaemon::Reply>();
    });
    hub.controller->setDriverVersions();
    QCOMPARE(daemon.count(Command::queryFirmwareVersion), 1);
    QCoreApplication::processEvents();
    QCOMPARE(hub.controller->firmwareVersionString(), version);
    QVERIFY(!hub.find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    QVERIFY(!hub.find<QLabel>("mFirmwareVersion")->isHidden());
}

void KeyboardMainControllerTest::showsNoSpinnerOnceTheVersionIsKnown()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    hub.controller->setDriverVersions();
    QCOMPARE(daemon.count(Command::queryFirmwareVersion), 1);
    // The answer to an earlier request arrives before the main thread starts the query.
    hub.controller->commandReplyReceived(
        {u"commandReplyNotification271"_s, {{u"MessageID"_s, 14}, {u"FirmwareVersion"_s, u"1.07"_s}}});
    QCoreApplication::processEvents();
    QVERIFY(!hub.find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    QVERIFY(!hub.find<QLabel>("mFirmwareVersion")->isHidden());
}

void KeyboardMainControllerTest::registersTheHelpBook()
{
    const QByteArray resources = qgetenv("QUILL_KESTRA_RESOURCES");
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources"); // folder of the help book
    const auto viewer = [] {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto found = std::ranges::find(all, u"helpViewer"_s, &QWidget::objectName);
        return found == all.end() ? nullptr : *found;
    };
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    hub.controller->initializeDevice();
    qputenv("QUILL_KESTRA_RESOURCES", resources);
    hub.find<QPushButton>("mHelpButton")->click();
    QVERIFY(viewer() && viewer()->isVisible());
    QCOMPARE(viewer()->windowTitle(), u"Quill Kestra Expert MMO Gaming Keyboard"_s);
    viewer()->close();
    QTRY_VERIFY(!viewer());
}

void KeyboardMainControllerTest::ignoresRepliesToOtherCommands()
{
    const Hub hub;
    hub.controller->commandReplyReceived(
        {u"commandReplyNotification271"_s, {{u"MessageID"_s, 13}, {u"FirmwareVersion"_s, u"9"_s}}});
    QVERIFY(hub.controller->firmwareVersionString().isEmpty());
}

void KeyboardMainControllerTest::stopsARecordingWhenItsTabIsLeft()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    hub.controller->selectTabAtIndex(2);
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    hub.find<QPushButton>("mRecordMacroDetails")->click();
    QCOMPARE(daemon.count(Command::startMacroRecording), 1);
    hub.controller->selectTabAtIndex(0);
    QCOMPARE(daemon.count(Command::stopMacroRecording), 1);
    QCOMPARE(daemon.count(Command::saveRecordedEvents), 1);
}

void KeyboardMainControllerTest::savesTheLastSelectedKey()
{
    ScriptedDaemon daemon(sampleDocument());
    {
        Hub hub;
        hub.open(daemon);
        hub.find<QAbstractButton>("mQ")->click();
        hub.controller->saveLastSelectedKey();
    }
    const auto resource = PropertyList::readPropertyListFile(kestraPlistPath());
    QCOMPARE(resource->value(u"Device Info"_s).toMap().value(u"Last selected key"_s).toString(), u"20"_s);
    Hub again;
    again.open(daemon);
    QCOMPARE(again.controller->keysController()->selectedKey(), u"20"_s);
}

QTEST_MAIN(KeyboardMainControllerTest)
#include "keyboardmaincontrollertest.moc"
