// SPDX-License-Identifier: MIT
// Key lighting over time, without a device: all of the virtual keyboard's, and the colour for the LEDs of a real one.
// Owned by the keyboard; main thread only.
#pragma once

#include "lighting/backlight.h"

#include <QObject>
#include <QTimer>

#include <functional>

/// Sleeps while nothing changes. The timer runs only while the light is animated and has power, and wakes once for each
/// change.
class TimedLight : public QObject
{
    Q_OBJECT

public:
    /// Time since any fixed moment; never goes backwards.
    using Clock = std::function<Backlight::Time()>;

    explicit TimedLight(QObject *parent = nullptr); ///< with the machine's clock
    explicit TimedLight(Clock clock, QObject *parent = nullptr);

    [[nodiscard]] const Backlight::Settings &settings() const { return mSettings; }
    /// The visible colour now.
    [[nodiscard]] Backlight::Color color() const;
    /// The time until it looks again; absent if it has nothing to wait for.
    [[nodiscard]] std::optional<Backlight::Time> sleep() const;

    void show(const Backlight::Settings &settings);
    void setPowered(bool isPowered);
    /// Checks whether the light has changed. The timer calls it.
    void look();

Q_SIGNALS:
    void changed(Backlight::Color color);

private:
    Clock mClock;
    Backlight::Settings mSettings;
    Backlight::Color mAnnounced; // a light that was never set is off
    QTimer mTimer;
    bool mIsPowered = true;
};
