// SPDX-License-Identifier: MIT
// Dictionary keys of the settings document and of its records. They are on disk and on the wire: never rename one.
#pragma once

#include <QLatin1StringView>

namespace SettingsKeys {

using Key = QLatin1StringView;

// The document
inline constexpr Key profiles{"Profiles"};             // array of profile records
inline constexpr Key macros{"Macros"};                 // array of macro records
inline constexpr Key deviceSettings{"DeviceSettings"}; // dictionary
inline constexpr Key activeProfile{"ActiveProfile"};   // in DeviceSettings: index into Profiles
inline constexpr Key gameMode{"GameMode"};             // in DeviceSettings: boolean
inline constexpr Key lastMacroId{"LastMacroID"};       // in DeviceSettings: only the daemon uses it
inline constexpr Key profileOsdOn{"ProfileOSDOn"};     // in DeviceSettings and in a profile record: 0 or 1

// The factory resource Kestra.plist
inline constexpr Key defaultSettings{"Default Settings"};
inline constexpr Key deviceInfo{"Device Info"};
inline constexpr Key lastSelectedKey{"Last selected key"};

// A profile record
inline constexpr Key profileName{"ProfileName"};
inline constexpr Key keys{"Keys"}; // dictionary: key-code text -> mapping entry
inline constexpr Key appInfo{"AppInfo"};
inline constexpr Key application{"application"}; // in AppInfo, like the next three
inline constexpr Key executable{"executable"};
inline constexpr Key identifier{"identifier"};
inline constexpr Key signature{"signature"};
inline constexpr Key autoSwitchOn{"AutoSwitchOn"};

// The lighting group of a profile record
inline constexpr Key backlightLed{"BacklightLED"};
inline constexpr Key ledKbColors{"LEDKBColors"};
inline constexpr Key red{"Red"}; // in a colour: real, 0.0 to 1.0
inline constexpr Key green{"Green"};
inline constexpr Key blue{"Blue"};
inline constexpr Key ledKbEffects{"LEDKBEffects"};
inline constexpr Key brightnessKbNormal{"BrightnessKBNormal"};
inline constexpr Key gameLightingOn{"GameLightingOn"};
inline constexpr Key scrollLed{"ScrollLED"};

// A key mapping entry; "command" also in a macro event
inline constexpr Key command{"command"};
inline constexpr Key param1{"param1"};
inline constexpr Key param2{"param2"};

// A macro record and its events
inline constexpr Key macroName{"MacroName"};
inline constexpr Key macroId{"macroID"};
inline constexpr Key delay{"delay"}; // milliseconds
inline constexpr Key sequence{"sequence"};
inline constexpr Key page{"page"};
inline constexpr Key argument{"argument"};

} // namespace SettingsKeys
