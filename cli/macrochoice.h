// SPDX-License-Identifier: MIT
// The macro that a command line means, among those that the daemon holds. No state; main thread.
#pragma once

#include "cli/commandtable.h"

#include <QVariantList>
#include <QVariantMap>

#include <optional>

/// A macro and the document it is in.
struct ChosenMacro
{
    QVariantMap document;
    QVariantList macros;
    int number = 0; ///< position in `macros`, where it is

    [[nodiscard]] QVariantMap record() const { return macros.at(number).toMap(); }
    [[nodiscard]] QString words() const; ///< 'macro 2 "Combo"'
};

/// The macro that the first argument names. Absent when there is none: `failure` is then the exit code, and the reason
/// has been said.
[[nodiscard]] std::optional<ChosenMacro> chooseMacro(CommandContext &context, ExitCode &failure);

/// 'macro 2 "Combo"'
[[nodiscard]] QString macroWords(int number, const QVariantMap &record);
