// SPDX-License-Identifier: MIT
#include "lighting/backlight.h"

#include "base/plistnumbers.h"
#include "base/settingskeys.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int full = 255; // of a component
constexpr qint64 spectrumSteps = Backlight::spectrumPeriod / Backlight::spectrumStep;

double share(const QVariantMap &color, SettingsKeys::Key key)
{
    const double value = color.value(key).toDouble();
    return std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0);
}

quint8 component(double share)
{
    return static_cast<quint8>(std::lround(share * full));
}

int number(const QVariantMap &profile, SettingsKeys::Key key)
{
    return PlistNumbers::integerValue(profile.value(key));
}

/// The step of the spectrum at `time`, and the beginning of that step.
struct SpectrumPosition
{
    qint64 step;
    Backlight::Time begin;
};

SpectrumPosition positionAt(Backlight::Time time)
{
    // The index is rounded down, also before the fixed moment.
    const qint64 count = time.count();
    const qint64 length = Backlight::spectrumStep.count();
    const qint64 index = count / length - (count % length < 0 ? 1 : 0);
    return {((index % spectrumSteps) + spectrumSteps) % spectrumSteps, index * Backlight::spectrumStep};
}

/// Returns a fully saturated colour, from red over green and blue back to red.
Backlight::Color spectrumColor(qint64 step)
{
    // Each component is full up to a distance of 1 from its centre, and falls to 0 at a distance of 2.
    const double hue = 6.0 * static_cast<double>(step) / static_cast<double>(spectrumSteps);
    const auto share = [hue](double centre) {
        const double distance = std::min(std::abs(hue - centre), 6 - std::abs(hue - centre));
        return static_cast<quint8>(std::lround(std::clamp(2 - distance, 0.0, 1.0) * full));
    };
    return {share(0), share(2), share(4)};
}

bool isLit(const Backlight::Settings &settings)
{
    return settings.isOn && settings.brightness > Backlight::minimumBrightness;
}

} // namespace

Backlight::Shares Backlight::sharesOf(const QVariantMap &color)
{
    return {.red = share(color, SettingsKeys::red),
            .green = share(color, SettingsKeys::green),
            .blue = share(color, SettingsKeys::blue)};
}

QVariantList Backlight::colorsOf(const QVariantMap &profile)
{
    const QVariant colors = profile.value(SettingsKeys::ledKbColors);
    // toList() would also turn a text into a list.
    return colors.typeId() == QMetaType::QVariantList ? colors.toList() : QVariantList();
}

std::optional<int> Backlight::effectOf(const QVariantMap &profile)
{
    const QVariant effect = profile.value(SettingsKeys::ledKbEffects);
    return effect.isValid() ? std::optional(PlistNumbers::integerValue(effect)) : std::nullopt;
}

bool Backlight::isGameLightingOn(const QVariantMap &profile)
{
    return number(profile, SettingsKeys::gameLightingOn) != 0;
}

Backlight::Settings Backlight::settingsOf(const QVariantMap &profile)
{
    Settings settings;
    settings.isOn = number(profile, SettingsKeys::backlightLed) != 0;
    settings.effect = effectOf(profile).value_or(fixedColorEffect);
    settings.brightness =
        std::clamp(number(profile, SettingsKeys::brightnessKbNormal), minimumBrightness, maximumBrightness);
    if (const QVariantList colors = colorsOf(profile); !colors.isEmpty()) {
        const Shares shares = sharesOf(colors.first().toMap());
        settings.color = {component(shares.red), component(shares.green), component(shares.blue)};
    }
    return settings;
}

QVariantMap Backlight::withoutLight(QVariantMap profile)
{
    for (const SettingsKeys::Key key :
         {SettingsKeys::backlightLed, SettingsKeys::ledKbColors, SettingsKeys::ledKbEffects,
          SettingsKeys::brightnessKbNormal, SettingsKeys::gameLightingOn})
        profile.remove(key);
    return profile;
}

Backlight::Color Backlight::colorAt(const Settings &settings, Time time)
{
    if (!isLit(settings))
        return {};
    const Color color =
        settings.effect == spectrumCyclingEffect ? spectrumColor(positionAt(time).step) : settings.color;
    const auto dimmed = [&settings](quint8 value) {
        return static_cast<quint8>((value * settings.brightness + maximumBrightness / 2) / maximumBrightness);
    };
    return {dimmed(color.red), dimmed(color.green), dimmed(color.blue)};
}

std::optional<Backlight::Time> Backlight::nextChange(const Settings &settings, Time time)
{
    if (!isLit(settings) || settings.effect != spectrumCyclingEffect)
        return {};
    return positionAt(time).begin + spectrumStep;
}

QString Backlight::colorText(Color color)
{
    return QString::asprintf("#%02x%02x%02x", color.red, color.green, color.blue);
}

std::optional<Backlight::Color> Backlight::colorFromText(const QString &text)
{
    constexpr qsizetype length = 7;
    if (text.size() != length || !text.startsWith(u'#'))
        return {};
    const QString digits = text.sliced(1);
    // Digits only: the conversion would also accept a sign or "0x".
    if (!std::ranges::all_of(digits, [](QChar digit) { return u"0123456789abcdefABCDEF"_s.contains(digit); }))
        return {};
    const uint value = digits.toUInt(nullptr, 16);
    return Color{static_cast<quint8>(value >> 16U), static_cast<quint8>(value >> 8U), static_cast<quint8>(value)};
}
