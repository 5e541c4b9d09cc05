// SPDX-License-Identifier: MIT
// Requests of the profiles tab to the main controller. Main thread; every operation waits for the daemon and blocks. A
// profile ID is a row of the profile table.
#pragma once

#include "base/statusreport.h"

#include <QVariantMap>

class ProfileDelegate
{
public:
    virtual ~ProfileDelegate() = default;

    virtual void switchProfileWithID(int profileID) = 0;
    virtual void addNewProfileWithSettings(const QVariantMap &profile) = 0;
    virtual void deleteProfileWithProfileID(int profileID) = 0;
    virtual void renameProfileWithProfileIDAndSettings(int profileID, const QVariantMap &profile) = 0;
    /// `settings` has only the keys to change, or a whole record; it goes to the selected profile.
    virtual void updateProfileWithSettings(const QVariantMap &settings) = 0;
    /// Shows an event to the user, without a message box.
    virtual void report(const StatusReport &) {}
};
