// SPDX-License-Identifier: MIT
// Opens a file that another person or program has chosen, without waiting for any of them. No state; any thread.
#pragma once

#include <QFile>

/// Opens `file` for reading when it is a regular file, or a link to one: reading a pipe would wait for a writer, and a
/// device may never end. It never waits, whatever takes the place of the file meanwhile. Returns why it is not open, in
/// the words of the system; empty when it is open.
[[nodiscard]] QString openRegularFile(QFile &file);

/// The bytes from the present position of `file` to its end, but `maximumBytes` at most. Takes memory for what is there
/// alone; file.error() tells whether reading failed.
[[nodiscard]] QByteArray readUpTo(QFile &file, qint64 maximumBytes);
