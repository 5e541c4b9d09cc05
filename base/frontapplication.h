// SPDX-License-Identifier: MIT
// An application with an open window, with every name that the desktop reports: for the daemon the one whose window has
// the focus. A value; any thread.
#pragma once

#include <QString>

/// A name that the desktop does not report is empty. All empty: no application is in front.
struct FrontApplication
{
    QString windowClass = {};    ///< X11: the class of WM_CLASS; Wayland: the application id
    QString windowInstance = {}; ///< X11: the instance of WM_CLASS
    QString desktopEntry = {};   ///< id of the desktop entry, with or without ".desktop"
    QString executable = {};     ///< absolute path of the window's process

    [[nodiscard]] bool isNone() const
    {
        return windowClass.isEmpty() && windowInstance.isEmpty() && desktopEntry.isEmpty() && executable.isEmpty();
    }

    /// The name to show: the first known one.
    [[nodiscard]] QString name() const
    {
        for (const QString &known : {windowClass, desktopEntry, windowInstance})
            if (!known.isEmpty())
                return known;
        return executable;
    }

    /// An application with a single known name, which may be any of its names.
    [[nodiscard]] static FrontApplication named(const QString &name)
    {
        return {.windowClass = name, .windowInstance = {}, .desktopEntry = name, .executable = name};
    }

    friend bool operator==(const FrontApplication &, const FrontApplication &) = default;
};
