// SPDX-License-Identifier: MIT
// Property lists as QVariant trees: reading every format, writing the binary one, and the files they live in.
// No state; every function may be called from any thread.
//
// Shapes: dictionary QVariantMap, array QVariantList (written also from QStringList), string QString, boolean bool,
// integer int where it fits, else qlonglong, above INT64_MAX qulonglong, real double, data QByteArray, date QDateTime
// (UTC, milliseconds). Boolean, integer and real are different on the wire and are read back as what they were.
// Nothing else has a property-list form: null and UID objects are refused in both directions.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <optional>

namespace PropertyList {

// Input comes from strangers (profile and macro files), so reading is bounded. Writing keeps the same bounds: what is
// written here can be read here. A full document has about 20 000 values in 72 kB. The work that a file causes grows
// with its size and no faster: xmloutline.h limits XML, and the objects of a binary file must not share bytes.

/// Bytes of a file or message, in any format.
inline constexpr qsizetype maximumInputBytes = 16 * 1024 * 1024;
/// Containers inside each other, the root included.
inline constexpr int maximumDepth = 512;
/// Values and dictionary keys of the tree as somebody walking it meets them: an object that the file holds once and
/// refers to often counts each time. Also the limit for objects in a binary file.
inline constexpr quint32 maximumNodes = 1'000'000;
/// Bytes of all strings (two a UTF-16 code unit) and data of the tree, counted in the same way.
inline constexpr quint32 maximumContentBytes = 64 * 1024 * 1024;
/// Seconds between a date and the start of 2001, in either direction (about 31 700 years).
inline constexpr double maximumDateSeconds = 1e12;

/// `root` as a binary property list, version 1.0. The same tree gives the same bytes: dictionaries are written in the
/// order of their keys' code units, equal scalars of one type are written once, sizes are the smallest that do.
/// Absent when a value in it has no property-list form or a limit is exceeded.
[[nodiscard]] std::optional<QByteArray> writeBinary(const QVariant &root);

/// The tree of a property list in binary, XML or old-style text form. Absent when `data` is none, is damaged or exceeds
/// a limit. When a dictionary repeats a key, the last one counts. A real in XML that is out of the range of a double is
/// infinity or zero, with its sign. An old-style text is a dictionary, an array or data: a lone word is more likely
/// some other text file than a property list. Its dictionary may stand without braces, as in a file of strings; each
/// entry ends with a semicolon then, and there is at least one.
[[nodiscard]] std::optional<QVariant> read(QByteArrayView data);

/// What reading a file came to.
struct FileBytes
{
    QByteArray data; ///< its bytes, up to one more than maximumInputBytes: a file that is too large shows by that
    QString error;   ///< why they could not be read, as the system says it; empty when they could
};

/// The bytes of the regular file at `path`, for a caller who must tell a file that cannot be read from one that is
/// damaged.
[[nodiscard]] FileBytes readFileBytes(const QString &path);

/// The dictionary in the file at `path`. Absent when it is no regular file, cannot be read, is larger than
/// maximumInputBytes, or is not a property list with a dictionary at its root.
[[nodiscard]] std::optional<QVariantMap> readPropertyListFile(const QString &path);

/// Replaces the file at `path` by `data`, so that at any moment, power loss included, it has either the old content or
/// the new one. False when that failed; the old file is untouched then, unless only the last step failed: the new one
/// is there, but the disk did not confirm its name, and the old one could be back after a power loss. Makes no folders.
/// `problem`: is given the system's reason for a failure.
[[nodiscard]] bool writeFileAtomically(const QString &path, const QByteArray &data, QString *problem = nullptr);

} // namespace PropertyList
