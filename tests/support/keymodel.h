// SPDX-License-Identifier: MIT
// A reference model of the keys, written from docs/key-behaviour.md: after each input it gives the keys that must be
// down at the computer. It shares no code with the daemon and does not use Qt, because the driver of the virtual
// machine has it as well. Used on the test's thread.
#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <utility>
#include <vector>

class KeyModel
{
public:
    using Time = std::chrono::microseconds; // since any fixed moment
    /// A usage of HID's Keyboard page, or firstOther plus the Linux code of any other key or button.
    using Key = int;
    static constexpr Key firstOther = 0x400;
    static constexpr Key firstModifier = 224;
    static constexpr int untilReleased = 255;
    static constexpr int untilPressedAgain = 254;

    /// The action of one key.
    struct Assignment
    {
        enum class Kind { defaultKey, singleKey, nothing, macro, profile };

        Kind kind = Kind::defaultKey;
        Key key = 0;                  ///< singleKey: 0 when only modifiers are sent
        std::set<Key> modifiers = {}; ///< singleKey
        int number = 0;               ///< macro, profile: the place in its list, which may not exist
        int repeat = 1;               ///< macro

        bool operator==(const Assignment &) const = default;
    };

    struct MacroEvent
    {
        std::chrono::milliseconds pause{}; ///< before the event
        Key key = 0;
        bool isDown = false;

        bool operator==(const MacroEvent &) const = default;
    };

    using Profile = std::map<Key, Assignment>; // a key without an entry is a default key
    using Macro = std::vector<MacroEvent>;

    KeyModel(std::vector<Profile> profiles, std::vector<Macro> macros)
        : mProfiles(std::move(profiles)), mMacros(std::move(macros))
    {
    }

    // Inputs
    void plug(int keyboard) { mKeyboards[keyboard]; }
    void unplug(int keyboard);
    /// `code`: distinguishes the keys of one keyboard. `label`: finds the assignment. `systemKey`: the key that a
    /// default key sends. Ignored if the key is down or the keyboard is not plugged in.
    void press(int keyboard, int code, Key label, Key systemKey);
    void release(int keyboard, int code);
    void passTime(Time now, bool isDaemonLate = false);
    void switchProfile(int number);
    void setCapturing(bool isCapturing); ///< by a client
    void pressMacroKey();
    void setGameMode(bool isOn);
    void assign(int profile, Key label, const Assignment &assignment);
    void setMacro(int number, const Macro &macro);
    void releaseAll(); ///< the last keyboard has gone, or the daemon ends

    // The state that must hold after them
    [[nodiscard]] std::set<Key> down() const;
    [[nodiscard]] bool isPlaying() const { return !mPlaying.empty(); } ///< a macro
    [[nodiscard]] std::vector<Assignment> playing() const;             ///< in the order of their starts
    [[nodiscard]] Assignment assignment(Key label) const;              ///< in the active profile
    [[nodiscard]] bool isPlugged(int keyboard) const { return mKeyboards.contains(keyboard); }
    [[nodiscard]] int activeProfile() const { return mActive; }
    [[nodiscard]] bool isRecordingOnTheFly() const { return mOnTheFly != OnTheFly::off; }

private:
    enum class OnTheFly { off, records, asksForKey };

    struct Hold // a key that is down, and those that it holds at the computer
    {
        Key label = 0;
        Key key = 0; // not a modifier
        std::set<Key> modifiers = {};
    };

    struct Playing
    {
        Key label = 0;
        Assignment assignment;
        Time start{}; // of the round
        int roundsLeft = 1;
        std::size_t next = 0;
        std::set<Key> held = {};
    };

    [[nodiscard]] bool isHeld(Key label) const;
    [[nodiscard]] bool isReleaseChordHeld() const { return isHeld(40) && isHeld(41) && isHeld(42); }
    [[nodiscard]] static bool isModifier(Key key) { return key >= firstModifier && key < firstModifier + 8; }
    [[nodiscard]] static bool isCommand(Key key) { return key == 227 || key == 231; }
    void begin(Key label, Key systemKey);
    void act(Hold &hold, const Assignment &assignment, Key systemKey);
    void send(Hold &hold, Key key, std::set<Key> modifiers);
    void endModifiersOfKeys();
    void play(Key label, const Assignment &assignment);
    [[nodiscard]] Time due(const Playing &playing) const;
    [[nodiscard]] bool playNext(Playing &playing);
    template <typename Condition> void stopMacrosIf(Condition condition) { std::erase_if(mPlaying, condition); }

