// SPDX-License-Identifier: MIT
// The user's choice of keyboards, on disk: devices.plist beside the settings. Owned by the daemon, which holds the
// folder's lock; one thread.
#pragma once

#include "daemon/keyboards/devices.h"

#include <QVariantMap>

/// A property list {"Devices": [{"Vendor", "Product", "Serial", "Path"}, ...]}; unknown keys are kept. A damaged file
/// is set aside as devices.plist.damaged-<time>; the choice is then empty.
class DeviceChoice
{
public:
    /// `folder` must exist. Reads nothing yet.
    explicit DeviceChoice(const QString &folder);

    /// The choice on disk. Empty for a file that cannot be read, which save() never replaces.
    [[nodiscard]] QList<ChosenDevice> load();

    /// Replaces the loaded choices; the new ones are on the disk when this returns. Writes nothing if nothing changes.
    /// False, and logged, on failure: the file then remains unchanged.
    [[nodiscard]] bool save(const QList<ChosenDevice> &choices);

private:
    void refuse(const QString &reason);

    QString mPath;
    QVariantMap mRoot;            // as last read or written
    QList<ChosenDevice> mChoices; // those in mRoot
    bool mIsUnreadable = false;
};
