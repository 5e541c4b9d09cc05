// SPDX-License-Identifier: MIT
// The output of a command: results on one device, errors on another. Owned by the caller of runCommandLine().
#pragma once

#include "cli/exitcode.h"

#include <QByteArray>
#include <QIODevice>
#include <QJsonValue>
#include <QString>

/// The terminal gets no characters that it would obey (base/visibletext.h): names come from other people's files and
/// from keyboards.
class Console
{
public:
    /// Both devices must be open for writing and outlive the console.
    Console(QIODevice &results, QIODevice &errors) : mResults(results), mErrors(errors) {}

    /// One line of results, with "?" for the characters that are not shown.
    void print(const QString &line);
    /// As print(), but at once, for output that the user watches.
    void printNow(const QString &line);
    /// For programs; the same characters are escaped.
    void printJson(const QJsonValue &value);
    /// Unchanged.
    void printBytes(const QByteArray &bytes) { mResults.write(bytes); }

    /// Prints `reason`, one line as in print(), on the error device and returns `code`.
    ExitCode fail(ExitCode code, const QString &reason);

private:
    QIODevice &mResults;
    QIODevice &mErrors;
};
