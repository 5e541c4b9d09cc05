// SPDX-License-Identifier: MIT
// What the daemon needs of a keyboard. One thread, the daemon's; its keys may go another way, see keys().
#pragma once

#include "daemon/keyboards/keypath.h"
#include "daemon/keyboards/ontheflystate.h"
#include "lighting/backlight.h"

#include <QObject>
#include <QString>

class Keyboard : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual bool isAttached() const = 0;
    [[nodiscard]] virtual QString firmwareVersion() const = 0;

    /// The way of its keys, maybe on another thread, which runs. Always the same object.
    [[nodiscard]] virtual KeyPath &keys() = 0;
    // What the keyboard shows
    virtual void showLight(const Backlight::Settings &settings) = 0; ///< goes on by itself from there
    virtual void showOnTheFly(OnTheFlyState state) = 0;
    virtual void showGameMode(bool isOn) = 0;

Q_SIGNALS:
    void attachedChanged(bool isAttached); ///< what its keys have begun has ended: KeyChannel::emptied()
    void gameModePressed();
    void macroKeyPressed();
    void brightnessChosen(int level); ///< by the keyboard's own keys
};
