// SPDX-License-Identifier: MIT
#include "daemon/capture/ontheflysession.h"

#include "base/daemonprotocol.h"
#include "base/document.h"
#include "base/historykeys.h"
#include "base/settingskeys.h"
#include "daemon/capture/ontheflymacro.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/logging.h"
#include "keys/keylayout.h"

OnTheFlySession::OnTheFlySession(CurrentSettings &settings, CurrentKeyboard &keyboard, const DaemonServices &services)
    : mSettings(settings), mKeyboard(keyboard), mServices(services)
{
}

bool OnTheFlySession::canPlayMacro(HidUsage key)
{
    return KeyLayout::rowForCode(key.usage) != nullptr;
}

bool OnTheFlySession::pressMacroKey(Time time)
{
    const int room = roomForNewMacro(mSettings.document());
    if (state() == OnTheFlyState::off && room == 0) {
        qCWarning(lcKeyboard, "file: there is no room for a macro recorded on the keyboard");
        return false;
    }
    mRecorder.pressMacroKey(time, room);
    // The only report of the state on a keyboard without a light for it.
    qCInfo(lcKeyboard, "keyboard: a macro on the fly: %s", onTheFlyStateName(state()).data());
    return true;
}

void OnTheFlySession::keyChanged(HidUsage key, bool isDown, Time time)
{
    mRecorder.keyChanged(key, isDown, time);
}

void OnTheFlySession::end()
{
    mRecorder.end();
    show();
}

void OnTheFlySession::show()
{
    mKeyboard.showOnTheFly(state());
}

void OnTheFlySession::store(const QVariantList &events, HidUsage key)
{
    const CommandOutcome outcome = addOnTheFlyMacro(mSettings.document(), events, key.usage);
    const ChangeCause cause{.author = HistoryKeys::authorKeyboard, .source = ChangeSource::recording};
    if (outcome.status != Status::ok || !mSettings.store(outcome.document, cause)) {
        qCWarning(lcKeyboard, "file: a macro recorded on the keyboard could not be stored");
        return;
    }
    const QVariantMap &document = mSettings.document();
    mServices.postNotification(DaemonProtocol::savedNewOtfm,
                               {{DaemonProtocol::allMacros, Document(document).macros()},
                                {SettingsKeys::activeProfile, Document(document).activeProfile()}});
    mSettings.postUpdated(DaemonProtocol::daemonProcessName);
}
