// SPDX-License-Identifier: MIT
// The user's choice of keyboards, on disk: devices.plist beside the settings. Owned by the daemon, which holds the
// folder's lock; one thread.
#pragma once

#include "daemon/keyboards/devices.h"

#include <QVariantMap>

#include <functional>
#include <utility>

/// A property list {"Devices": [{"Vendor", "Product", "Serial", "Path"}, ...]}; unknown keys are kept. A damaged file
/// is set aside as devices.plist.damaged-<time>; the choice is then empty.
class DeviceChoice
{
public:
    /// `folder` must exist. Reads nothing yet.
    explicit DeviceChoice(const QString &folder);

    /// `keeper` is called before each save: it makes a removed folder again, and returns false if that failed.
    void setFolderKeeper(std::function<bool()> keeper) { mFolderKeeper = std::move(keeper); }

    /// The choice on disk. Empty for a file that cannot be read, which save() never replaces.
    [[nodiscard]] QList<ChosenDevice> load();

    /// Replaces the loaded choices; the new ones are on the disk when this returns. Writes nothing if nothing changes.
    /// False, and logged, on failure: the file then remains unchanged.
    [[nodiscard]] bool save(const QList<ChosenDevice> &choices);

private:
    void refuse(const QString &reason);

    std::function<bool()> mFolderKeeper; // may be empty
    QString mPath;
    QVariantMap mRoot;            // as last read or written
    QList<ChosenDevice> mChoices; // those in mRoot
    bool mIsUnreadable = false;
};
