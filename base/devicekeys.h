// SPDX-License-Identifier: MIT
// Names for the machine's keyboards on the bus and on disk: the object, its errors, and the keys of its dictionaries.
// docs/daemon-protocol.md explains them.
#pragma once

#include <QLatin1StringView>

namespace DeviceKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name, and the names of its errors
inline constexpr Key objectPath{"/Devices"};
inline constexpr Key interfaceName{"org.quillkestra.Devices"};
inline constexpr Key unknownError{"org.quillkestra.Devices.Error.Unknown"};
inline constexpr Key refusedError{"org.quillkestra.Devices.Error.Refused"};
inline constexpr Key notKeptError{"org.quillkestra.Devices.Error.NotKept"};

// A keyboard; the first four are also in the file of the kept choice
inline constexpr Key vendor{"Vendor"};
inline constexpr Key product{"Product"};
inline constexpr Key serial{"Serial"};
inline constexpr Key path{"Path"};
inline constexpr Key id{"Id"};
inline constexpr Key name{"Name"};
inline constexpr Key kind{"Kind"};
inline constexpr Key nodes{"Nodes"};
inline constexpr Key isInUse{"InUse"};
inline constexpr Key problem{"Problem"}; // also in the status
inline constexpr Key obstacle{"Obstacle"};

// Values of the obstacle; empty if the keyboard can be used
inline constexpr Key obstacleNoRight{"no right"};
inline constexpr Key obstacleTaken{"taken"};
inline constexpr Key obstaclePointer{"pointer"};
inline constexpr Key obstacleElsewhere{"elsewhere"};
inline constexpr Key obstacleOther{"other"};

// Values of the kind
inline constexpr Key kindKeyboard{"keyboard"};
inline constexpr Key kindNumberPad{"number pad"};
inline constexpr Key kindKeyPad{"key pad"};

// The status
inline constexpr Key state{"State"}; // also of a keyboard
inline constexpr Key names{"Names"};
inline constexpr Key absent{"Absent"};
inline constexpr Key grabs{"Grabs"};
inline constexpr Key isRealTime{"RealTime"};
inline constexpr Key lostEvents{"LostEvents"};
inline constexpr Key latencyCount{"LatencyCount"};
inline constexpr Key latencyP50Us{"LatencyP50Us"};
inline constexpr Key latencyP99Us{"LatencyP99Us"};
inline constexpr Key latencyMaximumUs{"LatencyMaximumUs"};

// Values of the state
inline constexpr Key stateReleased{"released"};
inline constexpr Key stateAbsent{"absent"};
inline constexpr Key stateWaiting{"waiting"};
inline constexpr Key stateInUse{"in use"};
inline constexpr Key stateSuspended{"suspended"};
inline constexpr Key stateInactive{"inactive"};
inline constexpr Key stateFailed{"failed"};

// The file of the kept choice
inline constexpr Key devices{"Devices"};

} // namespace DeviceKeys
