// SPDX-License-Identifier: MIT
// Runs the kestractl of the build, as a user would.
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStringList>

struct KestractlResult
{
    int exitCode = -1; ///< -1: did not end normally
    QByteArray output;
    QByteArray errors;

    [[nodiscard]] QString text() const { return QString::fromUtf8(output); }
    [[nodiscard]] QString errorText() const { return QString::fromUtf8(errors); }
    [[nodiscard]] QJsonDocument json() const { return QJsonDocument::fromJson(output); }
};

inline QString builtExecutable(const QString &name)
{
    return qEnvironmentVariable("KESTRA_BIN_DIR") + u'/' + name;
}

/// Starts kestractl and returns at once.
inline void startKestractl(QProcess &process, const QStringList &arguments, const QProcessEnvironment &environment)
{
    process.setProcessEnvironment(environment);
    process.start(builtExecutable(QStringLiteral("kestractl")), arguments);
}

inline KestractlResult finishedResult(QProcess &process)
{
    KestractlResult result;
    const bool hasEnded = process.state() == QProcess::NotRunning || process.waitForFinished(30000);
    if (hasEnded && process.error() == QProcess::UnknownError && process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

/// Runs kestractl to its end. The calling thread serves nothing meanwhile.
inline KestractlResult runKestractl(const QStringList &arguments,
                                    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    startKestractl(process, arguments, environment);
    return finishedResult(process);
}
