// SPDX-License-Identifier: MIT
#include "cli/macrochoice.h"

#include "base/settingskeys.h"
#include "cli/recordchoice.h"

using namespace Qt::StringLiterals;

QString macroWords(int number, const QVariantMap &record)
{
    return u"macro %1 \"%2\""_s.arg(number).arg(record.value(SettingsKeys::macroName).toString());
}

QString ChosenMacro::words() const
{
    return macroWords(number, record());
}

std::optional<ChosenMacro> chooseMacro(CommandContext &context, ExitCode &failure)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok()) {
        failure = context.console.fail(document.failure, document.reason);
        return {};
    }
    const QVariantList macros = document.reply.value(SettingsKeys::macros).toList();
    QString problem;
    const auto number = existingRecordNumber(context.arguments.first(), macros, macroKind, problem);
    if (!number) {
        failure = context.console.fail(ExitCode::usage, problem);
        return {};
    }
    return ChosenMacro{.document = document.reply, .macros = macros, .number = *number};
}
