// SPDX-License-Identifier: MIT
// Requests of the macros tab to the main controller. Main thread; an operation that waits for the daemon blocks. A
// macro index is a row of the macro list, an event index a display row of the event list; delays are milliseconds.
#pragma once

#include "base/statusreport.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

class MacroDelegate
{
public:
    virtual ~MacroDelegate() = default;

    virtual void addMacroWithSettings(const QVariantMap &macro) = 0;
    /// `appendFlag` is 1 to add to the existing events and 0 to start a new recording.
    virtual void startMacroRecordingMacroIndex(int appendFlag, int macroIndex) = 0;
    virtual void stopMacroRecording() = 0;
    virtual void saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording) = 0;
    virtual void getMacroDetailsForMacroAtIndex(int macroIndex) = 0;
    virtual void deleteMacroAtIndex(int macroIndex) = 0;
    virtual void renameMacroAtIndexWithNewName(int macroIndex, const QString &newName) = 0;
    virtual void removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex) = 0;
    virtual void removeAllEventsForMacroAtIndex(int macroIndex) = 0;
    virtual void setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay) = 0;
    virtual void setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex) = 0;
    virtual void updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex, const QVariantMap &event) = 0;
    /// Returns the event record; empty when no reply came.
    virtual QVariantMap getSequenceDetailsEventIndex(int macroIndex, int eventIndex) = 0;
    /// Stores `events` in place of all events of the macro, as one change, and then hands over the macros and the
    /// lines. `readEvents` are those in the record of the macro that the tab has: the change is refused if the macro
    /// has others by now. Also then, the tab gets the present macros. False if nothing was stored; the reason was
    /// reported.
    virtual bool replaceEventsOfMacroAtIndex(int macroIndex, const QVariantList &readEvents,
                                             const QVariantList &events) = 0;
    /// Hands over the macros again if events were edited since: the replies to some edits have no records. Returns
    /// false if they have not come; the reason was reported.
    [[nodiscard]] virtual bool reloadMacros() { return true; }
    /// Reports a mouse button that the user has pressed or released for the running recording. `button`: 1 to 9. Does
    /// not wait.
    virtual void recordButton(int, bool) {}
    /// Plays the macro for the user to see. `repeat`: as "param2" of a key that plays it. Does not wait:
    /// KeyboardMacrosController::showTriedKeys() gets the output, and endTry() the end.
    virtual void startTryMacroIndex(int, int) {}
    /// Ends the try; the tab needs no endTry() after this.
    virtual void stopTry() {}
    virtual void startEditHID() = 0;
    virtual void stopSingleKeyRecording() = 0;
    /// Shows this key of this profile on the keys tab. A profile that is not active becomes so: the keys tab shows no
    /// other one.
    virtual void showKeyOfProfile(int keyCode, int profileIndex)
    {
        Q_UNUSED(keyCode)
        Q_UNUSED(profileIndex)
    }
    /// Shows an event to the user, without a message box.
    virtual void report(const StatusReport &) {}
};
