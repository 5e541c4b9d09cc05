// SPDX-License-Identifier: MIT
// Switches the active profile: by a key, by a client's command, or by the application in front. Owned by the
// DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/frontapplication/automaticswitch.h"
#include "daemon/settings/documentcommands.h"

#include <QVariantMap>

#include <optional>

class CurrentSettings;
struct DaemonOutlets;

/// A switch that cannot be stored has not happened, neither in the document nor in what is remembered. A switch by the
/// application in front is not written to the disk.
class ProfileSwitch
{
public:
    /// Both must live longer.
    ProfileSwitch(CurrentSettings &settings, const DaemonOutlets &outlets);

    /// `document` as the disk keeps it: with the profile that was chosen by hand.
    [[nodiscard]] QVariantMap documentToKeep(const QVariantMap &document) const;

    /// A key has chosen the profile; `index` may not exist.
    void chooseByKey(int index);
    /// Another application has come to the front: its profile becomes active.
    void setFrontApplication(const FrontApplication &application);
    /// What a client's command, which may choose, bind or delete a profile, makes of the document, on top of the
    /// commands planned before. In the outcome, `changesDocument` says whether the document is another one.
    [[nodiscard]] CommandOutcome plan(const DocumentCommand &command, const QVariantMap &request);
    /// Writes what has been planned, all at once. The caller then uses the outcomes' documents in their order. False
    /// when it could not be written: nothing has changed. Nothing is planned afterwards.
    [[nodiscard]] bool storePlanned();

    /// Shows the active profile on the screen if another one was active in `before` and its settings ask for it.
    void showSwitch(const QVariantMap &before) const;

private:
    CurrentSettings &mSettings;
    const DaemonOutlets &mOutlets;
    AutomaticSwitch mAutomaticSwitch;

    struct Plan
    {
        QVariantMap document;
        AutomaticSwitch previous; // before the first command
        bool isChange = false;
    };
    std::optional<Plan> mPlan;
};
