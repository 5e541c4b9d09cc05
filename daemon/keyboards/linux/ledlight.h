// SPDX-License-Identifier: MIT
// The light of real keyboards, shown on the kernel's LEDs. Owned by the keyboard; one thread, the daemon's.
#pragma once

#include "daemon/keyboards/linux/keyboardleds.h"
#include "daemon/keyboards/virtuallight.h"
#include "lighting/backlight.h"

#include <QObject>

#include <functional>
#include <optional>

/// Writes only what has changed, and sleeps while nothing changes. Without LEDs the settings are just kept.
class LedLight : public QObject
{
    Q_OBJECT

public:
    struct Outlets
    {
        LedFolders folders;
        /// Sets the brightness of the LED `name` where this process has no right to its file.
        std::function<void(const QString &name, uint brightness)> setForeignBrightness;
    };

    explicit LedLight(Outlets outlets, QObject *parent = nullptr); ///< with the machine's clock
    LedLight(Outlets outlets, VirtualLight::Clock clock, QObject *parent = nullptr);

    [[nodiscard]] const Backlight::Settings &settings() const { return mSettings; }
    [[nodiscard]] qsizetype ledCount() const { return mLeds.size(); }
    /// How long it sleeps until it looks again; absent when it has nothing to wait for.
    [[nodiscard]] std::optional<Backlight::Time> sleep() const { return mColor.sleep(); }

    /// Shows the light on the LEDs of the keyboards with these event nodes from now on; the others stay as they are.
    /// Everything is written anew, as for a keyboard that has been plugged in or woken up.
    void useNodes(const QStringList &nodes);
    void show(const Backlight::Settings &settings);
    /// Looks whether the light has changed, as the timer of its VirtualLight does.
    void look() { mColor.look(); }

private:
    struct Led
    {
        KeyboardLed led;
        std::optional<uint> brightness; // as written last
        QByteArray intensity;           // likewise
        bool hasColorFailed = false;    // at "multi_intensity": not tried again
        bool hasFailed = false;         // at "brightness", likewise
        bool isForeign = false;         // "brightness" is set by somebody who may
    };

    void write();
    void writeIntensity(Led &led);
    void writeBrightness(Led &led);
    void setPowered();
    [[nodiscard]] uint brightnessOf(const KeyboardLed &led) const;
    [[nodiscard]] QByteArray intensityOf(const KeyboardLed &led) const;
    [[nodiscard]] double shareOf(KeyboardLed::Channel channel) const;

    Outlets mOutlets;
    Backlight::Settings mSettings;
    bool mIsSet = false; // until then the LEDs stay as they are
    VirtualLight mColor; // what the LEDs show, but at full brightness, which they have apart
    QList<Led> mLeds;
};
