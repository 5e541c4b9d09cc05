// SPDX-License-Identifier: MIT
// The path of a key: from its channel into the engine and, translated, back out. Lives on one thread with its channel:
// the main thread for the virtual keyboard, the key thread for real ones. There, no saving, replying or posting of the
// daemon delays a key. Its public functions must be called on that thread; CurrentKeyboard does this.
#pragma once

#include "daemon/engine/keyengine.h"
#include "daemon/keyboards/keychannel.h"
#include "daemon/settings/keysettings.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

/// The clock of a key path; tests replace it.
struct KeyClock
{
    /// Since any fixed moment; never goes backwards.
    std::function<KeyEngine::Time()> now;
    /// Requests a call of KeyPath::wake() at this time or as soon as possible after it. Replaces the previous request;
    /// an absent time cancels it.
    std::function<void(std::optional<KeyEngine::Time>)> wakeAt = [](std::optional<KeyEngine::Time>) {};
};

/// An ordinary key (one that sends something, or a macro's) allocates nothing and reaches no other thread. A key that
/// switches the profile does so for the very next key. The other side stores the switch and has the last word: it
/// answers every profileChosen() with a change().
class KeyPath : public QObject, private KeyReceiver
{
    Q_OBJECT

public:
    using Time = KeyEngine::Time;

    /// The number of a path's profileChosen(), from 1; 0 is before the first.
    using SwitchNumber = quint64;

    struct Change
    {
        KeySettings settings;
        /// The last profileChosen() that the sender had received. A profile chosen later stays active.
        SwitchNumber lastSwitch = 0;
        /// The settings have another active profile than before, which stops all macros.
        bool isOtherProfile = false;
    };

    /// The number of a path's macroKeyPressed(), from 1; 0 is before the first.
    using MacroKeyNumber = quint64;

    /// The effect of the next press of the Macro key.
    enum class MacroKeyEffect {
        none,            ///< a client has the keys
        startsRecording, ///< the keys are reported from now on
        endsRecording,   ///< the next key is captured, if one was reported; otherwise it discards
        discards         ///< the keys are the computer's again
    };

    /// Which keys are reported.
    struct Listening
    {
        bool isCapturing = false; ///< presses only emit keyCaptured()
        bool isReporting = false; ///< every key emits keyReported(), captured or not
        MacroKeyEffect macroKey = MacroKeyEffect::startsRecording;
        /// The last macroKeyPressed() that the sender had received.
        MacroKeyNumber lastMacroKey = 0;
    };

    /// Uses the machine's clock. `channel` must outlive this. Both may be moved to another thread before start().
    explicit KeyPath(KeyChannel &channel, QObject *parent = nullptr);
    KeyPath(KeyChannel &channel, KeyClock clock, QObject *parent = nullptr);
    ~KeyPath() override;

    [[nodiscard]] bool isStarted() const { return mIsStarted; }
    [[nodiscard]] KeyTap &tap() { return mChannel.tap(); } ///< any thread, see KeyTap
    /// The keys act from start() until stop(), and are ignored otherwise. Returns the last choice: the caller must
    /// ignore choices up to it. Leaves the previous settings in `settings`, because the caller has the time to free
    /// them.
    SwitchNumber start(KeySettings &settings);
    /// Leaves the previous settings in `change`, which the caller must keep until changeTaken().
    void change(std::shared_ptr<Change> change);
    [[nodiscard]] MacroKeyNumber lastMacroKey() const { return mLastMacroKey; }
    /// Ignored if the sender has not received the last macroKeyPressed(), because it will answer that one.
    void listen(const Listening &listening);
    /// Releases everything.
    void stop();
    /// Continues playing macros. They may have more events than the computer can take. After each longestBurst of
    /// events that are all late, they therefore rest for as long, and the events come later. Without a rest, other
    /// programs would get no processor, and the kernel would end the process (RLIMIT_RTTIME, see Realtime).
    void wake();
    static constexpr std::chrono::milliseconds longestBurst{5};

Q_SIGNALS:
    void keyReported(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    /// A key has switched to the profile, which is active in this path. If `index` does not exist, nothing was
    /// switched.
    void profileChosen(int index, KeyPath::SwitchNumber choice);
    void programChosen(const QString &program);
    /// The path has released an object passed to change().
    void changeTaken();
    /// The effect of the Macro key has begun in this path, because the very next key may belong to the macro. The other
    /// side has the last word: it answers with listen().
    void macroKeyPressed(KeyPath::Time time, KeyPath::MacroKeyNumber number);

private:
    void takeKey(HidUsage key, bool isDown, Time time, HidUsage systemKey) override;
    void takeOtherKey();
    void takeMacroKey(Time time);
    void setListening(const Listening &listening);
    void releaseAll();
    void perform(const EngineOutputs &outputs);
    void chooseProfile(int index);
    void applySettings();
    void exchangeSettings(Change &change);
    void rest(Time awakening);

    KeyChannel &mChannel;
    KeyClock mClock;
    KeyEngine mEngine;
    KeySettings mSettings;
    std::optional<Time> mWakeTime;   // as last requested
    std::optional<Time> mBurstStart; // since then, each event of a macro was due at once
    SwitchNumber mLastSwitch = 0;
    bool mIsSwitchUnanswered = false; // no change has answered the latest choice yet, and one side has switched
    bool mIsStarted = false;
    Listening mListening;
    MacroKeyNumber mLastMacroKey = 0;
    bool mHasReportedPress = false; // since the Macro key has started a recording
};
