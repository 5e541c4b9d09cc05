// SPDX-License-Identifier: MIT
// What the daemon does for macros that are recorded on the keyboard itself.
#include "base/settingskeys.h"
#include "daemon/capture/ontheflymacro.h"
#include "daemon/devicedaemon.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/logging.h"
#include "keys/keylayout.h"

using State = OnTheFlyState;

void DeviceDaemon::macroKeyPressed()
{
    if (mCapture != Capture::none && mCapture != Capture::onTheFlyKey) {
        qCInfo(lcKeyboard, "%s, the Macro key is pressed: left alone", captureName(mCapture));
        return;
    }
    const int room = roomForNewMacro(mDocument);
    if (mOnTheFly.state() == State::off && room == 0) {
        qCWarning(lcKeyboard, "file: there is no room for a macro recorded on the keyboard");
        return;
    }
    mOnTheFly.pressMacroKey(recordingTime(mOutlets.now()), room);
    // All that tells of it on a keyboard that has no light for it.
    qCInfo(lcKeyboard, "keyboard: a macro on the fly: %s", onTheFlyStateName(mOnTheFly.state()).data());
    // While recording, the keys go on to reach the computer: it is done in the middle of a game. The key that is to
    // play the macro does not.
    const bool isKeyAwaited = mOnTheFly.state() == State::awaitingKey;
    setCapture(isKeyAwaited ? Capture::onTheFlyKey : Capture::none, {}, "the Macro key is pressed");
    mKeyboard.showOnTheFly(mOnTheFly.state());
}

void DeviceDaemon::endOnTheFly()
{
    mOnTheFly.end();
    mKeyboard.showOnTheFly(mOnTheFly.state());
}

void DeviceDaemon::saveOnTheFly(HidUsage key)
{
    if (!KeyLayout::rowForCode(key.usage))
        return; // no key that could be given a macro; the next one may be
    const CommandOutcome outcome = addOnTheFlyMacro(mDocument, mOnTheFly.events(), key.usage);
    endOnTheFly();
    setCapture(Capture::none, {}, "the key for the macro is there");
    if (outcome.status != Status::ok || !store(outcome.document)) {
        qCWarning(lcKeyboard, "file: a macro recorded on the keyboard could not be stored");
        return;
    }
    mOutlets.postNotification(DaemonProtocol::savedNewOtfm,
                              {{DaemonProtocol::allMacros, SettingsDocument::macros(mDocument)},
                               {SettingsKeys::activeProfile, SettingsDocument::activeProfile(mDocument)}});
    postProfileUpdated(DaemonProtocol::daemonProcessName);
}
