// SPDX-License-Identifier: MIT
// Where a command writes: results to one device, what went wrong to another. Owned by the caller of runCommandLine().
#pragma once

#include "cli/exitcode.h"

#include <QByteArray>
#include <QIODevice>
#include <QJsonValue>
#include <QString>

class Console
{
public:
    /// Both devices must be open for writing and outlive the console.
    Console(QIODevice &results, QIODevice &errors) : mResults(results), mErrors(errors) {}

    /// One line of results.
    void print(const QString &line) { mResults.write(line.toUtf8() + '\n'); }
    /// As print(), and at once, for what somebody watches.
    void printNow(const QString &line);
    void printJson(const QJsonValue &value);
    void printBytes(const QByteArray &bytes) { mResults.write(bytes); }

    /// Says `reason` on the error device; returns `code`, so that a command can end with `return console.fail(…)`.
    ExitCode fail(ExitCode code, const QString &reason);

private:
    QIODevice &mResults;
    QIODevice &mErrors;
};
