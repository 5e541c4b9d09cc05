// SPDX-License-Identifier: MIT
// The program of a process. No state; any thread.
#pragma once

#include <QFile>
#include <QString>

/// Absolute path of the executable of process `processId`; empty if the process does not exist or belongs to another
/// user.
[[nodiscard]] inline QString processExecutable(uint processId)
{
    return processId == 0 ? QString() : QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(processId));
}
