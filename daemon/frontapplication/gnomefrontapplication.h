// SPDX-License-Identifier: MIT
// The application in front under GNOME on Wayland. The Shell does not report it to other programs. An extension in it
// (gnome-shell/) calls the daemon (org.quillkestra.FrontApplication.TellWindow) whenever another window gets the focus.
#pragma once

#include "daemon/frontapplication/frontapplicationsource.h"
#include "daemon/frontapplication/gnomeshell.h"

/// Usable in a Wayland session once the extension has reported, until it ends. The reports themselves reach the
/// FrontApplicationWatch like those of other clients.
class GnomeFrontApplication : public FrontApplicationSource
{
    Q_OBJECT

public:
    /// `shell` must outlive this.
    explicit GnomeFrontApplication(const GnomeShell &shell);

    void start() override;
    /// Only the Shell's: it knows every window.
    [[nodiscard]] bool takesReportsOf(const QString &client) const override { return mShell.isShell(client); }

private:
    const GnomeShell &mShell;
};
