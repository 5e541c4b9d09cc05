// SPDX-License-Identifier: MIT
// Start and end of the application. Main thread only, except for the background wait for the daemon.
#pragma once

#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <thread>

class KeyboardMainController;
class QWidget;

/// Key of the launch notification's user information. The value is true for a normal launch. It is false when the
/// application was restored or started for the background.
inline constexpr QLatin1StringView launchIsDefaultLaunchKey{"NSApplicationLaunchIsDefaultLaunchKey"};

/// The interval at which the background wait looks for the daemon.
inline constexpr std::chrono::milliseconds daemonPollInterval{1000};

/// Calls a function when everything shown is on the screen.
using WhenPainted = std::function<void(const std::function<void()> &function)>;

/// For windows that no user looks at.
inline void callAtOnce(const std::function<void()> &function)
{
    function();
}

class Keyboard_ConfiguratorAppDelegate : public QObject
{
    Q_OBJECT

public:
    Keyboard_ConfiguratorAppDelegate(QWidget *window, KeyboardMainController *mainController,
                                     WhenPainted whenPainted = callAtOnce,
                                     std::chrono::milliseconds pollInterval = daemonPollInterval,
                                     QObject *parent = nullptr);
    ~Keyboard_ConfiguratorAppDelegate() override;

    void applicationWillFinishLaunching(const QVariantMap &) {}
    /// Shows the sheet that the launch asks for. Once it is on the screen, opens the keyboard or waits for the daemon.
    /// Opening blocks the main thread, for seconds when the daemon is silent.
    void applicationDidFinishLaunching(const QVariantMap &userInfo);
    void applicationWillTerminate();
    void applicationWillResignActive();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    /// Waits, without a limit, until the daemon's request port exists. Then runs initializeDevice on the main thread
    /// and waits until it returns. Runs on a thread of its own.
    void doLoopInBackground(const std::stop_token &stop);

private:
    QWidget *window;
    KeyboardMainController *mKeyboardMainController;
    WhenPainted mWhenPainted;
    std::chrono::milliseconds mDaemonPollInterval;
    std::jthread mBackgroundLoop;
};
