// SPDX-License-Identifier: MIT
// The key engine: keys of the keyboard in, what the computer is to receive out. A pure state machine without clock and
// I/O; the time is passed in. Owned by the daemon, one thread.
#pragma once

#include "daemon/engine/hidusage.h"
#include "daemon/engine/keyassignment.h"
#include "daemon/engine/macroplayback.h"
#include "daemon/engine/playablemacro.h"

#include <QList>
#include <QString>
#include <QVarLengthArray>

#include <chrono>
#include <optional>
#include <vector>

/// One thing to do, in the order given.
struct EngineOutput
{
    enum class Kind { sendDown, sendUp, captured, switchProfile, launchProgram };

    Kind kind = Kind::sendDown;
    HidUsage usage = {};   ///< sendDown, sendUp; captured: the key that was pressed
    quint8 modifiers = 0;  ///< captured: modifier byte of the other keys that are held
    int profileIndex = -1; ///< switchProfile: position in "Profiles", which may not exist
    QString program = {};  ///< launchProgram: path

    bool operator==(const EngineOutput &) const = default;
};

/// What one event brings; long enough for two keys with all modifiers, so that an event allocates nothing.
using EngineOutputs = QVarLengthArray<EngineOutput, 20>;

/// What a key does is decided when it goes down; its release ends just that, whatever was assigned, switched or
/// captured in between. Every usage sent down is sent up again, at the latest by releaseAll(); keys that send the same
/// usage send it down once, with the first, and up once, with the last. A macro that plays is like one more hand: what
/// it sends never comes back as a key of the keyboard, and it lets go of everything that it has pressed.
class KeyEngine
{
public:
    using Time = MacroPlayback::Time; // since any fixed moment; never goes backwards

    /// Macros that play at once; a key pressed for one more does nothing.
    static constexpr std::size_t maximumPlaybacks = 32;
    /// Events of macros that one advance() brings at most. What else is due is so at once; but between, others come to
    /// their turn.
    static constexpr int eventsPerAdvance = 16;

    KeyEngine();

    /// Presses from now on follow `map`. Stops the macros whose key no longer plays them, or plays them differently:
    /// nothing could stop them then.
    [[nodiscard]] EngineOutputs setKeyMap(const KeyMap &map);

    /// Presses from now on play these macros. Stops those that are not among them any more.
    [[nodiscard]] EngineOutputs setMacros(const PlayableMacros &macros);

    /// Stops every macro: another profile is the active one.
    [[nodiscard]] EngineOutputs stopMacros();

    /// While capturing, a press sends nothing and does nothing but be reported; so does its release, whenever it comes.
    /// Macros that play would do the same as keys, and are stopped at its beginning.
    [[nodiscard]] EngineOutputs setCapturing(bool isCapturing);

    /// In game mode the two Command keys are dead, whatever is assigned to them; those that are down are let go of, and
    /// macros that they have started are stopped.
    [[nodiscard]] EngineOutputs setGameMode(bool isOn);

    /// A second press without a release, and a release without a press, do nothing.
    [[nodiscard]] EngineOutputs keyDown(HidUsage key, Time now);
    [[nodiscard]] EngineOutputs keyUp(HidUsage key, Time now);
    /// Lets go of everything, macros first, then the last pressed key first: the keyboard is gone, or the daemon ends.
    [[nodiscard]] EngineOutputs releaseAll();

    /// What is due by `now`, at most eventsPerAdvance of it; to be called at nextDeadline().
    [[nodiscard]] EngineOutputs advance(Time now);
    [[nodiscard]] std::optional<Time> nextDeadline() const;

    /// The usages that the computer sees down, in the order in which they went down.
    [[nodiscard]] QList<HidUsage> sentDown() const;

private:
    /// A key that is down, and what its press sent down.
    struct Press
    {
        HidUsage key;
        quint8 modifiers = 0; // modifier byte
        HidUsage sent = {};   // usage 0: none
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
    void letGo(Press &press, EngineOutputs &outputs);
    void sendDown(HidUsage usage, EngineOutputs &outputs);
    void sendUp(HidUsage usage, EngineOutputs &outputs);
    [[nodiscard]] quint8 heldModifiers() const;

    KeyMap mMap;
    PlayableMacros mMacros;
    std::vector<MacroPlayback> mPlaybacks; // in the order of their starts; at most one of each key
    std::vector<Press> mPresses; // in the order of the presses; few, so that a search is faster than a look-up
    std::vector<SentUsage> mSent;
    bool mIsCapturing = false;
    bool mIsGameModeOn = false;
};
