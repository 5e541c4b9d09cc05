// SPDX-License-Identifier: MIT
#include "base/filesizesignal.h"
#include "cli/commandline.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    makeFileSizeLimitAnError();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestractl"));
    QFile results;
    QFile errors;
    if (!results.open(stdout, QIODevice::WriteOnly) || !errors.open(stderr, QIODevice::WriteOnly))
        return static_cast<int>(ExitCode::usage);
    Console console(results, errors);
    const ExitCode code = runCommandLine(QCoreApplication::arguments().sliced(1), console);
    // A backup that a full disk cut short must not look like a good one.
    const bool isWritten = results.flush() && results.error() == QFileDevice::NoError;
    if (code == ExitCode::ok && !isWritten)
        return static_cast<int>(
            console.fail(ExitCode::noOutput, u"the results could not be written: "_s + results.errorString()));
    return static_cast<int>(code);
}
