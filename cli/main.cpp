// SPDX-License-Identifier: MIT
#include "cli/commandline.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestractl"));
    QFile results;
    QFile errors;
    if (!results.open(stdout, QIODevice::WriteOnly) || !errors.open(stderr, QIODevice::WriteOnly))
        return static_cast<int>(ExitCode::usage);
    Console console(results, errors);
    return static_cast<int>(runCommandLine(QCoreApplication::arguments().sliced(1), console));
}
