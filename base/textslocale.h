// SPDX-License-Identifier: MIT
// The form of dates and numbers that belongs to the installed texts (text.h).
#pragma once

#include <QLocale>

/// That of the system, unless its language is not that of the texts: there may be no string table for it.
[[nodiscard]] QLocale textsLocale();
