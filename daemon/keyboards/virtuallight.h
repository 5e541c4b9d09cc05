// SPDX-License-Identifier: MIT
// The light of a keyboard as it goes on with time, without a device that shows it: all of the virtual keyboard's, and
// the colour that the LEDs of a real one follow. Owned by the keyboard; one thread, the daemon's.
#pragma once

#include "lighting/backlight.h"

#include <QObject>
#include <QTimer>

#include <functional>

/// Sleeps while nothing changes: the timer runs only as long as the light changes by itself and has power, and then
/// wakes once for each change.
class VirtualLight : public QObject
{
    Q_OBJECT

public:
    /// Time since any fixed moment; never goes backwards.
    using Clock = std::function<Backlight::Time()>;

    explicit VirtualLight(QObject *parent = nullptr); ///< with the machine's clock
    explicit VirtualLight(Clock clock, QObject *parent = nullptr);

    [[nodiscard]] const Backlight::Settings &settings() const { return mSettings; }
    /// What is to be seen now.
    [[nodiscard]] Backlight::Color color() const;
    /// How long it sleeps until it looks again; absent when it has nothing to wait for.
    [[nodiscard]] std::optional<Backlight::Time> sleep() const;

    void show(const Backlight::Settings &settings);
    void setPowered(bool isPowered);
    /// Looks whether the light has changed. The timer calls it.
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
