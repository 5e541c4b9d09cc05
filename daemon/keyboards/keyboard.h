// SPDX-License-Identifier: MIT
// The daemon's interface to a keyboard. Main thread only; its keys may live on another thread, see keys().
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

    /// The path of its keys, possibly on another thread, which runs. Always the same object.
    [[nodiscard]] virtual KeyPath &keys() = 0;
    // Display on the keyboard
    virtual void showLight(const Backlight::Settings &settings) = 0; ///< animates without further calls
    virtual void showOnTheFly(OnTheFlyState state) = 0;
    virtual void showGameMode(bool isOn) = 0;
    /// The port of the client that captures or records the keys; empty for none. A real keyboard shows nothing.
    virtual void showCapture(const QString &) {}

Q_SIGNALS:
    void attachedChanged(bool isAttached); ///< its keys have released everything: KeyChannel::keysLost()
    void gameModePressed();
    void brightnessChosen(int level); ///< by the keyboard's own keys
};
