// SPDX-License-Identifier: MIT
// The keyboards that the user chose, on disk: devices.plist beside the settings. Owned by the daemon, which holds the
// folder's lock; one thread.
#pragma once

#include "daemon/keyboards/devices.h"

#include <QVariantMap>

/// A property list {"Devices": [{"Vendor", "Product", "Serial", "Path"}, ...]}; keys that are not known are kept. A
/// damaged file is set aside as devices.plist.damaged-<time> and counts as no choice.
class DeviceChoice
{
public:
    /// `folder` is there. Reads nothing yet.
    explicit DeviceChoice(const QString &folder);

    /// What is on disk. A file that is there and cannot be read counts as no choice, too, but is never replaced.
    [[nodiscard]] QList<ChosenDevice> load();

    /// Puts `choices` in the place of those loaded; on the disk when this returns. False when that failed, which is
    /// logged: the file holds what it held. Writes nothing when nothing changes.
    [[nodiscard]] bool save(const QList<ChosenDevice> &choices);

private:
    void refuse(const QString &reason);

    QString mPath;
    QVariantMap mRoot;            // as read or written last
    QList<ChosenDevice> mChoices; // those in it
    bool mIsUnreadable = false;
};
