// SPDX-License-Identifier: MIT
// The way of a key: from its channel into the engine and, as what it means, back out. Lives on one thread with its
// channel: the main thread for the virtual keyboard, the key thread for real ones, where nothing that the daemon saves,
// answers or posts can delay a key. Its public functions are to be called on that thread; CurrentKeyboard does.
#pragma once

#include "daemon/engine/keyengine.h"
#include "daemon/keyboards/keychannel.h"
#include "daemon/settings/keysettings.h"

#include <QObject>

#include <functional>
#include <optional>

/// The time of a key path, so that tests can put their own in place.
struct KeyClock
{
    /// Since any fixed moment; never goes backwards.
    std::function<KeyEngine::Time()> now;
    /// Asks for a call of KeyPath::wake() at this time, or as soon after it as can be; absent: for none. What was asked
    /// for before counts no more.
    std::function<void(std::optional<KeyEngine::Time>)> wakeAt = [](std::optional<KeyEngine::Time>) {};
};

/// An ordinary key (one that sends something, or that a macro sends) allocates nothing and reaches no other thread.
/// A key that switches the profile does so at once, for the very next key; that it is stored is the other side's
/// business, which has the last word: it answers every profileChosen() with a change().
class KeyPath : public QObject
{
    Q_OBJECT

public:
    using Time = KeyEngine::Time;

    /// Numbers the profileChosen() of a path, from 1; 0 is before the first.
    using Choice = quint64;

    struct Change
    {
        KeySettings settings;
        /// The last profileChosen() that the sender had heard of. A profile that was chosen later stays the active one.
        Choice lastChoice = 0;
        /// Another profile is active than in the settings before, which stops all macros.
        bool isOtherProfile = false;
    };

    /// What is told of keys.
    struct Listening
    {
        bool isCapturing = false; ///< presses do nothing but be told by keyCaptured()
        bool isReporting = false; ///< every key is told by keyChanged(), captured or not
    };

    /// With the machine's time. `channel` must live longer. Both may be moved to another thread before start().
    explicit KeyPath(KeyChannel &channel, QObject *parent = nullptr);
    KeyPath(KeyChannel &channel, KeyClock clock, QObject *parent = nullptr);

    [[nodiscard]] bool isStarted() const { return mIsStarted; }
    /// From now on the keys do something; until then, and after stop(), they are ignored. The last choice made: those
    /// up to it are not to be heeded any more.
    Choice start(const KeySettings &settings);
    void change(Change change);
    void listen(Listening listening);
    /// Lets go of everything.
    void stop();
    /// Goes on with the macros that play.
    void wake();

Q_SIGNALS:
    void keyChanged(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    /// A key has switched to the profile, which is the active one here. `index` may not exist; then nothing has been
    /// switched.
    void profileChosen(int index, KeyPath::Choice choice);
    void programChosen(const QString &program);

private:
    void takeKey(HidUsage key, bool isDown, Time time);
    void releaseAll();
    void perform(const EngineOutputs &outputs);
    void chooseProfile(int index);
    void applySettings();

    KeyChannel &mChannel;
    KeyClock mClock;
    KeyEngine mEngine;
    KeySettings mSettings;
    std::optional<Time> mWakeTime; // what was asked for
    Choice mLastChoice = 0;
    bool mIsSwitchUnanswered = false; // there is a choice that no change knew of, and one side has switched
    bool mIsStarted = false;
    bool mIsReporting = false;
};
