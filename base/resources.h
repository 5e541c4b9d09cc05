// SPDX-License-Identifier: MIT
// Where the files that ship with the program are.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// Folder of the installed resources: $QUILL_KESTRA_RESOURCES when set, else `resources` beside the executable
/// (build tree), else `../share/quill-kestra` from it (installation).
[[nodiscard]] QString resourceFolder();

/// Full path of the resource `fileName` in resourceFolder().
[[nodiscard]] QString resourcePath(const QString &fileName);

/// Full path of Kestra.plist, which holds the factory settings and the last selected key. Where the installed file
/// cannot be written, a per-user copy ($XDG_DATA_HOME/quill-kestra/Kestra.plist) takes its place. The copy is made here
/// on first use, and made anew when it is damaged, holds no factory settings or, after an update, holds others than the
/// installed file; the last selected key is kept where it can be read. When the copy cannot be written, the older one
/// stays in use, without one the installed file. Reads both files at each call; nothing is reported.
[[nodiscard]] QString kestraPlistPath();

/// The factory settings in the Kestra.plist at `path`, as they stand there; empty when it holds none, absent when it
/// cannot be read.
[[nodiscard]] std::optional<QVariantMap> readDefaultSettings(const QString &path);
