// SPDX-License-Identifier: MIT
// The configurator as a program: its command line, its texts, its window and its end.
#pragma once

#include <QStringList>
#include <QVariantMap>

class Keyboard_ConfiguratorAppDelegate;

/// Runs the configurator until it quits; returns the program's exit code.
int runConfigurator(int argc, char *argv[]);

/// How the program was launched, according to its command line and the session manager.
struct Launch
{
    bool isRestored = false;      ///< --restored, or restored by the session manager
    bool isForBackground = false; ///< --background: started at login
    bool isWithoutNotice = false; ///< --no-launch-notice
    QStringList files;
};

/// Returns the launch notification's user information. The default-launch flag is false when the program was restored
/// or started for the background: such a window waits for the service. It is absent for any other launch without
/// notice, and true otherwise, also with files: a user who opens one must be able to start the service.
[[nodiscard]] QVariantMap launchUserInfo(const Launch &launch);

/// Calls `delegate` when the application quits and when it becomes inactive. Main thread.
void connectToApplication(Keyboard_ConfiguratorAppDelegate &delegate);
