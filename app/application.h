// SPDX-License-Identifier: MIT
// The configurator as a program: its command line, its texts, its window, its end.
#pragma once

#include <QStringList>
#include <QVariantMap>

class Keyboard_ConfiguratorAppDelegate;

/// Runs the configurator until it quits; the exit code of the program.
int runConfigurator(int argc, char *argv[]);

/// How the program was launched, as its command line and the session manager tell.
struct Launch
{
    bool isRestored = false;      ///< --restored, or restored by the session manager
    bool isForBackground = false; ///< --background: started at login
    bool isWithoutNotice = false; ///< --no-launch-notice
    QStringList files;
};

/// The launch notification's user information: the default-launch flag is absent for a launch without notice, false
/// when the program was restored, opened with a file or started for the background, true otherwise.
[[nodiscard]] QVariantMap launchUserInfo(const Launch &launch);

/// Lets `delegate` know when the application quits and when it is no longer the active one. Main thread.
void connectToApplication(Keyboard_ConfiguratorAppDelegate &delegate);
