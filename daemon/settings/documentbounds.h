// SPDX-License-Identifier: MIT
// Reduces a settings document that is too large or nested too deeply to its bounds. Pure functions; any thread.
#pragma once

#include <QVariantMap>

/// Removes values from `document` until it is within the bounds of settingsdocument.h; returns how many. First it
/// removes all values that are nested too deeply, then the one value without which the document fits. Among several
/// such values it prefers one that the program does not know, and takes a name last. If one is not enough, it removes
/// the largest ones. A removed name becomes empty. Records keep their places. The lists and records of `document` must
/// have their right types and no more than the allowed number of entries.
[[nodiscard]] int leaveOutTheLargest(QVariantMap &document);
