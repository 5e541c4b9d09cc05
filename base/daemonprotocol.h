// SPDX-License-Identifier: MIT
// Names and numbers that the configurator, the daemon and kestractl share: ports, commands, keys of requests and
// replies, notifications. docs/daemon-protocol.md explains them for authors of other clients.
#pragma once

#include <QLatin1StringView>
#include <QString>

namespace DaemonProtocol {

using Key = QLatin1StringView;

inline constexpr Key requestPortName{"QuillCoreEngineMsgPort"};
inline constexpr Key configuratorReplyPortName{"KeyboardConfiguratorReplyPort"};
inline constexpr Key configuratorIdentifier{"org.quillkestra.Configurator"};
inline constexpr Key kestractlIdentifier{"org.quillkestra.kestractl"};
inline constexpr Key daemonProcessName{"QuillKestraDaemon"};
inline constexpr Key virtualKeyboardPath{"/VirtualKeyboard"}; // an object of the request port's bus name
inline constexpr Key virtualKeyboardInterface{"org.quillkestra.VirtualKeyboard"};
inline constexpr Key virtualKeyboardNotInUse{"org.quillkestra.VirtualKeyboard.Error.NotInUse"};       // an error's name
inline constexpr Key virtualKeyboardNotAttached{"org.quillkestra.VirtualKeyboard.Error.NotAttached"}; // an error's name
inline constexpr Key productWord{"Kestra"};
inline constexpr int productId = 271;

/// The numbered commands; a request's message identifier is one of these.
enum class Command : qint32 {
    openDevice = 0,
    readSettings = 4,
    addProfile = 5,
    updateProfile = 6,
    replaceAllProfiles = 7,
    deleteProfile = 9,
    switchProfile = 10,
    queryFirmwareVersion = 14,
    startMacroRecording = 18,
    stopMacroRecording = 19,
    saveRecordedEvents = 20,
    startEditHid = 21,
    deleteMacro = 22,
    removeEvent = 23,
    updateEvent = 24,
    renameMacro = 25,
    readMacroLines = 27,
    readEvent = 28,
    startSingleKeyRecording = 29,
    stopSingleKeyRecording = 30,
    addMacro = 32,
    removeAllEvents = 33,
    setAllDelays = 34,
    setDelay = 37,
    releaseDevice = 38,
};

/// The number of every command is below this. Tests and the fuzz target of requests try all numbers up to it.
inline constexpr qint32 commandLimit = 48;
static_assert(static_cast<qint32>(Command::releaseDevice) < commandLimit, "the last command is below the limit");

// Request keys
inline constexpr Key productIdKey{"ProductID"};
inline constexpr Key productName{"ProductName"};
inline constexpr Key responsePortName{"ResponseMsgPortName"};
inline constexpr Key isDeviceWired{"IsDeviceWired"};
inline constexpr Key defaultPlistPath{"DefaultQlPlistPath"};
inline constexpr Key deviceSettingsDictionary{"DeviceSettingsDictionary"};
inline constexpr Key keepsActiveProfile{"KeepActiveProfile"};
inline constexpr Key profileId{"ProfileID"};
inline constexpr Key allProfiles{"AllProfiles"};
inline constexpr Key macroId{"macroID"};
inline constexpr Key isAppendRecording{"isAppendRecording"};
inline constexpr Key macroEventTableIndex{"macroEventTableIndex"};
inline constexpr Key sequenceIndex{"sequenceIdx"};
inline constexpr Key sequence{"sequence"};
inline constexpr Key macroContents{"MacroContents"};
inline constexpr Key indexOfMacroSequence{"IndexOfMacroSequence"};
inline constexpr Key delay{"delay"};
inline constexpr Key hasNoDelay{"HasNoDelay"};

// Reply keys
inline constexpr Key returnStatus{"ReturnStatus"};
inline constexpr Key returnDictionary{"ReturnDictionary"};
inline constexpr Key allDevSettings{"AllDevSettings"};
inline constexpr Key macroSequences{"MacroSequences"};
inline constexpr Key sequenceInMacro{"sequenceInMacro"};

// Keys of notifications' user information
inline constexpr Key messageId{"MessageID"};
inline constexpr Key firmwareVersion{"FirmwareVersion"};
inline constexpr Key sourceApp{"Source App"};
inline constexpr Key allMacros{"AllMacros"};
inline constexpr Key messagesArray{"messagesArray"};
inline constexpr Key isMacroFull{"isMacroFull"};
inline constexpr Key singleKey{"singleKey"};
inline constexpr Key singleKeyModifier{"singleKeyModif"};

// Notification names. The event notifications always contain 271, the reply notification the opened product's number.
inline constexpr Key deviceAttached{"Device Attached 271"};
inline constexpr Key deviceRemoved{"Device Removed 271"};
inline constexpr Key profileUpdated{"Profile Updated 271"};
inline constexpr Key dpiUpdated{"DPI Updated 271"};
inline constexpr Key savedNewOtfm{"Saved New OTFM 271"};
inline constexpr Key illuminationUpdated{"Illumination Updated 271"};
inline constexpr Key singleKeyEvent{"SingleKeyEvent271"};
inline constexpr Key gameModePressed{"Game Mode Pressed 271"};
inline constexpr Key macroSequenceNotification{"MacroSequence271"};
// While an event of a macro is edited, captured keys are announced under this other number. Deliberate: both are
// literals.
inline constexpr Key editedEventKey{"SingleKeyEvent1048"};

/// Returns "commandReplyNotification%d" with the product identifier.
inline QString commandReplyNotification(int product)
{
    return QStringLiteral("commandReplyNotification%1").arg(product);
}

} // namespace DaemonProtocol