    std::vector<Profile> mProfiles;
    std::vector<Macro> mMacros;
    int mActive = 0;
    std::map<int, std::map<int, Key>> mKeyboards; // the labels of the keys that are down, by their codes
    std::vector<Hold> mHolds;
    std::vector<Playing> mPlaying; // in the order of their starts
    Time mNow{};
    OnTheFly mOnTheFly = OnTheFly::off;
    bool mHasRecorded = false;
    bool mIsClientCapturing = false;
    bool mIsGameModeOn = false;
};

// Keyboards: several count as one. A key goes down with the first that holds it and comes up with the last.

inline bool KeyModel::isHeld(Key label) const
{
    return std::ranges::any_of(mKeyboards, [label](const auto &keyboard) {
        return std::ranges::any_of(keyboard.second, [label](const auto &key) { return key.second == label; });
    });
}

inline void KeyModel::press(int keyboard, int code, Key label, Key systemKey)
{
    if (!isPlugged(keyboard) || mKeyboards[keyboard].contains(code))
        return;
    const bool isFirst = !isHeld(label);
    mKeyboards[keyboard][code] = label;
    if (!isFirst)
        return;
    if (label < 40 || label > 42 || !isReleaseChordHeld())
        return begin(label, systemKey);
    mKeyboards.clear();
    releaseAll();
}

inline void KeyModel::release(int keyboard, int code)
{
    const auto found = mKeyboards.find(keyboard);
    if (found == mKeyboards.end() || !found->second.contains(code))
        return;
    const Key label = found->second.at(code);
    found->second.erase(code);
    if (isHeld(label))
        return;
    stopMacrosIf([label](const Playing &playing) {
        return playing.label == label && playing.assignment.repeat == untilReleased;
    });
    std::erase_if(mHolds, [label](const Hold &hold) { return hold.label == label; });
}

inline void KeyModel::unplug(int keyboard)
{
    while (isPlugged(keyboard) && !mKeyboards[keyboard].empty())
        release(keyboard, mKeyboards[keyboard].begin()->first);
    mKeyboards.erase(keyboard);
    if (mKeyboards.empty())
        releaseAll();
}

inline void KeyModel::releaseAll()
{
    mPlaying.clear();
    mHolds.clear();
    mOnTheFly = OnTheFly::off;
}

// The moment of the press decides the effect.

inline void KeyModel::begin(Key label, Key systemKey)
{
    Hold &hold = mHolds.emplace_back(Hold{.label = label});
    if (label >= firstOther) { // cannot be assigned, and passes unchanged
        endModifiersOfKeys();
        hold.key = label;
        return;
    }
    mHasRecorded = true;
    if (mIsClientCapturing)
        return;
    if (mOnTheFly == OnTheFly::asksForKey)
        mOnTheFly = OnTheFly::off;
    else if (!mIsGameModeOn || !isCommand(label))
        act(hold, assignment(label), systemKey);
}

inline KeyModel::Assignment KeyModel::assignment(Key label) const
{
    const Profile &profile = mProfiles[static_cast<std::size_t>(mActive)];
    const auto found = profile.find(label);
    return found == profile.end() ? Assignment() : found->second;
}

inline void KeyModel::act(Hold &hold, const Assignment &assignment, Key systemKey)
{
    switch (assignment.kind) {
    case Assignment::Kind::defaultKey: return send(hold, systemKey, {});
    case Assignment::Kind::singleKey: return send(hold, assignment.key, assignment.modifiers);
    case Assignment::Kind::nothing: return;
    case Assignment::Kind::macro: return play(hold.label, assignment);
    case Assignment::Kind::profile: return switchProfile(assignment.number);
    }
}

inline void KeyModel::send(Hold &hold, Key key, std::set<Key> modifiers)
{
    if (isModifier(key))
        modifiers.insert(std::exchange(key, 0)); // modifiers alone
    if (key != 0 && down().contains(key))
        modifiers.clear(); // nothing goes down
    else if (key != 0 || !modifiers.empty())
        endModifiersOfKeys();
    hold.key = key;
    hold.modifiers = std::move(modifiers);
}

/// The modifiers that a key sends with another are only for that key: the next press ends them.
inline void KeyModel::endModifiersOfKeys()
{
    for (Hold &hold : mHolds) {
        if (hold.key != 0)
            hold.modifiers.clear();
    }
}

inline std::set<KeyModel::Key> KeyModel::down() const
{
    std::set<Key> keys;
    for (const Hold &hold : mHolds) {
        keys.insert(hold.modifiers.begin(), hold.modifiers.end());
        if (hold.key != 0)
            keys.insert(hold.key);
    }
    for (const Playing &playing : mPlaying)
        keys.insert(playing.held.begin(), playing.held.end());
    return keys;
}

