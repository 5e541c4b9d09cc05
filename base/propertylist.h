// SPDX-License-Identifier: MIT
// Property lists as QVariant trees: reading every format, writing the binary one, and the files that contain them. No
// state; any thread may call every function.
//
// Shapes: dictionary QVariantMap, array QVariantList (written also from QStringList), string QString, boolean bool,
// integer int where it fits, else qlonglong, above INT64_MAX qulonglong, real double, data QByteArray, date QDateTime
// (UTC, milliseconds). Boolean, integer and real differ on the wire, and reading keeps their types. Nothing else has a
// property-list form: null and UID objects are refused in both directions.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <optional>

namespace PropertyList {

// Input comes from strangers (profile and macro files), so reading has limits. Writing has the same limits: the program
// can read everything that it writes. A full document has about 20 000 values in 72 kB. The work that a file causes
// grows no faster than its size. For this, xmloutline.h limits XML, and the objects of a binary file must not share
// bytes.

/// Bytes of a file or message, in any format.
inline constexpr qsizetype maximumInputBytes = 16 * 1024 * 1024;
/// Nested containers, the root included.
inline constexpr int maximumDepth = 512;
/// Values and dictionary keys that a walk over the tree meets. An object that the file holds once and refers to often
/// counts each time. Also the limit for objects in a binary file.
inline constexpr quint32 maximumNodes = 1'000'000;
/// Bytes of all strings (two per UTF-16 code unit) and data of the tree, counted in the same way.
inline constexpr quint32 maximumContentBytes = 64 * 1024 * 1024;
/// Seconds between a date and the start of 2001, in either direction (about 31 700 years).
inline constexpr double maximumDateSeconds = 1e12;

/// Returns `root` as a binary property list, version 1.0. Absent when a value in it has no property-list form or a
/// limit is exceeded. The same tree gives the same bytes. Dictionaries are written in the order of their keys' code
/// units, equal scalars of one type once, and sizes as small as possible.
[[nodiscard]] std::optional<QByteArray> writeBinary(const QVariant &root);

/// Returns the tree of a property list in binary, XML or old-style text form. Absent when `data` is empty, damaged or
/// exceeds a limit. If a dictionary repeats a key, the last value applies. An XML real out of the range of a double is
/// infinity or zero, with its sign. An old-style text is a dictionary, an array or data: a lone word is more likely
/// some other text file than a property list. Its dictionary may lack braces, as in a file of strings. It then has at
/// least one entry, and each entry ends with a semicolon.
[[nodiscard]] std::optional<QVariant> read(QByteArrayView data);

/// Returns the bytes of the regular file at `path`, for callers that must distinguish an unreadable file from a damaged
/// one. Returns at most one byte more than maximumInputBytes, which shows that the file is too large. The error is the
/// system's reason why the file could not be read.
[[nodiscard]] Result<QByteArray> readFileBytes(const QString &path);

/// Why a file has no dictionary.
struct ReadError : Error
{
    enum class Cause {
        unreadable,   ///< it is not a regular file or cannot be read; the message is the system's reason
        noDictionary, ///< it is larger than maximumInputBytes, or not a property list with a dictionary at its root
    };
    Cause cause;
};

/// Returns the dictionary in the file at `path`.
[[nodiscard]] Result<QVariantMap, ReadError> readPropertyListFile(const QString &path);

/// Replaces the file at `path` with `data`. At any moment, power loss included, the file has either the old content or
/// the new one. The error is the system's reason. After a failure the old file is untouched, unless only the last step
/// failed. The new file is then there, but the disk did not confirm its name, and a power loss could restore the old
/// one. Creates no folders.
[[nodiscard]] Result<void> writeFileAtomically(const QString &path, const QByteArray &data);

/// As writeFileAtomically(), with `dictionary` as a binary property list. Also fails if writeBinary() does.
[[nodiscard]] Result<void> writePropertyListFile(const QString &path, const QVariantMap &dictionary);

} // namespace PropertyList
