// SPDX-License-Identifier: MIT
// What the daemon needs of a keyboard. One thread, the daemon's.
#pragma once

#include "daemon/hidusage.h"
#include "daemon/ontheflyrecorder.h"
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

    /// Makes the computer see `usage` go down or up.
    virtual void send(HidUsage usage, bool isDown) = 0;
    // What the keyboard shows
    virtual void showLight(const Backlight::Settings &settings) = 0; ///< goes on by itself from there
    virtual void showOnTheFly(OnTheFlyRecorder::State state) = 0;
    virtual void showGameMode(bool isOn) = 0;

Q_SIGNALS:
    void attachedChanged(bool isAttached); ///< keys that were down are let go of by the daemon, without keyChanged()
    void keyChanged(HidUsage key, bool isDown);
    void gameModePressed();
    void macroKeyPressed();
    void brightnessChosen(int level); ///< by the keyboard's own keys
};
