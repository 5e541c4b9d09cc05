// SPDX-License-Identifier: MIT
// A keyboard without hardware: calls press its keys, and a signal carries the output for the computer. It is the
// daemon's default keyboard; tests and demonstrations use it. Main thread only.
#pragma once

#include "base/result.h"
#include "daemon/keyboards/keyboard.h"
#include "daemon/keyboards/keychannel.h"
#include "daemon/keyboards/timedlight.h"

#include <QList>

#include <functional>

class VirtualKeyboard : public Keyboard
{
    Q_OBJECT

public:
    /// Why a call changes nothing. `notInUse`: the daemon uses another keyboard.
    enum class Refusal { notInUse, notAttached, noSuchKey, noSuchBrightness };
    using Outcome = Result<void, Refusal>;

    explicit VirtualKeyboard(QObject *parent = nullptr);
    explicit VirtualKeyboard(KeyClock clock, QObject *parent = nullptr);

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override;
    [[nodiscard]] bool isGameModeShown() const { return mIsGameModeShown; }
    [[nodiscard]] int shownBrightness() const { return mLight.settings().brightness; } ///< as in backlight.h
    [[nodiscard]] Backlight::Color shownLight() const { return mLight.color(); }       ///< at this moment
    /// The time until the light changes by itself; absent if it does not.
    [[nodiscard]] std::optional<Backlight::Time> lightSleep() const { return mLight.sleep(); }
    [[nodiscard]] OnTheFlyState shownOnTheFly() const { return mShownOnTheFly; }
    [[nodiscard]] const QString &shownCapture() const { return mShownCapture; }   ///< the client's port; empty for none
    [[nodiscard]] const QList<HidUsage> &pressedKeys() const { return mPressed; } ///< in the order of the presses
    [[nodiscard]] const QList<HidUsage> &sentKeys() const
    {
        return mSent;
    } ///< the keys that the computer sees down, in order

    [[nodiscard]] KeyPath &keys() override { return mKeys; }
    void showLight(const Backlight::Settings &settings) override { mLight.show(settings); }
    void showOnTheFly(OnTheFlyState state) override { mShownOnTheFly = state; }
    void showGameMode(bool isOn) override { mIsGameModeShown = isOn; }
    void showCapture(const QString &client) override;

    /// Ignores a press of a key that is down and a release of one that is not. Page 7 has the keys, page 9 the mouse
    /// buttons. Page 12 (Consumer) has the two brightness keys, which act on the press. A key can also be released
    /// while the keyboard is not in use, because it may have gone down before.
    [[nodiscard]] Outcome press(uint usagePage, uint usage);
    [[nodiscard]] Outcome release(uint usagePage, uint usage);
    void releaseAll();
    [[nodiscard]] Outcome pressGameMode();
    [[nodiscard]] Outcome setBrightness(int level);
    [[nodiscard]] Outcome changeBrightness(int steps); ///< stops at the limits of the brightness
    [[nodiscard]] Outcome pressMacroKey();
    void attach();
    void remove();

Q_SIGNALS:
    void sent(uint usagePage, uint usage, bool down);
    void lightChanged(Backlight::Color color);
    void captureChanged(const QString &client); ///< as in showCapture()

private:
    /// Calls press its keys; a signal carries their output.
    class Channel final : public KeyChannel
    {
    public:
        explicit Channel(VirtualKeyboard &keyboard) : mKeyboard(keyboard) {}

        void send(HidUsage usage, bool isDown) override { mKeyboard.send(usage, isDown); }
        void flush() override {} // each key is a signal of its own

    private:
        VirtualKeyboard &mKeyboard;
    };

    void connectLight();
    [[nodiscard]] Outcome readiness() const;
    void send(HidUsage usage, bool isDown);
    void announce(HidUsage key, bool isDown);

    std::function<KeyPath::Time()> mNow;
    Channel mChannel;
    KeyPath mKeys;
    bool mIsAttached = true;
    bool mIsGameModeShown = false;
    OnTheFlyState mShownOnTheFly = OnTheFlyState::off;
    QString mShownCapture;
    TimedLight mLight;
    QList<HidUsage> mPressed;
    QList<HidUsage> mSent;
};
