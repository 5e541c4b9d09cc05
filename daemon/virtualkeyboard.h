// SPDX-License-Identifier: MIT
// A keyboard without hardware: its keys are pressed by calls, and what the computer would receive is a signal. The
// daemon's standard keyboard and the one that tests and demonstrations use. One thread, the daemon's.
#pragma once

#include "daemon/keyboard.h"

#include <QList>

class VirtualKeyboard : public Keyboard
{
    Q_OBJECT

public:
    /// What became of a call; one that cannot be done changes nothing.
    enum class Result { done, notAttached, noSuchKey, noSuchBrightness };

    using Keyboard::Keyboard;

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override;
    [[nodiscard]] bool isGameModeShown() const { return mIsGameModeShown; }
    [[nodiscard]] int shownBrightness() const { return mShownBrightness; }
    [[nodiscard]] const QList<HidUsage> &pressedKeys() const { return mPressed; } ///< in the order of the presses
    [[nodiscard]] const QList<HidUsage> &sentKeys() const { return mSent; } ///< what the computer sees down, likewise

    void send(HidUsage usage, bool isDown) override;
    void showBrightness(int level) override { mShownBrightness = level; }
    void showGameMode(bool isOn) override { mIsGameModeShown = isOn; }

    /// Pressing a key that is down, or releasing one that is not, does nothing.
    [[nodiscard]] Result press(uint usagePage, uint usage);
    [[nodiscard]] Result release(uint usagePage, uint usage);
    void releaseAll();
    [[nodiscard]] Result pressGameMode();
    [[nodiscard]] Result setBrightness(int level);
    [[nodiscard]] Result changeBrightness(int steps); ///< within the bounds of SettingsDocument
    void attach();
    void remove();

Q_SIGNALS:
    void sent(uint usagePage, uint usage, bool down);

private:
    bool mIsAttached = true;
    bool mIsGameModeShown = false;
    int mShownBrightness = 0;
    QList<HidUsage> mPressed;
    QList<HidUsage> mSent;
};
