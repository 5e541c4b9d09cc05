// SPDX-License-Identifier: MIT
// Turns the events of a keyboard's event devices into keys that go down and up. No file, no clock, no allocation after
// its construction; one thread (the key thread).
#pragma once

#include "daemon/engine/hidusage.h"
#include "daemon/keyboards/linux/keycodes.h"

#include <array>
#include <chrono>
#include <memory>

/// Receives the meaning of the events. The translator calls it during its own calls; it must not call back.
class KeySink
{
public:
    using Time = std::chrono::microseconds; // CLOCK_MONOTONIC

    virtual ~KeySink() = default;

    /// A key of the keyboard page went down, or the last of the keys with this meaning came up.
    virtual void takeKey(HidUsage key, bool isDown, Time time) = 0;
    /// The same for other keys, by their Linux key code: media keys, buttons, unknown ones.
    virtual void passKey(quint16 code, bool isDown, Time time) = 0;
    /// A wheel or dial of the keyboard was turned.
    virtual void passMotion(quint16 code, int value, Time time) = 0;
    /// Backspace, Escape and Return are held together. The key that completes the release chord is not reported
    /// otherwise.
    virtual void takeReleaseChord() = 0;
};

/// A key that is held on several nodes, or twice on one, goes down with the first and comes up with the last. Its
/// meaning is determined when it goes down. Nonsense is ignored: codes out of range, a release without a press, a
/// second press. The kernel's repetition (value 2) is also ignored, because the output device has its own.
class KeyTranslator
{
public:
    using Time = KeySink::Time;

    static constexpr int maximumNodes = 32;

    /// One event of <linux/input.h>.
    struct Event
    {
        quint16 type = 0;
        quint16 code = 0;
        int value = 0;
        Time time{};
    };

    explicit KeyTranslator(KeySink &sink);
    ~KeyTranslator();

    /// Adds a node and returns its place, from 0 up; -1 when there are maximumNodes. Allocates nothing.
    /// `givesHidUsages`: its scan codes are HID usages (those of an old PS/2 keyboard are not).
    [[nodiscard]] int addNode(bool givesHidUsages);
    void take(int node, const Event &event);
    /// Every key that is down on the node comes up; its place becomes free.
    void removeNode(int node, Time time);

    /// Whether a key with this code, below KeyCodes::codeCount, is down on any node.
    [[nodiscard]] bool isDown(quint16 code) const;

private:
    /// The meaning of a key that is down: a usage of the keyboard page below firstPassed, otherwise firstPassed plus a
    /// key code.
    using Meaning = quint16;
    static constexpr Meaning up = 0;
    static constexpr Meaning firstPassed = 0x400;

    struct Node
    {
        bool isTaken = false;
        bool givesHidUsages = false;
        bool hasScanCode = false;
        quint32 scanCode = 0;
        std::array<Meaning, KeyCodes::codeCount> down{}; // by key code
    };

    void press(Node &node, quint16 code, Time time);
    void release(Node &node, quint16 code, Time time);
    [[nodiscard]] static Meaning meaningOf(const Node &node, quint16 code);
    [[nodiscard]] bool isReleaseChordHeld() const;
    void emitKey(Meaning meaning, bool isDown, Time time);

    KeySink &mSink;
    std::unique_ptr<std::array<Node, maximumNodes>> mNodes;
    std::array<quint16, firstPassed + KeyCodes::codeCount> mHolders{}; // by meaning
};
