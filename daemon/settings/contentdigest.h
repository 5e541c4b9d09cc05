// SPDX-License-Identifier: MIT
// A digest of bytes that distinguishes the contents of files, the same on every machine. It does not resist
// forgery: a program that can write the files can do worse. No state; any thread.
#pragma once

#include <QByteArrayView>

/// Fast: about as long as reading the bytes from memory.
[[nodiscard]] quint64 contentDigest(QByteArrayView bytes);
