// SPDX-License-Identifier: MIT
// The key lighting, as a function of a profile's lighting settings and the time. Values and pure functions; any thread.
#pragma once

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace Backlight {

using Time = std::chrono::milliseconds; // since any fixed moment

// Values of "LEDKBEffects". All others are unknown; a light with an unknown effect keeps its own colour.
inline constexpr int fixedColorEffect = 0;
inline constexpr int spectrumCyclingEffect = 4;

// Values of "BrightnessKBNormal". Each step is a quarter of the full light.
inline constexpr int minimumBrightness = 0; // off
inline constexpr int maximumBrightness = 4; // bright

inline constexpr Time spectrumPeriod{12'000}; // one cycle through all colours
inline constexpr Time spectrumStep{200};      // duration of each colour of the spectrum

/// 0 to 255 each; black is a light that is off.
struct Color
{
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;

    bool operator==(const Color &) const = default;
    [[nodiscard]] bool isOff() const { return *this == Color(); }
};

/// The part of a profile record's lighting group that decides the light of the keys.
struct Settings
{
    bool isOn = false;                  ///< "BacklightLED"
    Color color{255, 255, 255};         ///< of the fixed light, at full brightness
    int effect = fixedColorEffect;      ///< may be an unknown value
    int brightness = minimumBrightness; ///< within the bounds above

    bool operator==(const Settings &) const = default;
};

/// A colour as the document has it: each component 0.0 to 1.0.
struct Shares
{
    double red = 0;
    double green = 0;
    double blue = 0;
};

/// Reads `color`, a colour of "LEDKBColors". A component outside 0.0 to 1.0 reads as the nearest one, a component that
/// is not a number as 0.
[[nodiscard]] Shares sharesOf(const QVariantMap &color);

/// Returns "LEDKBColors" of `profile` (a profile record), of which the first colour is that of the keys; empty if it is
/// absent or not an array.
[[nodiscard]] QVariantList colorsOf(const QVariantMap &profile);

/// Returns "LEDKBEffects" of `profile`; absent if the profile has none.
[[nodiscard]] std::optional<int> effectOf(const QVariantMap &profile);

/// Whether "GameLightingOn" of `profile` is a number other than 0, or true.
[[nodiscard]] bool isGameLightingOn(const QVariantMap &profile);

/// Reads `profile` (a profile record). Absent numbers read as 0. A brightness outside the bounds reads as the nearest
/// one, and so does a colour component outside 0.0 to 1.0. A profile without a colour is white.
[[nodiscard]] Settings settingsOf(const QVariantMap &profile);

/// Returns `profile` (a profile record) without the entries of its lighting, which the keyboard's own keys change.
[[nodiscard]] QVariantMap withoutLight(QVariantMap profile);

/// Returns the light's colour at `time`. It is constant between two changes that nextChange() returns.
[[nodiscard]] Color colorAt(const Settings &settings, Time time);

/// Returns the time of the light's next change after `time`; absent for a light that never changes.
[[nodiscard]] std::optional<Time> nextChange(const Settings &settings, Time time);

/// Returns "#rrggbb".
[[nodiscard]] QString colorText(Color color);

/// Returns the colour that `text` ("#rrggbb", in small letters or capitals) means; absent for anything else.
[[nodiscard]] std::optional<Color> colorFromText(const QString &text);

} // namespace Backlight
