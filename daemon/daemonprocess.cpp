// SPDX-License-Identifier: MIT
#include "daemon/daemonprocess.h"

#include "app/util/daemonprotocol.h"
#include "app/util/qlcoreutility.h"
#include "app/util/resources.h"
#include "app/util/text.h"
#include "daemon/busend.h"
#include "daemon/deadlinetimer.h"
#include "daemon/desktopnotification.h"
#include "daemon/devicechoice.h"
#include "daemon/devicedaemon.h"
#include "daemon/devicesadaptor.h"
#include "daemon/factorysettings.h"
#include "daemon/frontapplication/desktopsearch.h"
#include "daemon/frontapplication/frontapplicationadaptor.h"
#include "daemon/frontapplication/kwinfrontapplication.h"
#include "daemon/frontapplication/waylandfrontapplication.h"
#include "daemon/frontapplication/x11frontapplication.h"
#include "daemon/linux/inputnodes.h"
#include "daemon/linux/linuxdevices.h"
#include "daemon/linux/linuxkeyboard.h"
#include "daemon/logging.h"
#include "daemon/programlauncher.h"
#include "daemon/settingsdocument.h"
#include "daemon/settingsstore.h"
#include "daemon/virtualkeyboardadaptor.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "platform/terminationsignals.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

struct StartDocument
{
    QVariantMap document;
    bool isMinimal = false; // neither settings nor factory settings could be read
};

StartDocument startDocument(SettingsStore &store)
{
    if (const std::optional<QVariantMap> stored = store.load())
        return {.document = SettingsDocument::completed(*stored), .isMinimal = false};
    qCInfo(lcSettings, "no settings yet: factory settings");
    if (const std::optional<QVariantMap> factory = readFactorySettings(resourcePath(u"Kestra.plist"_s)))
        return {.document = *factory, .isMinimal = false};
    qCWarning(lcSettings, "file: no factory settings either: one profile that maps nothing");
    return {.document = SettingsDocument::minimal(), .isMinimal = true};
}

void sendReply(const QString &portName, qint32 command, const QVariantMap &reply)
{
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(reply);
    if (!data) {
        qCCritical(lcRequests, "daemon: the reply to request %d cannot be written", command);
        return;
    }
    if (const std::optional<RemoteMessagePort> port = RemoteMessagePort::open(portName))
        port->post(command, *data);
    else
        qCWarning(lcRequests, "client: no port \"%s\" for the reply to request %d", qUtf8Printable(portName), command);
}

/// Watches at most one port at a time.
class ClientWatch
{
public:
    ClientWatch(const QDBusConnection &connection, std::function<void(const QString &)> vanished)
        : mVanished(std::move(vanished))
    {
        mWatcher.setConnection(connection);
        mWatcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        QObject::connect(&mWatcher, &QDBusServiceWatcher::serviceUnregistered, &mWatcher,
                         [this] { mVanished(mPortName); });
    }

    void watch(const QString &portName)
    {
        if (portName == mPortName)
            return;
        mPortName = portName;
        mWatcher.setWatchedServices(portName.isEmpty() ? QStringList() : QStringList{messagePortBusName(portName)});
        // It may have gone before the watch began. Told later, when the caller has done what the watch is for.
        if (!portName.isEmpty() && !RemoteMessagePort::open(portName))
            QMetaObject::invokeMethod(
                &mWatcher, [this, portName] { mVanished(portName); }, Qt::QueuedConnection);
    }

private:
    QDBusServiceWatcher mWatcher;
    QString mPortName;
    std::function<void(const QString &)> mVanished;
};

/// The surest first: on Wayland, an X server that is there, too, knows only some of the windows.
std::vector<FrontApplicationWatch::SourceKind> frontApplicationSources(const QDBusConnection &bus)
{
    return {{"wayland"_L1, [] { return std::make_unique<WaylandFrontApplication>(); }},
            {"kwin"_L1, [bus] { return std::make_unique<KWinFrontApplication>(bus); }},
            {"x11"_L1, [] { return std::make_unique<X11FrontApplication>(); }}};
}

/// The panic chord has given the keyboards back.
DesktopNotification::Notice releaseNotice()
{
    // Not at the start: what hardly ever happens is to cost no memory until then.
    static const bool areTextsThere = [] {
        installTexts(resourcePath(u"texts"_s), QLocale::system().uiLanguages());
        return true;
    }();
    Q_UNUSED(areTextsThere);
    return {.summary = localizedText("lkeyKeyboardReleased"),
            .body = localizedText("lkeyKeyboardReleasedHow"),
            .isPassing = false};
}

