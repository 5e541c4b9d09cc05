// SPDX-License-Identifier: MIT
// A main controller ("hub") in its window, with a scripted daemon and its own resources, for the tests of app/.
#pragma once

#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"
#include "tests/support/scripteddaemon.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

/// Copies the resources of the build into a folder of its own and points the program at them. Loads the texts. Shortens
/// the wait for a reply to about 60 ms, because many tests have a silent daemon.
class HubResources
{
public:
    HubResources();
    ~HubResources();

    [[nodiscard]] QString kestraPlist() const;

private:
    QTemporaryDir mFolder;
};

/// Two profiles ("Default Profile", "Raid"; the second is active) and three macros, with the given keys changed.
[[nodiscard]] QVariantMap sampleDocument();

/// Returns `document` with another active profile.
[[nodiscard]] QVariantMap withActiveProfile(QVariantMap document, int index);

/// The window as the program creates it, before the launch.
struct Hub
{
    explicit Hub(std::chrono::milliseconds firmwareQueryInterval = std::chrono::hours(1), StatusTimes statusTimes = {});

    /// Runs initializeDevice() and forgets the requests it made.
    void open(ScriptedDaemon &daemon);
    /// Runs initializeDevice() and waits until the window is the active one. False if it does not become so.
    [[nodiscard]] bool openInFront() const;

    template <typename Widget> Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(QLatin1StringView(name));
    }

    QStringList endedProcesses;
    std::function<void()> atEndOfProcesses; ///< called when processes must be ended; may be empty
    QList<QUrl> openedPages;
    WebPages::Outcome outcomeOfPages = WebPages::Outcome::opened;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<KeyboardMainController> controller;
};
