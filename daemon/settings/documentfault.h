// SPDX-License-Identifier: MIT
// The strict check of a whole settings document that a user restores: nothing in it is repaired. Pure functions; any
// thread.
#pragma once

#include <QString>
#include <QVariantMap>

/// The place of the first fault in `document` and the fault, such as "Profiles > 2 > Keys > 4: not a dictionary"; empty
/// if there is none. Elements are counted from 1. Besides SettingsDocument::validate(), every value that the daemon
/// reads must have its type, and no two macros the same number.
[[nodiscard]] QString firstFaultOf(const QVariantMap &document);
