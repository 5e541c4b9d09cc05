// SPDX-License-Identifier: MIT
// The bus object for changes of macros that no command can carry. docs/daemon-protocol.md explains it.
#pragma once

#include <QLatin1StringView>

namespace MacrosKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name, and the names of its errors
inline constexpr Key objectPath{"/Macros"};
inline constexpr Key interfaceName{"org.quillkestra.Macros"};
inline constexpr Key goneError{"org.quillkestra.Macros.Error.Gone"};
inline constexpr Key changedError{"org.quillkestra.Macros.Error.Changed"};
inline constexpr Key invalidError{"org.quillkestra.Macros.Error.Invalid"};
inline constexpr Key notSavedError{"org.quillkestra.Macros.Error.NotSaved"};
inline constexpr Key busyError{"org.quillkestra.Macros.Error.Busy"};

inline constexpr Key replace{"Replace"}; // a method

} // namespace MacrosKeys
