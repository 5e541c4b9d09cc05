// SPDX-License-Identifier: MIT
// The key engine turns keys of the keyboard into output for the computer. A pure state machine without clock and I/O;
// the caller passes the time. Owned by the daemon; one thread.
#pragma once

#include "base/hidusage.h"
#include "daemon/engine/keyassignment.h"
#include "daemon/engine/macroplayback.h"
#include "daemon/engine/playablemacro.h"

#include <QList>
#include <QString>
#include <QVarLengthArray>

#include <chrono>
#include <optional>
#include <vector>

/// One action. The caller performs actions in the given order.
struct EngineOutput
{
    enum class Kind { sendDown, sendUp, captured, switchProfile, launchProgram };

    Kind kind = Kind::sendDown;
    HidUsage usage = {};   ///< sendDown, sendUp; captured: the key that was pressed
    quint8 modifiers = 0;  ///< captured: modifier byte of what the other held keys send
    int profileIndex = -1; ///< switchProfile: index in "Profiles", which may not exist
    QString program = {};  ///< launchProgram: path

    bool operator==(const EngineOutput &) const = default;
};

/// The outputs of one event. There is room for a key with all modifiers after others with all modifiers, and for the
/// events of one advance() after them, so an event allocates nothing.
using EngineOutputs = QVarLengthArray<EngineOutput, 24>;

/// A press determines the action of a key. Its release ends exactly this action, even after another assignment, profile
/// switch or capture in between. Every usage sent down is sent up again, at the latest by releaseAll(). Keys that send
/// the same usage send it down once, with the first, and up once, with the last. Modifiers that an assignment sends
/// with another key are only for that key: they come up before any later press is sent. A playing macro acts like
/// another hand: its output never returns as a key of the keyboard, and it releases everything that it has pressed.
class KeyEngine
{
public:
    using Time = MacroPlayback::Time; // since any fixed moment; never goes backwards

    /// The most macros that play at once. A key for one more does nothing.
    static constexpr std::size_t maximumPlaybacks = 32;
    /// The most macro events of one advance(). The others remain due at once, but the event loop gets a turn in
    /// between.
    static constexpr int eventsPerAdvance = 16;

    KeyEngine();

    /// Later presses follow `map`. Stops each macro whose key plays it differently or not at all, because no key could
    /// stop it.
    [[nodiscard]] EngineOutputs setKeyMap(const KeyMap &map);

    /// Later presses play these macros. Stops playing macros that are not among them.
    [[nodiscard]] EngineOutputs setMacros(const PlayableMacros &macros);

    /// Stops every macro. Must be called when another profile becomes active.
    [[nodiscard]] EngineOutputs stopMacros();

    /// While capturing, a press only reports the key, and its release sends nothing even after the capture. Playing
    /// macros would type into the capture, so it stops them at its beginning.
    [[nodiscard]] EngineOutputs setCapturing(bool isCapturing);

    /// In game mode the two Command keys do nothing, whatever their assignments. Turning it on releases those that are
    /// held and stops the macros that they have started.
    [[nodiscard]] EngineOutputs setGameMode(bool isOn);

    /// Ignores a second press without a release, and a release without a press. `key`: finds the assignment.
    /// `systemKey`: the key as the system reports it, which a default key sends. It differs from `key`, and may be on
    /// HidUsage::systemPage, if a driver or a table of the system has changed the key.
    [[nodiscard]] EngineOutputs keyDown(HidUsage key, HidUsage systemKey, Time now);
    [[nodiscard]] EngineOutputs keyDown(HidUsage key, Time now) { return keyDown(key, key, now); }
    [[nodiscard]] EngineOutputs keyUp(HidUsage key, Time now);
    /// Must be called before a key goes down that reaches the computer without this engine.
    [[nodiscard]] EngineOutputs otherKeyDown();
    /// Releases everything: first the macros, then the keys from the last pressed to the first. Must be called when the
    /// keyboard is removed or the daemon ends.
    [[nodiscard]] EngineOutputs releaseAll();

    /// The events due by `now`, at most eventsPerAdvance. Must be called at nextDeadline().
    [[nodiscard]] EngineOutputs advance(Time now);
    [[nodiscard]] std::optional<Time> nextDeadline() const;

    /// The usages that the computer sees down, in the order in which they went down.
    [[nodiscard]] QList<HidUsage> sentDown() const;

private:
    /// A held key and the usages that its press sent down, or would have without a capture.
    struct Press
    {
        HidUsage key;
        HidUsage systemKey;
        bool isCaptured = false;
        quint8 modifiers = 0; // modifier byte
        HidUsage sent = {};   // usage 0: none

        [[nodiscard]] bool sendsOrdinaryKey() const { return sent.usage != 0 && !sent.isModifier(); }
        /// Whether its modifiers are only for the key that it sends.
        [[nodiscard]] bool isAccompanied() const { return modifiers != 0 && sendsOrdinaryKey(); }
        /// The modifiers that the user holds with this key.
        [[nodiscard]] quint8 heldModifiers() const;
    };

    struct SentUsage
    {
        HidUsage usage;
        int holders = 0; // presses that sent it
    };

    void begin(Press &press, const KeyAssignment &assignment, Time now, EngineOutputs &outputs);
    void playMacro(HidUsage trigger, const KeyAssignment &assignment, Time now, EngineOutputs &outputs);
    template <typename Condition> void stopMacrosIf(Condition condition, EngineOutputs &outputs);
    [[nodiscard]] const PlayableMacro *macroAt(int index) const;
    void sendKey(Press &press, quint8 modifiers, HidUsage usage, EngineOutputs &outputs);
    void endPress(Press &press, EngineOutputs &outputs);
    void liftModifiers(quint8 lifted, const Press *exception, EngineOutputs &outputs);
    void pressByMacro(HidUsage usage, EngineOutputs &outputs);
    [[nodiscard]] bool isDown(HidUsage usage) const;
    void sendDown(HidUsage usage, EngineOutputs &outputs);
    void sendUp(HidUsage usage, EngineOutputs &outputs);
    [[nodiscard]] quint8 heldModifiers() const;

    KeyMap mMap;
    PlayableMacros mMacros;
    std::vector<MacroPlayback> mPlaybacks; // in the order of their starts; at most one per key
    std::vector<Press> mPresses;           // in the order of the presses; so few that a search is faster than a look-up
    std::vector<SentUsage> mSent;
    int mAccompaniedPresses = 0; // most keys do not have to look for them
    bool mIsCapturing = false;
    bool mIsGameModeOn = false;
};