// Macros

inline std::vector<KeyModel::Assignment> KeyModel::playing() const
{
    std::vector<Assignment> assignments;
    for (const Playing &playing : mPlaying)
        assignments.push_back(playing.assignment);
    return assignments;
}

inline void KeyModel::play(Key label, const Assignment &assignment)
{
    const auto playing = std::ranges::find(mPlaying, label, &Playing::label);
    if (playing != mPlaying.end()) {
        if (playing->assignment.repeat == untilPressedAgain)
            mPlaying.erase(playing);
        return;
    }
    const auto number = static_cast<std::size_t>(assignment.number);
    if (assignment.number >= 0 && number < mMacros.size() && !mMacros[number].empty())
        mPlaying.push_back({.label = label, .assignment = assignment, .start = mNow, .roundsLeft = assignment.repeat});
}

inline KeyModel::Time KeyModel::due(const Playing &playing) const
{
    const Macro &macro = mMacros[static_cast<std::size_t>(playing.assignment.number)];
    Time time = playing.start;
    for (std::size_t event = 0; event <= std::min(playing.next, macro.size() - 1); ++event)
        time += macro[event].pause;
    return time;
}

/// Plays all events up to `now`, each when it is due, or all of them at `now`. An event that is more than 3 ms late
/// moves the rest of its macro.
inline void KeyModel::passTime(Time now, bool isDaemonLate)
{
    const auto dueOf = [this](const Playing &playing) { return due(playing); };
    while (!mPlaying.empty()) {
        const auto next = std::ranges::min_element(mPlaying, {}, dueOf);
        if (due(*next) > now)
            break;
        if (const Time delay = now - due(*next); isDaemonLate && delay > std::chrono::milliseconds(3))
            next->start += delay;
        if (!playNext(*next))
            mPlaying.erase(next);
    }
    mNow = now;
}

/// Plays one event, or ends the round, at the time of its last event. False after the last round.
inline bool KeyModel::playNext(Playing &playing)
{
    const Macro &macro = mMacros[static_cast<std::size_t>(playing.assignment.number)];
    if (playing.next == macro.size()) {
        playing.start += std::max({due(playing) - playing.start, Time(1000), Time(100) * std::ssize(macro)});
        playing.next = 0;
        playing.held.clear();
        return playing.assignment.repeat >= untilPressedAgain || --playing.roundsLeft > 0;
    }
    const MacroEvent &event = macro[playing.next++];
    if (!event.isDown) {
        playing.held.erase(event.key);
    } else if (!playing.held.contains(event.key)) {
        if (isModifier(event.key) || !down().contains(event.key))
            endModifiersOfKeys();
        playing.held.insert(event.key);
    }
    return true;
}

// Profiles, settings and captures

inline void KeyModel::switchProfile(int number)
{
    if (number < 0 || number >= static_cast<int>(mProfiles.size()) || number == mActive)
        return;
    mActive = number;
    mPlaying.clear();
}

inline void KeyModel::assign(int profile, Key label, const Assignment &assigned)
{
    mProfiles[static_cast<std::size_t>(profile)][label] = assigned;
    stopMacrosIf([this](const Playing &playing) { return playing.assignment != assignment(playing.label); });
}

inline void KeyModel::setMacro(int number, const Macro &macro)
{
    Macro &changed = mMacros[static_cast<std::size_t>(number)];
    if (changed == macro)
        return;
    changed = macro;
    stopMacrosIf([number](const Playing &playing) { return playing.assignment.number == number; });
}

inline void KeyModel::setCapturing(bool isCapturing)
{
    mIsClientCapturing = isCapturing;
    if (!isCapturing)
        return;
    mOnTheFly = OnTheFly::off;
    mPlaying.clear();
}

inline void KeyModel::pressMacroKey()
{
    if (mIsClientCapturing)
        return;
    const bool asksForKey = mOnTheFly == OnTheFly::records && mHasRecorded;
    mOnTheFly = asksForKey ? OnTheFly::asksForKey : mOnTheFly == OnTheFly::off ? OnTheFly::records : OnTheFly::off;
    mHasRecorded = false;
    if (asksForKey)
        mPlaying.clear();
}

inline void KeyModel::setGameMode(bool isOn)
{
    mIsGameModeOn = isOn;
    if (!isOn)
        return;
    for (Hold &hold : mHolds) {
        if (isCommand(hold.label))
            hold = {.label = hold.label};
    }
    stopMacrosIf([](const Playing &playing) { return isCommand(playing.label); });
}
