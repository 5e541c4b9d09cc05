// SPDX-License-Identifier: MIT
// A keyboard without hardware: its keys are pressed through D-Bus, and what the computer would receive is a signal.
// The daemon's standard keyboard and the one that tests and demonstrations use. One thread, the daemon's.
#pragma once

#include "daemon/keyboard.h"

#include <QDBusContext>
#include <QList>

class QDBusConnection;

/// The object /VirtualKeyboard; docs/daemon-protocol.md describes it. The slots below are its D-Bus methods, each of
/// which fails with the error NotAttached or InvalidArgs instead of doing something impossible.
class VirtualKeyboard : public Keyboard, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.VirtualKeyboard")
    Q_PROPERTY(bool Attached READ isAttached SCRIPTABLE true)
    Q_PROPERTY(bool GameMode READ isGameModeShown SCRIPTABLE true)
    Q_PROPERTY(int Brightness READ shownBrightness SCRIPTABLE true)
    Q_PROPERTY(QString FirmwareVersion READ firmwareVersion SCRIPTABLE true)
    Q_PROPERTY(QList<uint> PressedKeys READ pressedKeys SCRIPTABLE true)
    Q_PROPERTY(QList<uint> SentKeys READ sentKeys SCRIPTABLE true)

public:
    using Keyboard::Keyboard;

    /// Puts the object on `connection`; false when that failed.
    [[nodiscard]] bool registerOn(QDBusConnection connection);

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override;
    [[nodiscard]] bool isGameModeShown() const { return mIsGameModeShown; }
    [[nodiscard]] int shownBrightness() const { return mShownBrightness; }
    [[nodiscard]] QList<uint> pressedKeys() const; ///< as HidUsage::extended(), in the order of the presses
    [[nodiscard]] QList<uint> sentKeys() const;    ///< what the computer sees down, likewise

    void send(HidUsage usage, bool isDown) override;
    void showBrightness(int level) override { mShownBrightness = level; }
    void showGameMode(bool isOn) override { mIsGameModeShown = isOn; }

public Q_SLOTS:
    Q_SCRIPTABLE void Press(uint usagePage, uint usage);
    Q_SCRIPTABLE void Release(uint usagePage, uint usage);
    Q_SCRIPTABLE void ReleaseAll();
    Q_SCRIPTABLE void PressGameMode();
    Q_SCRIPTABLE void PressBrightnessUp();
    Q_SCRIPTABLE void PressBrightnessDown();
    Q_SCRIPTABLE void SetBrightness(int level);
    Q_SCRIPTABLE void Attach();
    Q_SCRIPTABLE void Remove();

Q_SIGNALS:
    Q_SCRIPTABLE void Sent(uint usagePage, uint usage, bool down);

private:
    [[nodiscard]] bool fail(const char *errorName, const QString &text) const; ///< always false
    [[nodiscard]] bool checkAttached() const;
    [[nodiscard]] bool checkKey(uint usagePage, uint usage) const;
    void chooseBrightness(int level);

    bool mIsAttached = true;
    bool mIsGameModeShown = false;
    int mShownBrightness = 0;
    QList<HidUsage> mPressed;
    QList<HidUsage> mSent;
};
