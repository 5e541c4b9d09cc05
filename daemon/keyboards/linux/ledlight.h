// SPDX-License-Identifier: MIT
// The key lighting of real keyboards on the kernel's LEDs. Owned by the keyboard; main thread only.
#pragma once

#include "daemon/keyboards/linux/keyboardleds.h"
#include "daemon/keyboards/timedlight.h"
#include "lighting/backlight.h"

#include <QObject>

#include <functional>
#include <optional>

/// Writes only changes, and sleeps while nothing changes. Without LEDs it only keeps the settings.
class LedLight : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        LedFolders folders;
        /// Sets the brightness of the LED `name` when this process has no right to its file.
        std::function<void(const QString &name, uint brightness)> setForeignBrightness;
    };

    explicit LedLight(Services services, QObject *parent = nullptr); ///< with the machine's clock
    LedLight(Services services, TimedLight::Clock clock, QObject *parent = nullptr);

    [[nodiscard]] const Backlight::Settings &settings() const { return mSettings; }
    [[nodiscard]] qsizetype ledCount() const { return mLeds.size(); }
    /// The time until it looks again; absent if it has nothing to wait for.
    [[nodiscard]] std::optional<Backlight::Time> sleep() const { return mColor.sleep(); }

    /// From now on shows the light on the LEDs of the keyboards with these event devices; other LEDs remain unchanged.
    /// Writes all values again, because a keyboard may have been plugged in or woken up.
    void useNodes(const QStringList &nodes);
    void show(const Backlight::Settings &settings);
    /// Checks whether the light has changed, as the timer of its TimedLight does.
    void look() { mColor.look(); }

private:
    struct Led
    {
        KeyboardLed led;
        std::optional<uint> brightness; // as last written
        QByteArray intensity;           // as last written
        bool hasColorFailed = false;    // at "multi_intensity"; not tried again
        bool hasFailed = false;         // at "brightness"; not tried again
        bool isForeign = false;         // setForeignBrightness sets "brightness"
    };

    void write();
    void writeIntensity(Led &led);
    void writeBrightness(Led &led);
    void setPowered();
    [[nodiscard]] uint brightnessOf(const KeyboardLed &led) const;
    [[nodiscard]] QByteArray intensityOf(const KeyboardLed &led) const;
    [[nodiscard]] double shareOf(KeyboardLed::Channel channel) const;

    Services mServices;
    Backlight::Settings mSettings;
    bool mIsSet = false; // until then the LEDs remain unchanged
    TimedLight mColor;   // the colour of the LEDs at full brightness; they have a separate brightness
    QList<Led> mLeds;
};
