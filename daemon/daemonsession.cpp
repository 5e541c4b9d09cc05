// SPDX-License-Identifier: MIT
#include "daemon/daemonsession.h"

#include "base/document.h"
#include "daemon/frontapplication/frontapplicationsources.h"
#include "daemon/settings/startdocument.h"
#include "daemon/system/statefolder.h"

DaemonSession::DaemonSession(SettingsStore &store, const StartDocument &start, const QDBusConnection &bus,
                             const HistoryLimits &limits)
    : mBus(bus), mNotices(bus), mServices(bus, mNotices), mDevices(mEventDevices, mLinuxKeyboard, mSeats),
      mDeviceChoice(StateFolder::defaultPath()),
      mDaemon(store, mVirtualKeyboard, mServices.functions(), start.document, limits),
      mKeyWatch(mDaemon.keyboard(), bus), mMacroTries(bus), mGnomeShell(bus),
      mFrontApplication(frontApplicationSources(bus, mGnomeShell)), mDesktopSearch(mFrontApplication, bus),
      mObjects({.store = store,
                .virtualKeyboard = mVirtualKeyboard,
                .devices = mDevices,
                .deviceChoice = mDeviceChoice,
                .keyWatch = mKeyWatch,
                .frontApplication = mFrontApplication,
                .gnomeShell = mGnomeShell,
                .profiles = mDaemon.profiles(),
                .history = mDaemon.history(),
                .historyCalls = mDaemon.historyCommands(),
                .macroReplacement = mDaemon.macroReplacement(),
                .macroTries = mMacroTries,
                .captures = mDaemon.captureCommands()}),
      mRequests(bus, [this](RequestQueue &queue) { return mDaemon.handleNextRequest(queue); })
{
    mDaemon.setAwaitsFactorySettings(start.isMinimal);
    connectDaemon();
    connectKeyboards();
    connectStore(store);
}

void DaemonSession::connectDaemon()
{
    QObject::connect(&mServices, &SystemServices::clientVanished, &mDaemon, &DeviceDaemon::clientVanished);
    QObject::connect(&mServices, &SystemServices::timeReached, &mDaemon, &DeviceDaemon::wake);
    QObject::connect(&mFrontApplication, &FrontApplicationWatch::applicationChanged, &mDaemon,
                     &DeviceDaemon::setFrontApplication);
    QObject::connect(&mFrontApplication, &FrontApplicationWatch::clientReported, &mGnomeShell,
                     &GnomeShell::clientReported);
    QObject::connect(&mGnomeShell, &GnomeShell::reportsBegun, &mFrontApplication, &FrontApplicationWatch::startOver);
    const auto followMacros = [this] { mMacroTries.setMacros(Document(mDaemon.document()).macros()); };
    QObject::connect(&mDaemon, &DeviceDaemon::documentChanged, &mMacroTries, followMacros);
    followMacros();
}

void DaemonSession::connectKeyboards()
{
    QObject::connect(&mDevices, &LinuxDevices::wanted, &mDaemon, [this](bool isWanted) {
        mDaemon.useKeyboard(isWanted ? static_cast<Keyboard &>(mLinuxKeyboard) : mVirtualKeyboard);
    });
    QObject::connect(&mDevices, &LinuxDevices::choiceMoved, &mDaemon,
                     [this] { (void)mDeviceChoice.save(mDevices.choices()); }); // logs a failure
    QObject::connect(&mDevices, &LinuxDevices::releaseChordPressed, &mDaemon,
                     [this] { mNotices.showKeyboardReleased(); });
}

void DaemonSession::connectStore(SettingsStore &store)
{
    // The start document has been read before there was a handler.
    if (!store.problems().isEmpty())
        mNotices.showSettingsProblem();
    store.setProblemHandler([this] {
        mNotices.showSettingsProblem();
        mObjects.reportSettingsProblem();
    });
    // The settings come first into a folder that is made again.
    mDeviceChoice.setFolderKeeper([this] { return mDaemon.keepFolder(); });
    store.setFolderHandler([this] { (void)mDeviceChoice.save(mDevices.choices()); }); // logs a failure
}

void DaemonSession::useKeyboards()
{
    // First the state that the daemon starts with; the next step may already change it.
    mDaemon.announceKeyboard();
    mDevices.useWhenPresent(mDeviceChoice.load());
}
