// SPDX-License-Identifier: MIT
// A keyboard without hardware: its keys are pressed by calls, and what the computer would receive is a signal. The
// daemon's standard keyboard and the one that tests and demonstrations use. One thread, the daemon's.
#pragma once

#include "daemon/keyboards/keyboard.h"
#include "daemon/keyboards/keychannel.h"
#include "daemon/keyboards/virtuallight.h"

#include <QList>

#include <functional>

class VirtualKeyboard : public Keyboard
{
    Q_OBJECT

public:
    /// What became of a call; one that cannot be done changes nothing.
    /// `notInUse`: the daemon uses another keyboard.
    enum class Result { done, notInUse, notAttached, noSuchKey, noSuchBrightness };

    explicit VirtualKeyboard(QObject *parent = nullptr);
    explicit VirtualKeyboard(KeyClock clock, QObject *parent = nullptr);

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override;
    [[nodiscard]] bool isGameModeShown() const { return mIsGameModeShown; }
    [[nodiscard]] int shownBrightness() const { return mLight.settings().brightness; } ///< as in backlight.h
    [[nodiscard]] Backlight::Color shownLight() const { return mLight.color(); }       ///< at this moment
    /// How long the light sleeps until it changes by itself; absent when it does not.
    [[nodiscard]] std::optional<Backlight::Time> lightSleep() const { return mLight.sleep(); }
    [[nodiscard]] OnTheFlyState shownOnTheFly() const { return mShownOnTheFly; }
    [[nodiscard]] const QList<HidUsage> &pressedKeys() const { return mPressed; } ///< in the order of the presses
    [[nodiscard]] const QList<HidUsage> &sentKeys() const { return mSent; } ///< what the computer sees down, likewise

    [[nodiscard]] KeyPath &keys() override { return mKeys; }
    void showLight(const Backlight::Settings &settings) override { mLight.show(settings); }
    void showOnTheFly(OnTheFlyState state) override { mShownOnTheFly = state; }
    void showGameMode(bool isOn) override { mIsGameModeShown = isOn; }

    /// Pressing a key that is down, or releasing one that is not, does nothing. Page 7 has the keys, page 9 the
    /// buttons of the mouse, page 12 (Consumer) the two brightness keys, which act when they go down. A key can also be
    /// released while the keyboard is not in use: it may have gone down before.
    [[nodiscard]] Result press(uint usagePage, uint usage);
    [[nodiscard]] Result release(uint usagePage, uint usage);
    void releaseAll();
    [[nodiscard]] Result pressGameMode();
    [[nodiscard]] Result setBrightness(int level);
    [[nodiscard]] Result changeBrightness(int steps); ///< as far as the brightness goes
    [[nodiscard]] Result pressMacroKey();
    void attach();
    void remove();

Q_SIGNALS:
    void sent(uint usagePage, uint usage, bool down);
    void lightChanged(Backlight::Color color);

private:
    /// Its keys come from calls, and go into a signal.
    class Channel final : public KeyChannel
    {
    public:
        explicit Channel(VirtualKeyboard &keyboard) : mKeyboard(keyboard) {}

        void send(HidUsage usage, bool isDown) override { mKeyboard.send(usage, isDown); }
        void flush() override {} // a signal each

    private:
        VirtualKeyboard &mKeyboard;
    };

    void connectLight();
    [[nodiscard]] Result readiness() const;
    void send(HidUsage usage, bool isDown);
    void announce(HidUsage key, bool isDown);

    std::function<KeyPath::Time()> mNow;
    Channel mChannel;
    KeyPath mKeys;
    bool mIsAttached = true;
    bool mIsGameModeShown = false;
    OnTheFlyState mShownOnTheFly = OnTheFlyState::off;
    VirtualLight mLight;
    QList<HidUsage> mPressed;
    QList<HidUsage> mSent;
};
