// SPDX-License-Identifier: MIT
// Turns the events of a keyboard's nodes into keys that go down and up. No file, no clock, no allocation after its
// construction: whoever has the events calls it, one thread (the key thread).
#pragma once

#include "daemon/engine/hidusage.h"
#include "daemon/keyboards/linux/keycodes.h"

#include <array>
#include <chrono>
#include <memory>

/// Is told what the events mean. The calls come from within those of the translator and must not call it back.
class KeySink
{
public:
    using Time = std::chrono::microseconds; // CLOCK_MONOTONIC

    virtual ~KeySink() = default;

    /// A key of the keyboard page went down, or the last of those that mean it came up.
    virtual void takeKey(HidUsage key, bool isDown, Time time) = 0;
    /// The same for what is no such key, by its Linux key code: media keys, buttons, what nobody knows.
    virtual void passKey(quint16 code, bool isDown, Time time) = 0;
    /// A wheel or dial of the keyboard was turned.
    virtual void passMotion(quint16 code, int value, Time time) = 0;
    /// Backspace, Escape and Return are held together. The key that completed it is not told otherwise.
    virtual void panic() = 0;
};

/// A key that is held on several nodes, or twice on one, goes down with the first and comes up with the last. What a
/// key means is decided when it goes down. What makes no sense (codes out of range, a release without a press, a second
/// press) is ignored; so is the kernel's repetition (value 2), since the daemon's own device has its own.
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

    /// A place for one more node, from 0 up; -1 when there are maximumNodes. Allocates nothing.
    /// `givesHidUsages`: its scan codes are HID usages (that of an old PS/2 keyboard are not).
    [[nodiscard]] int addNode(bool givesHidUsages);
    void take(int node, const Event &event);
    /// Every key that is down on the node comes up, and the place is free again.
    void removeNode(int node, Time time);

    /// A key with this code, below KeyCodes::codeCount, is down on any node.
    [[nodiscard]] bool isDown(quint16 code) const;

private:
    /// What a key that is down means: a usage of the keyboard page below firstPassed, else a key code above it.
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
    [[nodiscard]] bool isPanicChordHeld() const;
    void tell(Meaning meaning, bool isDown, Time time);

    KeySink &mSink;
    std::unique_ptr<std::array<Node, maximumNodes>> mNodes;
    std::array<quint16, firstPassed + KeyCodes::codeCount> mHolders{}; // by meaning
};
