// SPDX-License-Identifier: MIT
// The keyboard in use, and the connection to its keys, which may be on another thread. Owned by the DeviceDaemon; main
// thread only.
#pragma once

#include "daemon/keyboards/keyboard.h"
#include "daemon/keyboards/keypath.h"

#include <QObject>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <vector>

/// Calls and signals are direct if the keys are on the same thread. Otherwise they are queued: calls reach the keys in
/// order, and signals of the keys arrive later.
class CurrentKeyboard : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Releases everything on the previous keyboard, turns its lighting off and ignores its later signals. `keyboard`
    /// must outlive this or be replaced; `document` as in apply().
    void use(Keyboard &keyboard, const QVariantMap &document);
    [[nodiscard]] const Keyboard *keyboard() const { return mKeyboard; } ///< null until use()

    /// Keys, key lighting and game mode follow `document`, a completed settings document. `isOtherProfile`: it has
    /// another active profile than before.
    void apply(const QVariantMap &document, bool isOtherProfile);
    void showOnTheFly(OnTheFlyState state) { mKeyboard->showOnTheFly(state); }
    /// `listening` without its `lastMacroKey`; `client` as in Keyboard::showCapture().
    void listen(const KeyPath::Listening &listening, const QString &client);
    /// From now on, takeTapped() returns the events of the keyboard in use, whichever it is; or no longer.
    void setTapped(bool isTapped);
    /// The next event since the last call; absent when there is none.
    [[nodiscard]] std::optional<KeyTap::Event> takeTapped() { return mKeyboard->keys().tap().take(); }
    /// The number of events that were lost since the last call, because too many came.
    [[nodiscard]] quint64 takeLostTapped() { return mKeyboard->keys().tap().takeLost(); }
    /// When this returns, everything is released and the keys do nothing more.
    void stop();

Q_SIGNALS:
    // As the signals of Keyboard
    void attachedChanged(bool isAttached);
    void gameModePressed();
    void brightnessChosen(int level);
    // As the signals of KeyPath
    void keyReported(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    /// A key has switched to the profile at `index`, which may not exist. Unless a slot calls apply(), the keys return
    /// to the previous profile.
    void profileChosen(int index);
    void programChosen(const QString &program);
    /// Unless a slot calls listen(), the keys return to the listening before.
    void macroKeyPressed(KeyPath::Time time);

private:
    void connectKeyboard();
    void takeSwitch(int index, KeyPath::SwitchNumber number);
    void takeMacroKey(KeyPath::Time time, KeyPath::MacroKeyNumber number);
    void sendListening();
    void answer(bool isOtherProfile);
    void freeTakenChanges();
    void show(const QVariantMap &document);
    template <typename Function> void callKeys(Function function);
    template <typename Function> void callKeysAndWait(Function function);

    Keyboard *mKeyboard = nullptr;
    bool mIsTapped = false;
    KeySettings mSettings;                                  // of the document
    std::vector<std::shared_ptr<KeyPath::Change>> mChanges; // those that the keys have not taken yet
    KeyPath::SwitchNumber mLastSwitch = 0;                  // the last one received
    KeyPath::SwitchNumber mAnsweredSwitch = 0;              // the last one answered
    KeyPath::Listening mListening;             // as last requested; with the last Macro key that was answered
    KeyPath::MacroKeyNumber mLastMacroKey = 0; // the last one received
};
