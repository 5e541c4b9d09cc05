// SPDX-License-Identifier: MIT
// The document with which the daemon starts. No state; the thread of the store.
#pragma once

#include <QVariantMap>

class SettingsStore;

struct StartDocument
{
    QVariantMap document;   ///< valid and completed
    bool isMinimal = false; ///< neither settings nor factory settings could be read
};

/// Returns the document in `store`, otherwise the factory settings, otherwise a document with one profile that maps
/// nothing. Logs which of the latter two it returns. `store` must be open; it then reports problems with its files.
[[nodiscard]] StartDocument readStartDocument(SettingsStore &store);
