// SPDX-License-Identifier: MIT
// What the keyboard's backlight shows: a function of a profile's lighting settings and the time. Values and pure
// functions; any thread.
#pragma once

#include <QString>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace Backlight {

using Time = std::chrono::milliseconds; // since any fixed moment

// Values of "LEDKBEffects". No other is known; a light whose effect is unknown stays in its own colour.
inline constexpr int fixedColorEffect = 0;
inline constexpr int spectrumCyclingEffect = 4;

// Values of "BrightnessKBNormal". Each step is a quarter of the full light.
inline constexpr int minimumBrightness = 0; // off
inline constexpr int maximumBrightness = 4; // bright

inline constexpr Time spectrumPeriod{12'000}; // once through all colours
inline constexpr Time spectrumStep{200};      // for which a colour of the spectrum stays

/// 0 to 255 each; black is a light that is off.
struct Color
{
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;

    bool operator==(const Color &) const = default;
    [[nodiscard]] bool isOff() const { return *this == Color(); }
};

/// The lighting group of a profile record, as far as it decides what the keys show.
struct Settings
{
    bool isOn = false;                  ///< "BacklightLED"
    Color color{255, 255, 255};         ///< of the fixed light, at full brightness
    int effect = fixedColorEffect;      ///< may be a value that is not known
    int brightness = minimumBrightness; ///< within the bounds above

    bool operator==(const Settings &) const = default;
};

/// Reads `profile` (a profile record). Absent numbers read as 0; a brightness outside the bounds as the nearest one;
/// a colour component outside 0.0 to 1.0 likewise; a profile without a colour is white.
[[nodiscard]] Settings settingsOf(const QVariantMap &profile);

/// `profile` (a profile record) without the entries of its light, which the keyboard's own keys change.
[[nodiscard]] QVariantMap withoutLight(QVariantMap profile);

/// What the light shows at `time`. Constant between two changes that nextChange() tells.
[[nodiscard]] Color colorAt(const Settings &settings, Time time);

/// When, after `time`, the light changes by itself; absent for one that stays as it is.
[[nodiscard]] std::optional<Time> nextChange(const Settings &settings, Time time);

/// "#rrggbb"
[[nodiscard]] QString colorText(Color color);

/// The colour that `text` ("#rrggbb", in small letters or capitals) means; absent for anything else.
[[nodiscard]] std::optional<Color> colorFromText(const QString &text);

} // namespace Backlight
