// SPDX-License-Identifier: MIT
// The commands of kestractl, one row each: what the help prints, what is checked and what runs all come from here.
#pragma once

#include "cli/console.h"
#include "cli/daemonclient.h"

#include <QLatin1StringView>
#include <QStringList>

#include <span>

/// What a command gets. `arguments` has as many elements as its row allows; `options` only those its row names.
struct CommandContext
{
    Console &console;
    DaemonClient &daemon;
    QStringList arguments;
    QStringList options;

    [[nodiscard]] bool hasOption(QLatin1StringView option) const { return options.contains(option); }
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
};

/// Every command, in the order of the help.
[[nodiscard]] std::span<const CommandRow> commandTable();

namespace Options {
inline constexpr QLatin1StringView json{"--json"};
inline constexpr QLatin1StringView plist{"--plist"};
} // namespace Options

// The functions of the rows.
ExitCode showStatus(CommandContext &context);
ExitCode showDocument(CommandContext &context);
ExitCode listProfiles(CommandContext &context);
ExitCode switchToProfile(CommandContext &context);
ExitCode showOrAssignKey(CommandContext &context);
ExitCode pressKey(CommandContext &context);
ExitCode releaseKey(CommandContext &context);
ExitCode showSentKeys(CommandContext &context);
ExitCode attachKeyboard(CommandContext &context);
ExitCode removeKeyboard(CommandContext &context);
ExitCode pressGameMode(CommandContext &context);
ExitCode setBrightness(CommandContext &context);
