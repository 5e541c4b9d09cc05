// SPDX-License-Identifier: MIT
// The commands of kestractl, one row each. The help, the checks and the function to call all come from here.
#pragma once

#include "cli/console.h"
#include "cli/daemonclient.h"

#include <QLatin1StringView>
#include <QList>
#include <QMap>
#include <QStringList>

#include <array>
#include <limits>
#include <span>

/// For a command whose last argument, written "NAME...", can be repeated.
inline constexpr qsizetype anyNumber = std::numeric_limits<qsizetype>::max();

/// The input of a command. `arguments` has as many elements as its row allows; `options` only those its row names.
struct CommandContext
{
    Console &console;
    DaemonClient &daemon;
    QStringList arguments;
    QMap<QString, QString> options; ///< option -> its value, empty for one without

    [[nodiscard]] bool hasOption(QLatin1StringView option) const { return options.contains(option); }
    [[nodiscard]] QString optionValue(QLatin1StringView option) const { return options.value(option); }
};

/// One way to write a command, and what it does.
struct CommandForm
{
    QString words; ///< after the command's name
    QString help;  ///< one line
};

struct CommandRow
{
    QLatin1StringView name;           ///< one or two words
    QLatin1StringView arguments = {}; ///< as the help shows them
    qsizetype minimumArguments = 0;
    qsizetype maximumArguments = 0;
    QLatin1StringView options = {}; ///< the options it takes, separated by spaces
    QLatin1StringView help;         ///< one line
    CommandResult<void> (*function)(CommandContext &context);
    QList<CommandForm> (*forms)() = nullptr; ///< for the help of a command that can be written in several ways
};

/// Every command, in the order of the help.
[[nodiscard]] std::span<const CommandRow> commandTable();

namespace Options {
inline constexpr QLatin1StringView json{"--json"};
inline constexpr QLatin1StringView plist{"--plist"};
inline constexpr QLatin1StringView append{"--append"};
inline constexpr QLatin1StringView seconds{"--seconds"};
inline constexpr QLatin1StringView modifiers{"--modifiers"};
inline constexpr QLatin1StringView repeat{"--repeat"};
inline constexpr QLatin1StringView off{"--off"};
inline constexpr QLatin1StringView list{"--list"};
inline constexpr QLatin1StringView add{"--add"};
inline constexpr QLatin1StringView date{"--date"};
inline constexpr QLatin1StringView text{"--text"};
inline constexpr QLatin1StringView newest{"--newest"};
inline constexpr QLatin1StringView layout{"--layout"};
inline constexpr QLatin1StringView pause{"--pause"};

/// Options that are followed by a value, as the next word or behind "=".
inline constexpr std::array withValue{modifiers, repeat, seconds, date, newest, layout, pause};
} // namespace Options

// The functions of the rows.
CommandResult<void> showStatus(CommandContext &context);
CommandResult<void> showDocument(CommandContext &context);
CommandResult<void> exportDocument(CommandContext &context);
CommandResult<void> restoreDocument(CommandContext &context);
CommandResult<void> listBackups(CommandContext &context);
CommandResult<void> undoChange(CommandContext &context);
CommandResult<void> redoChange(CommandContext &context);
CommandResult<void> listHistory(CommandContext &context);
CommandResult<void> showHistoryEntry(CommandContext &context);
CommandResult<void> restoreHistoryEntry(CommandContext &context);
CommandResult<void> clearHistory(CommandContext &context);
CommandResult<void> listProfiles(CommandContext &context);
CommandResult<void> switchToProfile(CommandContext &context);
CommandResult<void> addProfile(CommandContext &context);
CommandResult<void> copyProfile(CommandContext &context);
CommandResult<void> renameProfile(CommandContext &context);
CommandResult<void> deleteProfile(CommandContext &context);
CommandResult<void> restoreProfile(CommandContext &context);
CommandResult<void> importProfile(CommandContext &context);
CommandResult<void> exportProfile(CommandContext &context);
CommandResult<void> bindProfile(CommandContext &context);
CommandResult<void> showOrAssignKey(CommandContext &context);
CommandResult<void> listDevices(CommandContext &context);
CommandResult<void> useDevices(CommandContext &context);
CommandResult<void> releaseDevices(CommandContext &context);
CommandResult<void> watchDevices(CommandContext &context);
CommandResult<void> showDeviceRule(CommandContext &context);
CommandResult<void> reportFrontApplication(CommandContext &context);
CommandResult<void> showOrSetLight(CommandContext &context);
CommandResult<void> listMacros(CommandContext &context);
CommandResult<void> showMacro(CommandContext &context);
CommandResult<void> addMacro(CommandContext &context);
CommandResult<void> renameMacro(CommandContext &context);
CommandResult<void> duplicateMacro(CommandContext &context);
CommandResult<void> deleteMacro(CommandContext &context);
CommandResult<void> showMacroUses(CommandContext &context);
CommandResult<void> editMacro(CommandContext &context);
CommandResult<void> insertEvents(CommandContext &context);
CommandResult<void> deleteEvents(CommandContext &context);
CommandResult<void> moveEvents(CommandContext &context);
CommandResult<void> setDelays(CommandContext &context);
CommandResult<void> scaleDelays(CommandContext &context);
CommandResult<void> importMacro(CommandContext &context);
CommandResult<void> exportMacro(CommandContext &context);
CommandResult<void> recordMacro(CommandContext &context);
CommandResult<void> playMacro(CommandContext &context);
CommandResult<void> typeMacroText(CommandContext &context);
CommandResult<void> pressKey(CommandContext &context);
CommandResult<void> releaseKey(CommandContext &context);
CommandResult<void> showSentKeys(CommandContext &context);
CommandResult<void> attachKeyboard(CommandContext &context);
CommandResult<void> removeKeyboard(CommandContext &context);
CommandResult<void> pressGameMode(CommandContext &context);
CommandResult<void> pressMacroKey(CommandContext &context);
CommandResult<void> setBrightness(CommandContext &context);

// The forms of the rows that have several.
QList<CommandForm> restoreDocumentForms();
QList<CommandForm> restoreHistoryEntryForms();
QList<CommandForm> bindProfileForms();
QList<CommandForm> keyCommandForms();
QList<CommandForm> lightCommandForms();
QList<CommandForm> recordMacroForms();
QList<CommandForm> playMacroForms();
QList<CommandForm> typeMacroTextForms();
