// SPDX-License-Identifier: MIT
// The commands of kestractl, one row each: what the help prints, what is checked and what runs all come from here.
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

/// For a command whose last argument, written "NAME...", may be repeated.
inline constexpr qsizetype anyNumber = std::numeric_limits<qsizetype>::max();

/// What a command gets. `arguments` has as many elements as its row allows; `options` only those its row names.
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
    QLatin1StringView name;      ///< one or two words
    QLatin1StringView arguments; ///< as the help shows them
    qsizetype minimumArguments;
    qsizetype maximumArguments;
    QLatin1StringView options; ///< the options it takes, separated by spaces
    QLatin1StringView help;    ///< one line
    ExitCode (*function)(CommandContext &context);
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

/// Options that are followed by a value, as the next word or behind "=".
inline constexpr std::array withValue{modifiers, repeat, seconds};
} // namespace Options

// The functions of the rows.
ExitCode showStatus(CommandContext &context);
ExitCode showDocument(CommandContext &context);
ExitCode listProfiles(CommandContext &context);
ExitCode switchToProfile(CommandContext &context);
ExitCode addProfile(CommandContext &context);
ExitCode copyProfile(CommandContext &context);
ExitCode renameProfile(CommandContext &context);
ExitCode deleteProfile(CommandContext &context);
ExitCode restoreProfile(CommandContext &context);
ExitCode importProfile(CommandContext &context);
ExitCode exportProfile(CommandContext &context);
ExitCode bindProfile(CommandContext &context);
ExitCode showOrAssignKey(CommandContext &context);
ExitCode listDevices(CommandContext &context);
ExitCode useDevices(CommandContext &context);
ExitCode releaseDevices(CommandContext &context);
ExitCode showDeviceRule(CommandContext &context);
ExitCode tellFrontApplication(CommandContext &context);
ExitCode showOrSetLight(CommandContext &context);
ExitCode listMacros(CommandContext &context);
ExitCode showMacro(CommandContext &context);
ExitCode addMacro(CommandContext &context);
ExitCode renameMacro(CommandContext &context);
ExitCode deleteMacro(CommandContext &context);
ExitCode importMacro(CommandContext &context);
ExitCode exportMacro(CommandContext &context);
ExitCode recordMacro(CommandContext &context);
ExitCode playMacro(CommandContext &context);
ExitCode pressKey(CommandContext &context);
ExitCode releaseKey(CommandContext &context);
ExitCode showSentKeys(CommandContext &context);
ExitCode attachKeyboard(CommandContext &context);
ExitCode removeKeyboard(CommandContext &context);
ExitCode pressGameMode(CommandContext &context);
ExitCode pressMacroKey(CommandContext &context);
ExitCode setBrightness(CommandContext &context);

// The forms of the rows that have several.
QList<CommandForm> keyCommandForms();
QList<CommandForm> lightCommandForms();
QList<CommandForm> recordMacroForms();
QList<CommandForm> playMacroForms();
