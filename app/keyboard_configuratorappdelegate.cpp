// SPDX-License-Identifier: MIT
#include "app/keyboard_configuratorappdelegate.h"

#include "app/keyboardmaincontroller.h"
#include "base/daemonprotocol.h"
#include "platform/messageport.h"

#include <condition_variable>
#include <memory>
#include <mutex>

Keyboard_ConfiguratorAppDelegate::Keyboard_ConfiguratorAppDelegate(QWidget *mainWindow,
                                                                   KeyboardMainController *mainController,
                                                                   WhenPainted whenPainted,
                                                                   std::chrono::milliseconds pollInterval,
                                                                   QObject *parent)
    : QObject(parent), window(mainWindow), mKeyboardMainController(mainController),
      mWhenPainted(std::move(whenPainted)), mDaemonPollInterval(pollInterval)
{
}

Keyboard_ConfiguratorAppDelegate::~Keyboard_ConfiguratorAppDelegate() = default;

void Keyboard_ConfiguratorAppDelegate::applicationDidFinishLaunching(const QVariantMap &userInfo)
{
    mKeyboardMainController->setMMainWindow(window);
    const auto isDefaultLaunch = userInfo.constFind(launchIsDefaultLaunchKey);
    const bool isWithNotice = isDefaultLaunch != userInfo.constEnd();
    if (isWithNotice)
        mKeyboardMainController->showRestoringStateWindow();
    const bool waitsForDaemon = isWithNotice && !isDefaultLaunch->toBool();
    mWhenPainted([this, waitsForDaemon] {
        if (waitsForDaemon)
            mBackgroundLoop = std::jthread([this](const std::stop_token &stop) { doLoopInBackground(stop); });
        else
            mKeyboardMainController->initializeDevice();
    });
}

void Keyboard_ConfiguratorAppDelegate::doLoopInBackground(const std::stop_token &stop)
{
    // Shared with the call below, which may still be queued when this thread is asked to stop.
    struct Progress
    {
        std::mutex mutex;
        std::condition_variable_any changed;
        bool isDone = false;
    };
    const auto progress = std::make_shared<Progress>();
    std::unique_lock lock(progress->mutex);
    do {
        progress->changed.wait_for(lock, stop, mDaemonPollInterval, [] { return false; });
        if (stop.stop_requested())
            return;
    } while (!RemoteMessagePort::open(DaemonProtocol::requestPortName));

    QMetaObject::invokeMethod(
        mKeyboardMainController,
        [controller = mKeyboardMainController, progress] {
            controller->initializeDevice();
            const std::scoped_lock done(progress->mutex);
            progress->isDone = true;
            progress->changed.notify_all();
        },
        Qt::QueuedConnection);
    // The call does not block: the application may quit before its main thread gets to it.
    progress->changed.wait(lock, stop, [&progress] { return progress->isDone; });
}

void Keyboard_ConfiguratorAppDelegate::applicationWillTerminate()
{
    mKeyboardMainController->keepNewMacro(); // before the release, which ends what the daemon records
    mKeyboardMainController->releaseQuillDeviceInstance();
    mKeyboardMainController->saveLastSelectedKey();
    mKeyboardMainController->checkMacroRecording();
}

void Keyboard_ConfiguratorAppDelegate::applicationWillResignActive()
{
    mKeyboardMainController->checkMacroRecording();
}
