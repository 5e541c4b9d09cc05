// SPDX-License-Identifier: MIT
#include "daemon/keyboards/ownkeys.h"

#include "base/daemonprotocol.h"
#include "base/document.h"
#include "base/historykeys.h"
#include "base/settingskeys.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/daemonservices.h"

using namespace SettingsDocument;

namespace {

const ChangeCause byKeyboard{.author = HistoryKeys::authorKeyboard};

} // namespace

OwnKeys::OwnKeys(CurrentSettings &settings, const DaemonServices &services) : mSettings(settings), mServices(services)
{
}

void OwnKeys::toggleGameMode()
{
    const QVariantMap &document = mSettings.document();
    const bool isOn = !Document(document).deviceSettings().isGameModeOn();
    if (!mSettings.store(completed(withDeviceSetting(document, SettingsKeys::gameMode, isOn)), byKeyboard))
        return;
    // In this order: the first makes a client flip its flag, the second makes it read the true value.
    mServices.postNotification(DaemonProtocol::gameModePressed, {});
    mSettings.postUpdated(DaemonProtocol::daemonProcessName);
}

void OwnKeys::setBrightness(int level)
{
    const QVariantMap &document = mSettings.document();
    QVariantList list = Document(document).profiles();
    const int active = Document(document).activeProfileIndex();
    QVariantMap profile = list.at(active).toMap();
    profile.insert(SettingsKeys::brightnessKbNormal, level);
    list[active] = profile;
    const QVariantMap changed = completed(withProfiles(document, list));
    if (changed == document || !mSettings.store(changed, byKeyboard))
        return;
    mServices.postNotification(DaemonProtocol::illuminationUpdated, {{SettingsKeys::brightnessKbNormal, level}});
    mSettings.postUpdated(DaemonProtocol::daemonProcessName);
}
