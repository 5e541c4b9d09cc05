// SPDX-License-Identifier: MIT
// Shared parts of the profile tests: records, and a main controller. It records the tab's calls and answers like the
// real one: it changes its document, hands the pieces to the tab and refreshes the tab. Main thread only.
#pragma once

#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profiledelegate.h"

#include <QStringList>

#include <functional>

inline QVariantMap profileNamed(const QString &name, const QString &application = {}, int autoSwitch = 0)
{
    return {{QStringLiteral("ProfileName"), name},
            {QStringLiteral("AppInfo"), QVariantMap{{QStringLiteral("application"), application},
                                                    {QStringLiteral("executable"), application},
                                                    {QStringLiteral("identifier"), application},
                                                    {QStringLiteral("signature"), application},
                                                    {QStringLiteral("version"), 7}}},
            {QStringLiteral("AutoSwitchOn"), autoSwitch},
            {QStringLiteral("ProfileOSDOn"), 0},
            {QStringLiteral("BrightnessKBNormal"), 2}};
}

class RecordingProfileDelegate : public ProfileDelegate
{
public:
    struct Call
    {
        QString operation;
        int profileID = -1;
        QVariantMap settings;
    };

    explicit RecordingProfileDelegate(KeyboardProfilesController *controller) : mController(controller) {}

    void switchProfileWithID(int profileID) override
    {
        calls.append({QStringLiteral("switch"), profileID, {}});
        if (answers && profileID < profiles.size())
            active = profileID;
        refresh();
    }
    void addNewProfileWithSettings(const QVariantMap &profile) override
    {
        calls.append({QStringLiteral("add"), -1, profile});
        if (answers && !refusesToAdd)
            profiles.append(profile);
        if (duringAdd)
            duringAdd();
        refresh();
    }
    void deleteProfileWithProfileID(int profileID) override
    {
        calls.append({QStringLiteral("delete"), profileID, {}});
        if (duringDelete)
            duringDelete();
        if (!answers)
            return;
        mController->setControlsState(false);
        profiles.removeAt(profileID);
        active = qMax(0, profileID - 1);
        refresh();
        mController->setControlsState(true);
    }
    void renameProfileWithProfileIDAndSettings(int profileID, const QVariantMap &profile) override
    {
        calls.append({QStringLiteral("rename"), profileID, profile});
        if (answers && profileID >= 0)
            profiles[profileID] = profile;
        refresh();
    }
    void updateProfileWithSettings(const QVariantMap &settings) override
    {
        calls.append({QStringLiteral("update"), -1, settings});
        if (duringUpdate)
            duringUpdate();
        if (answers && active < profiles.size()) {
            QVariantMap profile = profiles.at(active).toMap();
            profile.insert(settings);
            profiles[active] = profile;
        }
        refresh();
    }

    /// Hands the document over and refreshes the tab.
    void refresh()
    {
        if (!answers)
            return;
        mController->setMAllProfilesArray(profiles);
        mController->setMCurrentProfileDict(profiles.value(active).toMap());
        mController->setMDeviceSettingsDict(
            {{QStringLiteral("ActiveProfile"), active}, {QStringLiteral("ProfileOSDOn"), onScreenDisplay}});
        mController->updateUISettings();
        mController->refreshTableDisplay();
    }

    [[nodiscard]] QStringList operations() const
    {
        QStringList result;
        for (const Call &call : calls)
            result.append(call.operation);
        return result;
    }

    QVariantList profiles;
    int active = 0;
    int onScreenDisplay = 0;
    bool answers = true;       ///< false: a reply never comes
    bool refusesToAdd = false; ///< refuses like the daemon when a profile does not fit
    QList<Call> calls;
    std::function<void()> duringAdd; ///< each runs before the tab is refreshed
    std::function<void()> duringDelete;
    std::function<void()> duringUpdate;

private:
    KeyboardProfilesController *mController;
};
