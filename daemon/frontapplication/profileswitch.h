// SPDX-License-Identifier: MIT
// Switches the active profile: by a key, by a client's command, or by the application in front. Owned by the
// DeviceDaemon; main thread only.
#pragma once

#include "daemon/frontapplication/automaticswitch.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/history.h"

#include <QObject>
#include <QVariantMap>

#include <optional>

class CurrentSettings;
struct DaemonServices;

/// A switch that cannot be stored does not take effect, neither in the document nor in the remembered profile. A switch
/// by the application in front is not written to the disk.
class ProfileSwitch : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this.
    ProfileSwitch(CurrentSettings &settings, const DaemonServices &services);

    /// `document` as the disk keeps it: with the profile chosen by hand.
    [[nodiscard]] QVariantMap documentToKeep(const QVariantMap &document) const;

    /// The name of the application for which the active profile is active; empty while it is the one chosen by hand.
    [[nodiscard]] const QString &application() const { return mApplication; }

    /// A key has chosen the profile; `index` may not exist.
    void chooseByKey(int index);
    /// Another application has come to the front: its profile becomes active.
    void setFrontApplication(const FrontApplication &application);
    /// Applies a client's command, which may choose, bind or delete a profile, to the result of the commands planned
    /// before. In the outcome, `changesDocument` says whether the document is different.
    /// `author`: HistoryKeys.
    [[nodiscard]] CommandOutcome plan(const DocumentCommand &command, const QVariantMap &request,
                                      const QString &author);
    /// Writes all planned commands at once, and clears the plan. The caller then uses the outcomes' documents in their
    /// order. False if the write failed: nothing has changed.
    [[nodiscard]] bool storePlanned();

    /// Stores and uses `kept`, a document for the disk, in place of the present one. If its active profile is another
    /// one, that counts as chosen by hand; otherwise the profile still follows the application in front. False if the
    /// write failed: nothing has changed.
    [[nodiscard]] bool replace(const QVariantMap &kept, const ChangeCause &cause);

    /// Shows the active profile on the screen if another one was active in `before` and its settings request this.
    void showSwitch(const QVariantMap &before) const;

Q_SIGNALS:
    void applicationChanged(const QString &application);

private:
    void reportApplication();

    CurrentSettings &mSettings;
    const DaemonServices &mServices;
    AutomaticSwitch mAutomaticSwitch;
    QString mApplication; // as last reported; during a plan, mAutomaticSwitch is ahead of it

    struct Plan
    {
        QVariantMap document;
        AutomaticSwitch previous; // before the first command
        QList<StoredChange> changes;
        bool isChange = false;
    };
    std::optional<Plan> mPlan;
};
