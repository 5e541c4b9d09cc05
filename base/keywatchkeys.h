// SPDX-License-Identifier: MIT
// Names of the daemon's key watch on the bus, and the words of the lines in its pipe. docs/daemon-protocol.md explains
// them.
#pragma once

#include <QLatin1StringView>

namespace KeyWatchKeys {

using Key = QLatin1StringView;

inline constexpr Key objectPath{"/KeyWatch"};
inline constexpr Key interfaceName{"org.quillkestra.KeyWatch"};
inline constexpr Key busyError{"org.quillkestra.KeyWatch.Error.Busy"};
inline constexpr Key noQuestionError{"org.quillkestra.KeyWatch.Error.NoQuestion"};
inline constexpr Key refusedError{"org.quillkestra.KeyWatch.Error.Refused"};

inline constexpr Key keyboard{"keyboard"};
inline constexpr Key computer{"computer"};
inline constexpr Key usage{"usage"};
inline constexpr Key event{"event"};
inline constexpr Key lost{"lost"};
inline constexpr Key end{"end"};

} // namespace KeyWatchKeys
