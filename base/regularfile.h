// SPDX-License-Identifier: MIT
// Opens a file that somebody has chosen, without waiting for anybody. No state; any thread.
#pragma once

#include <QFile>

/// Opens `file` for reading when it is a regular file: a pipe would wait for somebody to write into it, and a device
/// may never end. Returns why not, for a person who knows the system; empty when it is open.
[[nodiscard]] QString openRegularFile(QFile &file);
