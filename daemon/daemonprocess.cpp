// SPDX-License-Identifier: MIT
#include "daemon/daemonprocess.h"

#include "base/daemonprotocol.h"
#include "daemon/daemonsession.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/settings/startdocument.h"
#include "daemon/system/logging.h"
#include "daemon/system/statefolder.h"
#include "platform/busend.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"
#include "platform/terminationsignals.h"

#include <QCoreApplication>
#include <QDBusConnection>

namespace {

/// Runs the event loop until a signal or the end of the bus.
void runUntilEnd(const TerminationSignals &terminationSignals, const QDBusConnection &bus)
{
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, qApp, [](int number) {
        qCInfo(lcDaemon, "serving, signal %d: ending", number);
        QCoreApplication::quit();
    });
    const BusEnd busEnd(bus);
    if (!busEnd.isWatching())
        qCCritical(lcDaemon, "daemon: it cannot notice when the bus goes away");
    QObject::connect(&busEnd, &BusEnd::reached, qApp, &QCoreApplication::quit);
    qCInfo(lcDaemon, "starting, ready: serving \"%s\"", DaemonProtocol::requestPortName.data());
    if (bus.isConnected()) // otherwise BusEnd would never signal
        QCoreApplication::exec();
}

/// Makes the parts, shows them to clients, uses the keyboards, and serves until the end. `store` must be open.
DaemonExit serve(SettingsStore &store, const QDBusConnection &bus, const HistoryLimits &limits)
{
    // First and to the end: a signal waits for the event loop, which ends the daemon in order.
    const TerminationSignals terminationSignals;
    const StartDocument start = readStartDocument(store);
    DaemonSession session(store, start, bus, limits);
    // Before the request port: a client that finds the port may call an object at once.
    if (!session.registerObjects()) {
        qCCritical(lcDaemon, "daemon: cannot put its objects on the bus");
        return DaemonExit::noBus;
    }
    // Two daemons may have started at the same time: the name of the port decides which one serves.
    if (!session.serveRequests()) {
        qCCritical(lcDaemon, "another daemon has the port \"%s\" on this bus", DaemonProtocol::requestPortName.data());
        return DaemonExit::alreadyRunning;
    }
    // After the request port: a daemon that does not serve must leave keyboards and clients alone.
    session.useKeyboards();
    session.followFrontApplication();
    runUntilEnd(terminationSignals, bus);
    const bool isBusGone = !bus.isConnected();
    // While all parts exist: ends every capture and releases every key.
    session.shutDown();
    if (isBusGone)
        qCWarning(lcDaemon, "serving, the bus is gone: ended");
    return isBusGone ? DaemonExit::noBus : DaemonExit::ended;
}

} // namespace

DaemonExit runDaemon(const HistoryLimits &limits)
{
    const QDBusConnection bus = sharedSessionBus();
    if (!bus.isConnected()) {
        qCCritical(lcDaemon, "there is no session bus: %s", qUtf8Printable(bus.lastError().message()));
        return DaemonExit::noBus;
    }
    // Until the first events, Qt holds back the messages of a new connection, but not the answers that come after them.
    // The request port needs their order.
    QCoreApplication::processEvents();
    // Before the folder is opened: beside another daemon, this one must change no file.
    if (RemoteMessagePort::open(DaemonProtocol::requestPortName)) {
        qCCritical(lcDaemon, "another daemon is already running on this bus");
        return DaemonExit::alreadyRunning;
    }
    // The lock of the folder also excludes a daemon on another bus.
    SettingsStore store(StateFolder::defaultPath());
    const Result<void, SettingsStore::OpenError> opened = store.open();
    if (opened)
        return serve(store, bus, limits);
    qCCritical(lcDaemon, "%s", qUtf8Printable(opened.error().message));
    return opened.error().cause == SettingsStore::OpenError::Cause::inUse ? DaemonExit::alreadyRunning
                                                                          : DaemonExit::folderUnusable;
}
