// SPDX-License-Identifier: MIT
// The keyboard that the daemon uses at the moment, and the way to its keys, which may be on another thread. Owned by
// the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/keyboards/keyboard.h"
#include "daemon/keyboards/keypath.h"

#include <QObject>
#include <QVariantMap>

/// In the same thread everything happens at once. What is told to keys on another thread happens in the order of the
/// calls, and what they tell comes later.
class CurrentKeyboard : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Lets go of everything on the keyboard before, whose light goes out, and nothing more is heard of it. `keyboard`
    /// must live longer than this, or be replaced; `document` as in apply().
    void use(Keyboard &keyboard, const QVariantMap &document);
    [[nodiscard]] const Keyboard *keyboard() const { return mKeyboard; } ///< null until use()

    /// Keys, light and game mode follow `document`, a completed settings document. `isOtherProfile`: another profile is
    /// active in it than before.
    void apply(const QVariantMap &document, bool isOtherProfile);
    void showOnTheFly(OnTheFlyState state) { mKeyboard->showOnTheFly(state); }
    void listen(KeyPath::Listening listening);
    /// Everything is let go of when this returns, and the keys do nothing more.
    void stop();

Q_SIGNALS:
    // As those of Keyboard
    void attachedChanged(bool isAttached);
    void gameModePressed();
    void macroKeyPressed();
    void brightnessChosen(int level);
    // As those of KeyPath
    void keyChanged(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    /// A key has switched to the profile at `index`, which may not exist. Unless apply() is called meanwhile, the keys
    /// go back to the profile before.
    void profileChosen(int index);
    void programChosen(const QString &program);

private:
    void connectKeyboard();
    void takeChoice(int index, KeyPath::Choice choice);
    void answer(bool isOtherProfile);
    void show(const QVariantMap &document);
    template <typename Function> void callKeys(Function function);
    template <typename Function> void callKeysAndWait(Function function);

    Keyboard *mKeyboard = nullptr;
    KeySettings mSettings;               // of the document
    KeyPath::Choice mLastChoice = 0;     // that was heard of
    KeyPath::Choice mAnsweredChoice = 0; // that the keys know to have been heard of
};
