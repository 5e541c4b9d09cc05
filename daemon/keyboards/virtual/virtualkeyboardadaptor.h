// SPDX-License-Identifier: MIT
// The D-Bus interface to the virtual keyboard: the object /VirtualKeyboard on the daemon's connection, described in
// docs/daemon-protocol.md. Owned by its VirtualKeyboardObject; main thread only.
#pragma once

#include "daemon/keyboards/virtual/virtualkeyboard.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QList>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class VirtualKeyboardObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// `keyboard` must outlive this.
    explicit VirtualKeyboardObject(VirtualKeyboard &keyboard, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots, properties and signals are the interface. A call that is not possible fails with
/// org.quillkestra.VirtualKeyboard.Error.NotInUse, …NotAttached or org.freedesktop.DBus.Error.InvalidArgs.
class VirtualKeyboardAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // DaemonProtocol::virtualKeyboardInterface; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.VirtualKeyboard")
    Q_PROPERTY(bool Attached READ isAttached)
    Q_PROPERTY(bool GameMode READ isGameModeOn)
    Q_PROPERTY(int Brightness READ brightness)
    Q_PROPERTY(QString Light READ light)
    Q_PROPERTY(QString OnTheFly READ onTheFly)
    Q_PROPERTY(QString CaptureClient READ captureClient)
    Q_PROPERTY(QString FirmwareVersion READ firmwareVersion)
    Q_PROPERTY(QList<uint> PressedKeys READ pressedKeys)
    Q_PROPERTY(QList<uint> SentKeys READ sentKeys)

public:
    VirtualKeyboardAdaptor(VirtualKeyboard &keyboard, VirtualKeyboardObject *object);

    [[nodiscard]] bool isAttached() const { return mKeyboard.isAttached(); }
    [[nodiscard]] bool isGameModeOn() const { return mKeyboard.isGameModeShown(); }
    [[nodiscard]] int brightness() const { return mKeyboard.shownBrightness(); }
    [[nodiscard]] QString light() const { return Backlight::colorText(mKeyboard.shownLight()); }
    [[nodiscard]] QString onTheFly() const { return onTheFlyStateName(mKeyboard.shownOnTheFly()); }
    [[nodiscard]] QString captureClient() const { return mKeyboard.shownCapture(); }
    [[nodiscard]] QString firmwareVersion() const { return mKeyboard.firmwareVersion(); }
    [[nodiscard]] QList<uint> pressedKeys() const;
    [[nodiscard]] QList<uint> sentKeys() const;

public Q_SLOTS:
    void Press(uint usagePage, uint usage) { finish(mKeyboard.press(usagePage, usage)); }
    void Release(uint usagePage, uint usage) { finish(mKeyboard.release(usagePage, usage)); }
    void ReleaseAll() { mKeyboard.releaseAll(); }
    void PressGameMode() { finish(mKeyboard.pressGameMode()); }
    void PressBrightnessUp() { finish(mKeyboard.changeBrightness(1)); }
    void PressBrightnessDown() { finish(mKeyboard.changeBrightness(-1)); }
    void PressMacroKey() { finish(mKeyboard.pressMacroKey()); }
    void SetBrightness(int level) { finish(mKeyboard.setBrightness(level)); }
    void Attach() { mKeyboard.attach(); }
    void Remove() { mKeyboard.remove(); }

Q_SIGNALS:
    void Sent(uint usagePage, uint usage, bool down);
    void LightChanged(const QString &color);
    void CaptureChanged(const QString &client);

private:
    void finish(const VirtualKeyboard::Outcome &outcome) const;

    VirtualKeyboard &mKeyboard;
    VirtualKeyboardObject *mObject;
};
