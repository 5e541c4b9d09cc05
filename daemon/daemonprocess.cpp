// SPDX-License-Identifier: MIT
#include "daemon/daemonprocess.h"

#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "daemon/devicedaemon.h"
#include "daemon/frontapplication/desktopsearch.h"
#include "daemon/frontapplication/frontapplicationadaptor.h"
#include "daemon/frontapplication/frontapplicationsources.h"
#include "daemon/keyboards/devicechoice.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/linux/linuxdevices.h"
#include "daemon/keyboards/linux/linuxkeyboard.h"
#include "daemon/keyboards/linux/udeveventdevices.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/launch/programlauncher.h"
#include "daemon/requestport.h"
#include "daemon/requestqueue.h"
#include "daemon/settings/settingsadaptor.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/settings/startdocument.h"
#include "daemon/system/deadlinetimer.h"
#include "daemon/system/desktopnotices.h"
#include "daemon/system/handover.h"
#include "daemon/system/logging.h"
#include "daemon/system/statefolder.h"
#include "platform/busend.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"
#include "platform/terminationsignals.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

namespace {

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
        // The client may have gone before the watch began. The call is queued, so the caller first finishes its work.
        if (!portName.isEmpty() && !RemoteMessagePort::open(portName))
            QMetaObject::invokeMethod(
                &mWatcher, [this, portName] { mVanished(portName); }, Qt::QueuedConnection);
    }

private:
    QDBusServiceWatcher mWatcher;
    QString mPortName;
    std::function<void(const QString &)> mVanished;
};

/// All parts of a serving daemon and their connections.
class DaemonSession
{
public:
    DaemonSession(SettingsStore &store, const QDBusConnection &bus)
        : mBus(bus), mDevices(mInputNodes, mLinuxKeyboard), mDeviceChoice(StateFolder::defaultPath()),
          mClientWatch(bus, [this](const QString &portName) { mDaemon.clientVanished(portName); }), mNotifications(bus),
          mNotices(bus), mStart(readStartDocument(store)), mDaemon(store, mKeyboard, services(), mStart.document),
          mSettingsObject(store), mKeyboardObject(mKeyboard), mDevicesObject(mDevices, mDeviceChoice),
          mFrontApplication(frontApplicationSources(bus)), mFrontApplicationObject(mFrontApplication),
          mDesktopSearch(mFrontApplication, bus)
    {
        mDaemon.setAwaitsFactorySettings(mStart.isMinimal);
        QObject::connect(&mTimer, &DeadlineTimer::reached, &mDaemon, &DeviceDaemon::wake);
        QObject::connect(&mRequestTurn, &QTimer::timeout, &mDaemon, [this] {
            if (!mDaemon.handleNextRequest(mQueue))
                mRequestTurn.stop();
        });
        QObject::connect(&mDevices, &LinuxDevices::wanted, &mDaemon, [this](bool isWanted) {
            mDaemon.useKeyboard(isWanted ? static_cast<Keyboard &>(mLinuxKeyboard) : mKeyboard);
        });
        QObject::connect(&mDevices, &LinuxDevices::panicked, &mDaemon, [this] { mNotices.showKeyboardReleased(); });
        if (!store.problems().isEmpty())
            mNotices.showSettingsProblem();
        store.setProblemHandler([this] { mNotices.showSettingsProblem(); });
        store.setFolderHandler([this] { (void)mDeviceChoice.save(mDevices.choices()); }); // logs a failure
        QObject::connect(&mFrontApplication, &FrontApplicationWatch::applicationChanged, &mDaemon,
                         &DeviceDaemon::setFrontApplication);
    }

