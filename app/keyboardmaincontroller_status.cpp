// SPDX-License-Identifier: MIT
// The hub's waits for the daemon, and what it shows of them and of the daemon's state in the status line.
#include "app/keyboardmaincontroller.h"

#include "base/devicesettings.h"
#include "base/frontapplicationkeys.h"
#include "base/plistnumbers.h"
#include "base/profilerecord.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/pendingcall.h"
#include "platform/sessionbus.h"
#include "profiles/applicationbinding.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <limits>

using DaemonProtocol::Command;
using Event = StatusReport::Event;
using Service = StatusState::Service;
using namespace Qt::StringLiterals;

namespace {

/// Whether the command only reads, or only takes and releases keys. The user does not know these commands.
bool isPartOfAnAction(Command command)
{
    switch (command) {
    case Command::openDevice:
    case Command::readSettings:
    case Command::readMacroLines:
    case Command::readEvent:
    case Command::startMacroRecording:
    case Command::stopMacroRecording:
    case Command::startEditHid:
    case Command::startSingleKeyRecording:
    case Command::stopSingleKeyRecording: return true;
    default: return false;
    }
}

/// Whether the bus itself has answered a call, because the daemon is not there or has ended.
bool isOfBus(const QDBusMessage &reply)
{
    switch (QDBusError(reply).type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::NoReply:
    case QDBusError::Disconnected: return true;
    default: return reply.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1;
    }
}

Event eventWithoutReply(Command command)
{
    if (command == Command::saveRecordedEvents)
        return Event::recordingWithoutReply;
    return isPartOfAnAction(command) ? Event::noReply : Event::noReplyToChange;
}

Event eventOfRefusal(Command command)
{
    return command == Command::saveRecordedEvents ? Event::recordingNotStored : Event::refused;
}

} // namespace

void KeyboardMainController::connectStatus()
{
    connect(&mDevicesStatus, &DevicesStatus::changed, this, &KeyboardMainController::showStatus);
    connect(&mServiceStatus, &ServiceStatus::changed, this, &KeyboardMainController::showStatus);
    connect(&mServiceStatus, &ServiceStatus::daemonHasCome, this, [this] {
        mIsDaemonSilent = false; // another daemon may answer
        mDevicesStatus.read();
    });
    connect(&mServiceStatus, &ServiceStatus::daemonAnswers, this, [this] {
        mIsDaemonSilent = false;
        showStatus();
    });
    connect(&mServiceStatus, &ServiceStatus::daemonHasGone, &mDevicesStatus, &DevicesStatus::read);
    connect(&mServiceStatus, &ServiceStatus::shellExtensionMissing, this, [this] {
        report({.event = Event::shellExtensionMissing, .subject = FrontApplicationKeys::shellExtensionPackage});
    });
    connect(&mServiceStatus, &ServiceStatus::problemFound, this,
            [this](const QString &problem) { report({.event = Event::settingsProblem, .subject = problem}); });
}

void KeyboardMainController::sendAndWait(Command command, const QVariantMap &request,
                                         const std::function<void()> &meanwhile)
{
    StatusReporter::Wait wait(mStatus);
    const auto whileWaiting = [&wait] { wait(); };
    sendDaemonRequest(request, int(command), meanwhile, whileWaiting);
    waitForReply(whileWaiting);
    waitHasEnded(wait, LatestReplySlot::shared().holdsReply());
}

std::optional<QDBusMessage>
KeyboardMainController::callAndWait(const QDBusMessage &call,
                                    const std::function<void(const QDBusMessage &reply)> &whenLate)
{
    constexpr int withoutLimit = std::numeric_limits<int>::max();
    auto *watcher = new QDBusPendingCallWatcher(sharedSessionBus().asyncCall(call, withoutLimit), this);
    StatusReporter::Wait wait(mStatus);
    const bool isFinished = pollUntilFinished(
        *watcher, [&wait] { wait(); }, replyTimeout());
    // Without a daemon, or if it ends, the bus answers.
    const bool hasAnswer = isFinished && !isOfBus(watcher->reply());
    waitHasEnded(wait, hasAnswer);
    if (isFinished) {
        watcher->deleteLater();
        return hasAnswer ? std::optional<QDBusMessage>(watcher->reply()) : std::nullopt;
    }
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, whenLate] {
        watcher->deleteLater();
        if (whenLate)
            whenLate(watcher->reply());
    });
    return {};
}

void KeyboardMainController::waitHasEnded(StatusReporter::Wait &wait, bool hasAnswer)
{
    if (hasAnswer)
        wait.end();
    else
        mServiceStatus.awaitAnswer();
    mIsDaemonSilent = !hasAnswer;
    mIsOpened = true;
    showStatus();
}

void KeyboardMainController::reportOutcome(Command command, const std::optional<QVariantMap> &reply)
{
    const bool isCleanUp = mIsCleaningUp && !isPartOfAnAction(command);
    if (!reply)
        return report({.event = isCleanUp ? Event::cleanUpWithoutReply : eventWithoutReply(command)});
    const int status = PlistNumbers::integerValue(reply->value(DaemonProtocol::returnStatus));
    if (status != 0) {
        report({.event = isCleanUp ? Event::cleanUpRefused : eventOfRefusal(command), .number = status});
    } else if (!isPartOfAnAction(command)) {
        mStatus.changeSucceeded();
    }
}

void KeyboardMainController::showStatus()
{
    StatusState state{.isAttached = mAreControlsOn,
                      .keyboards = mDevicesStatus.keyboards(),
                      .needsShellExtension = mServiceStatus.needsShellExtension()};
    if (mServiceStatus.isRunning() == false)
        state.service = Service::absent;
    else if (mIsOpened)
        state.service = mIsDaemonSilent ? Service::silent : Service::running;
    // Without a keyboard at the start, the window shows the factory settings.
    if (!mDeviceSettingsDict.isEmpty()) {
        std::optional<QString> application = mServiceStatus.profileApplication();
        const QString bound = ApplicationBinding::applicationOf(mCurrentProfileDict);
        if (application && !application->isEmpty() && !bound.isEmpty())
            application = bound; // the name that the user knows
        state.profile = {.name = ProfileRecord::name(mCurrentProfileDict),
                         .isGameModeOn = DeviceSettings(mDeviceSettingsDict).isGameModeOn(),
                         .application = application};
    }
    mStatus.setState(state);
}