/// Runs the event loop until a signal or the end of the bus.
DaemonExit runUntilEnd(DeviceDaemon &daemon, const QDBusConnection &bus, const TerminationSignals &signalListener)
{
    QObject::connect(&signalListener, &TerminationSignals::terminationRequested, &daemon, [](int number) {
        qCInfo(lcDaemon, "serving, signal %d: ending", number);
        QCoreApplication::quit();
    });
    const BusEnd busEnd(bus);
    QObject::connect(&busEnd, &BusEnd::reached, &daemon, &QCoreApplication::quit);
    qCInfo(lcDaemon, "starting, ready: serving \"%s\"", DaemonProtocol::requestPortName.data());
    if (bus.isConnected()) // else nobody would tell any more
        QCoreApplication::exec();
    const bool busIsGone = !bus.isConnected();
    daemon.shutDown();
    if (busIsGone)
        qCWarning(lcDaemon, "serving, the bus is gone: ended");
    return busIsGone ? DaemonExit::noBus : DaemonExit::ended;
}

DaemonExit serve(SettingsStore &store, QDBusConnection &bus)
{
    // Before anybody can see the daemon: a signal that comes early waits for the event loop.
    const TerminationSignals signalListener;
    VirtualKeyboard keyboard;
    LinuxKeyboard linuxKeyboard;
    InputNodes inputNodes;
    LinuxDevices devices(inputNodes, linuxKeyboard);
    DeviceChoice deviceChoice(SettingsStore::defaultFolder());
    DeviceDaemon *daemonPointer = nullptr;
    ClientWatch clientWatch(bus, [&](const QString &portName) { daemonPointer->clientVanished(portName); });
    DistributedNotificationCenter notifications(bus);
    DesktopNotification profileNotification(bus);
    DesktopNotification releaseNotification(bus);

    const StartDocument start = startDocument(store);
    DeviceDaemon daemon(
        store, keyboard,
        {.sendReply = sendReply,
         .postNotification = [&](const QString &name, const QVariantMap &info) { notifications.post(name, info); },
         .watchClient = [&](const QString &portName) { clientWatch.watch(portName); },
         .launchProgram = ProgramLauncher::launch,
         .now = DeadlineTimer::now,
         .showProfile =
             [&](const QString &name) { // the whole message, so that there is nothing to translate
                 profileNotification.show({.summary = name, .body = {}});
             }},
        start.document);
    daemon.setAwaitsFactorySettings(start.isMinimal);
    daemonPointer = &daemon;
    QObject::connect(&devices, &LinuxDevices::wanted, &daemon, [&](bool isWanted) {
        daemon.useKeyboard(isWanted ? static_cast<Keyboard &>(linuxKeyboard) : keyboard);
    });
    QObject::connect(&devices, &LinuxDevices::panicked, &releaseNotification,
                     [&] { releaseNotification.show(releaseNotice()); });
    VirtualKeyboardObject keyboardObject(keyboard);
    DevicesObject devicesObject(devices, deviceChoice);
    FrontApplicationWatch frontApplication(frontApplicationSources(bus));
    QObject::connect(&frontApplication, &FrontApplicationWatch::applicationChanged, &daemon,
                     &DeviceDaemon::setFrontApplication);
    FrontApplicationObject frontApplicationObject(frontApplication);
    if (!keyboardObject.registerOn(bus) || !frontApplicationObject.registerOn(bus) || !devicesObject.registerOn(bus)) {
        qCCritical(lcDaemon, "daemon: cannot put its objects on the bus");
        return DaemonExit::noBus;
    }

    // The message is taken at once and handled when its sender has its empty answer.
    const auto take = [&daemon](qint32 number, const std::optional<QByteArray> &data) -> std::optional<QByteArray> {
        QMetaObject::invokeMethod(
            &daemon, [&daemon, number, data] { daemon.handleMessage(number, data); }, Qt::QueuedConnection);
        return {};
    };
    const std::unique_ptr<LocalMessagePort> port = LocalMessagePort::create(DaemonProtocol::requestPortName, take, bus);
    if (!port) {
        qCCritical(lcDaemon, "another daemon has the port \"%s\" on this bus", DaemonProtocol::requestPortName.data());
        return DaemonExit::alreadyRunning;
    }
    daemon.announceKeyboard();
    devices.useWhenPresent(deviceChoice.load());
    DesktopSearch desktopSearch(frontApplication, bus);
    desktopSearch.start();
    return runUntilEnd(daemon, bus, signalListener);
}

} // namespace

DaemonExit runDaemon()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCCritical(lcDaemon, "there is no session bus: %s", qUtf8Printable(bus.lastError().message()));
        return DaemonExit::noBus;
    }
    if (RemoteMessagePort::open(DaemonProtocol::requestPortName)) {
        qCCritical(lcDaemon, "another daemon is already running on this bus");
        return DaemonExit::alreadyRunning;
    }
    SettingsStore store(SettingsStore::defaultFolder());
    const SettingsStore::OpenResult result = store.open();
    if (result == SettingsStore::OpenResult::open)
        return serve(store, bus);
    qCCritical(lcDaemon, "%s", qUtf8Printable(store.errorText()));
    return result == SettingsStore::OpenResult::inUse ? DaemonExit::alreadyRunning : DaemonExit::folderUnusable;
}
