// SPDX-License-Identifier: MIT
// The program that a process runs. No state; any thread.
#pragma once

#include <QFile>
#include <QString>

/// Absolute path of the executable of process `processId`; empty when there is no such process or it is another user's.
[[nodiscard]] inline QString processExecutable(uint processId)
{
    return processId == 0 ? QString() : QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(processId));
}
