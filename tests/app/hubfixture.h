// SPDX-License-Identifier: MIT
// A hub in its window, with a scripted daemon and resources of its own, for the tests of app/.
#pragma once

#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"
#include "tests/support/scripteddaemon.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

/// Copies the resources that the build made into a folder of its own and points the program at them; loads the texts;
/// shortens the wait for a reply, which tests of a silent daemon go through often, to about 60 ms.
class HubResources
{
public:
    HubResources();
    ~HubResources();

    [[nodiscard]] QString kestraPlist() const;

private:
    QTemporaryDir mFolder;
};

/// Two profiles ("Default Profile", "Raid"; the second active) and three macros, with the given keys changed.
[[nodiscard]] QVariantMap sampleDocument();

/// `document` with another active profile.
[[nodiscard]] QVariantMap withActiveProfile(QVariantMap document, int index);

/// The window as the program makes it, before the launch.
struct Hub
{
    explicit Hub(std::chrono::milliseconds firmwareQueryInterval = std::chrono::hours(1));

    /// initializeDevice() and forgets the requests it made.
    void open(ScriptedDaemon &daemon);

    template <typename Widget> Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(QLatin1StringView(name));
    }

    QStringList endedProcesses;
    std::function<void()> atEndOfProcesses; ///< called when processes are to be ended; may be empty
    QList<QUrl> openedPages;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<KeyboardMainController> controller;
};
