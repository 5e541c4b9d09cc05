// SPDX-License-Identifier: MIT
// The bus object with the calls for macros: its name, its methods, its signals and its errors.
// docs/daemon-protocol.md explains them.
#pragma once

#include <QLatin1StringView>

namespace MacrosKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name
inline constexpr Key objectPath{"/Macros"};
inline constexpr Key interfaceName{"org.quillkestra.Macros"};

// The names of its errors
inline constexpr Key goneError{"org.quillkestra.Macros.Error.Gone"};
inline constexpr Key changedError{"org.quillkestra.Macros.Error.Changed"};
inline constexpr Key invalidError{"org.quillkestra.Macros.Error.Invalid"};
inline constexpr Key notSavedError{"org.quillkestra.Macros.Error.NotSaved"};
inline constexpr Key busyError{"org.quillkestra.Macros.Error.Busy"};
inline constexpr Key emptyError{"org.quillkestra.Macros.Error.Empty"};
inline constexpr Key tooManyError{"org.quillkestra.Macros.Error.TooMany"};
inline constexpr Key notRecordingError{"org.quillkestra.Macros.Error.NotRecording"};

inline constexpr Key replace{"Replace"}; // a method

// The methods and signals of a try
inline constexpr Key tryMethod{"Try"};
inline constexpr Key stopTryMethod{"StopTry"};
inline constexpr Key triedSignal{"Tried"};
inline constexpr Key tryEndedSignal{"TryEnded"};

// Why a try has ended
inline constexpr Key tryFinished{"finished"};
inline constexpr Key tryStopped{"stopped"};
inline constexpr Key tryChanged{"changed"};
inline constexpr Key tryAtLimit{"limit"};

inline constexpr Key recordButtonMethod{"RecordButton"};

} // namespace MacrosKeys
