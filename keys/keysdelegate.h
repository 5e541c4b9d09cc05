// SPDX-License-Identifier: MIT
// Requests of the keys tab to the main controller. Main thread; an operation that waits for the daemon blocks.
#pragma once

#include "base/statusreport.h"

#include <QVariantList>
#include <QVariantMap>

class KeysDelegate
{
public:
    virtual ~KeysDelegate() = default;

    /// `settings` has "Keys", the whole changed dictionary of the active profile.
    virtual void updateKeySettings(const QVariantMap &settings) = 0;
    virtual void startSingleKeyRecording() = 0;
    virtual void stopSingleKeyRecording() = 0;
    /// `index` is 0 for keys, 1 profiles, 2 macros, 3 lighting, 4 maintenance.
    virtual void selectTabAtIndex(int index) = 0;
    /// `profiles` are all profile records, repaired after a macro or a profile was deleted.
    virtual void updateProfileKeyInDictionaryWithDictionary(const QVariantList &profiles) = 0;
    // As in MacroDelegate, for a new macro
    virtual void addMacroWithSettings(const QVariantMap &) {}
    virtual void startMacroRecordingMacroIndex(int /*appendFlag*/, int /*macroIndex*/) {}
    virtual void stopMacroRecording() {}
    virtual void saveRecordedEventsForMacroAtIndexIsNewRecording(int /*macroIndex*/, int /*isNewRecording*/) {}
    virtual void recordButton(int /*button*/, bool /*isDown*/) {}
    virtual void renameMacroAtIndexWithNewName(int /*macroIndex*/, const QString & /*newName*/) {}
    virtual void deleteMacroAtIndex(int /*macroIndex*/) {}
    /// Notes that the latest change is the first one of an action of the user.
    virtual void beginAction() {}
    /// Makes one entry of the history of all changes since beginAction(), unless another client has changed something
    /// meanwhile.
    virtual void endAction() {}
    /// Shows an event to the user, without a message box.
    virtual void report(const StatusReport &) {}
};
