// SPDX-License-Identifier: MIT
// An event that the window reports in its status line instead of a message box. A value; any thread.
#pragma once

#include <QString>

struct StatusReport
{
    enum class Event {
        exportFailed,          ///< a file could not be written; the subject is its name, with the system's reason
        importFailed,          ///< a chosen file could not be read; as exportFailed
        notAProfile,           ///< a chosen file; the subject is its name
        notAMacro,             ///< as notAProfile
        notAnApplication,      ///< as notAProfile
        macroFull,             ///< a key was left out of the recording of the macro named by the subject
        newMacroKept,          ///< the macro named by the subject was recorded for a key, which does not play it
        refused,               ///< the daemon refused a request; the number is its Status
        noReply,               ///< the daemon did not reply
        noReplyToChange,       ///< as noReply; the daemon may still make the change
        lateReply,             ///< the number is that of the seconds
        entryHasChanged,       ///< a change was not sent, because its profile or macro is another one now
        eventsNotCopied,       ///< the clipboard cannot hold one of the chosen events
        recordingNotStored,    ///< the number is the Status
        recordingWithoutReply, ///< as noReplyToChange, for a recording
        cleanUpRefused,        ///< a profile or macro was deleted, but not its assignments; the number is the Status
        cleanUpWithoutReply,   ///< as noReplyToChange, for such a clean-up
        canBeUndone,           ///< a change that the user cannot reverse; the subject is its historyWords()
        undone,                ///< the subject is historyWords() of the change
        redone,                ///< as undone
        notUndone,             ///< as undone; the reason is the D-Bus name of the history's error
        notRedone,             ///< as notUndone
        restored,              ///< as undone
        notRestored,           ///< as notUndone
        historyCleared,        ///< the history and the backups are deleted
        historyNotCleared,     ///< the reason is that of notUndone
        fileWaits,             ///< a file that the user has opened; the subject is its name
        fileWaitsForKeyboard,  ///< as fileWaits
        fileAdded,             ///< as fileWaits
        notAddable,            ///< as fileWaits: neither a profile nor a macro
        notALocalFile,         ///< the subject is the address that the user has opened
        fileRefused,           ///< as fileWaits; the number is the Status with the reason
        filesNotOpened,        ///< too many files are waiting; the number is that of the files not taken
        shellExtensionMissing, ///< no profile follows a window of GNOME; the subject is the extension's package
        settingsProblem,       ///< of the daemon's settings files; the subject has the daemon's sentences
    };

    Event event;
    QString subject = {};
    int number = 0;
    QString reason = {};
};
