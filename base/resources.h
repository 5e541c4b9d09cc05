// SPDX-License-Identifier: MIT
// Locations of the files that ship with the program.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// Returns the folder of the installed resources: $QUILL_KESTRA_RESOURCES when set, else `resources` beside the
/// executable (build tree), else `../share/quill-kestra` from it (installation).
[[nodiscard]] QString resourceFolder();

/// Returns the full path of the resource `fileName` in resourceFolder().
[[nodiscard]] QString resourcePath(const QString &fileName);

/// Returns the full path of Kestra.plist, which holds the factory settings and the last selected key. If the installed
/// file cannot be written, returns a per-user copy ($XDG_DATA_HOME/quill-kestra/Kestra.plist), which it makes on first
/// use. It makes the copy again when the copy is damaged, has no factory settings or, after an update, has others than
/// the installed file. The new copy keeps the last selected key if it can be read. When the copy cannot be written, the
/// older one stays in use, or the installed file if there is no copy. Reads both files at each call; reports nothing.
[[nodiscard]] QString kestraPlistPath();

/// Returns the factory settings in the Kestra.plist at `path`, unchanged. Empty when it has none, absent when it cannot
/// be read.
[[nodiscard]] std::optional<QVariantMap> readDefaultSettings(const QString &path);
