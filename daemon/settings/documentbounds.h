// SPDX-License-Identifier: MIT
// Brings a settings document that is too large, or nested too deeply, within its bounds. Pure functions; any thread.
#pragma once

#include <QVariantMap>

/// Leaves values out of `document` until it is within the bounds of settingsdocument.h, and returns how many: all that
/// are nested too deeply; then the one value without which the document fits, or else the largest ones. A value that
/// the program does not know goes before one that it knows; a name goes last, and becomes empty. Records stay in their
/// places. The lists and records of `document` must have their right types and be no more than allowed.
[[nodiscard]] int leaveOutTheLargest(QVariantMap &document);