    /// Serves until a signal or the end of the bus.
    DaemonExit run()
    {
        if (!mKeyboardObject.registerOn(mBus) || !mFrontApplicationObject.registerOn(mBus)
            || !mDevicesObject.registerOn(mBus) || !mSettingsObject.registerOn(mBus)) {
            qCCritical(lcDaemon, "daemon: cannot put its objects on the bus");
            return DaemonExit::noBus;
        }
        RequestPort port(mBus,
                         [this](const QString &sender, const RequestMessage &message) { return add(sender, message); });
        if (!port.serve()) {
            qCCritical(lcDaemon, "another daemon has the port \"%s\" on this bus",
                       DaemonProtocol::requestPortName.data());
            return DaemonExit::alreadyRunning;
        }
        mDaemon.announceKeyboard();
        mDevices.useWhenPresent(mDeviceChoice.load());
        mDesktopSearch.start();
        return runUntilEnd();
    }

private:
    DaemonServices services()
    {
        return {.sendReply = sendReply,
                .postNotification = [this](const QString &name,
                                           const QVariantMap &info) { mNotifications.post(name, info); },
                .watchClient = [this](const QString &portName) { mClientWatch.watch(portName); },
                .launchProgram = ProgramLauncher::launch,
                .now = DeadlineTimer::now,
                .wakeAt = [this](std::optional<KeyPath::Time> time) { mTimer.setDeadline(time); },
                .showProfile = [this](const QString &name) { mNotices.showProfile(name); }};
    }

    /// Called on the thread of the request port.
    Status add(const QString &sender, const RequestMessage &message)
    {
        const Status status = mQueue.add(sender, message);
        if (status == Status::ok)
            QMetaObject::invokeMethod(&mRequestTurn, HandOver::Call{[this] { mRequestTurn.start(); }},
                                      Qt::QueuedConnection);
        return status;
    }

    DaemonExit runUntilEnd()
    {
        QObject::connect(&mSignals, &TerminationSignals::terminationRequested, &mDaemon, [](int number) {
            qCInfo(lcDaemon, "serving, signal %d: ending", number);
            QCoreApplication::quit();
        });
        const BusEnd busEnd(mBus);
        if (!busEnd.isWatching())
            qCCritical(lcDaemon, "daemon: it cannot notice when the bus goes away");
        QObject::connect(&busEnd, &BusEnd::reached, &mDaemon, &QCoreApplication::quit);
        qCInfo(lcDaemon, "starting, ready: serving \"%s\"", DaemonProtocol::requestPortName.data());
        if (mBus.isConnected()) // otherwise BusEnd would never signal
            QCoreApplication::exec();
        const bool busIsGone = !mBus.isConnected();
        mDaemon.shutDown();
        if (busIsGone)
            qCWarning(lcDaemon, "serving, the bus is gone: ended");
        return busIsGone ? DaemonExit::noBus : DaemonExit::ended;
    }

    QDBusConnection mBus;
    TerminationSignals mSignals; // before the daemon is visible: an early signal waits for the event loop
    VirtualKeyboard mKeyboard;
    LinuxKeyboard mLinuxKeyboard;
    UdevEventDevices mInputNodes;
    LinuxDevices mDevices;
    DeviceChoice mDeviceChoice;
    ClientWatch mClientWatch;
    DistributedNotificationCenter mNotifications;
    DesktopNotices mNotices;
    StartDocument mStart;
    DeadlineTimer mTimer;
    RequestQueue mQueue;
    QTimer mRequestTurn; // one request in each round of the event loop, so keys get their turn
    DeviceDaemon mDaemon;
    SettingsObject mSettingsObject;
    VirtualKeyboardObject mKeyboardObject;
    DevicesObject mDevicesObject;
    FrontApplicationWatch mFrontApplication;
    FrontApplicationObject mFrontApplicationObject;
    DesktopSearch mDesktopSearch;
};

} // namespace

DaemonExit runDaemon()
{
    const QDBusConnection bus = sharedSessionBus();
    if (!bus.isConnected()) {
        qCCritical(lcDaemon, "there is no session bus: %s", qUtf8Printable(bus.lastError().message()));
        return DaemonExit::noBus;
    }
    if (RemoteMessagePort::open(DaemonProtocol::requestPortName)) {
        qCCritical(lcDaemon, "another daemon is already running on this bus");
        return DaemonExit::alreadyRunning;
    }
    SettingsStore store(StateFolder::defaultPath());
    const SettingsStore::OpenResult result = store.open();
    if (result == SettingsStore::OpenResult::open)
        return DaemonSession(store, bus).run();
    qCCritical(lcDaemon, "%s", qUtf8Printable(store.errorText()));
    return result == SettingsStore::OpenResult::inUse ? DaemonExit::alreadyRunning : DaemonExit::folderUnusable;
}
