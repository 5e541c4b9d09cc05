// SPDX-License-Identifier: MIT
// Where a command writes: results to one device, what went wrong to another. Owned by the caller of runCommandLine().
#pragma once

#include "cli/exitcode.h"

#include <QByteArray>
#include <QIODevice>
#include <QJsonValue>
#include <QString>

/// What stands on a terminal is cleaned of what that would obey: names come from strangers' files and keyboards.
class Console
{
public:
    /// Both devices must be open for writing and outlive the console.
    Console(QIODevice &results, QIODevice &errors) : mResults(results), mErrors(errors) {}

    /// One line of results, in which a "?" stands for each control character and each that turns the text's direction.
    void print(const QString &line);
    /// As print(), and at once, for what somebody watches.
    void printNow(const QString &line);
    // For programs: exactly what is given
    void printJson(const QJsonValue &value);
    void printBytes(const QByteArray &bytes) { mResults.write(bytes); }

    /// Says `reason`, one line as in print(), on the error device; returns `code`, so that a command can end with
    /// `return console.fail(…)`.
    ExitCode fail(ExitCode code, const QString &reason);

private:
    QIODevice &mResults;
    QIODevice &mErrors;
};
