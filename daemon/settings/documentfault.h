// SPDX-License-Identifier: MIT
// The strict check of a whole settings document that a user restores: nothing in it is repaired. Pure functions; any
// thread.
#pragma once

#include <QString>
#include <QVariantMap>

/// The place of the first fault in `document` and the fault, such as "Profiles > 2 > Keys > 4: not a dictionary"; empty
/// if there is none. Elements are counted from 1. Finds what SettingsDocument::validate() refuses, and what
/// SettingsDocument::completed() would replace, such as two macros with one number. All that the daemon has stored is
/// therefore accepted, also values of other types that a client has put into a profile.
[[nodiscard]] QString firstFaultOf(const QVariantMap &document);
