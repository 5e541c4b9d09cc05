// SPDX-License-Identifier: MIT
// Opens a file that another person or program has chosen, without waiting for either. No state; any thread.
#pragma once

#include "base/result.h"

#include <QFile>

/// Opens `file` for reading if it is a regular file or a link to one. Reading a pipe would wait for a writer, and a
/// device may never end. Never waits, even if something else replaces the file meanwhile. The error is the system's
/// reason why `file` is not open.
[[nodiscard]] Result<void> openRegularFile(QFile &file);

/// Returns the bytes from the present position of `file` to its end, at most `maximumBytes`. Allocates memory only for
/// bytes that exist; file.error() shows whether reading failed.
[[nodiscard]] QByteArray readUpTo(QFile &file, qint64 maximumBytes);
