// SPDX-License-Identifier: MIT
// Turns the events of a keyboard's event devices into keys that go down and up. No file, no clock, no allocation after
// its construction; one thread (the key thread).
#pragma once

#include "base/hidusage.h"
#include "base/keycodes.h"

#include <linux/input-event-codes.h>

#include <array>
#include <bitset>
#include <chrono>
#include <memory>

/// The meaning of one event. A small value, so a key allocates nothing.
struct TranslatorOutput
{
    enum class Kind : quint8 {
        none,
        key,         ///< a key of the keyboard page went down, or the last of the keys with this meaning came up
        passedKey,   ///< the same for other keys: media keys, buttons, unknown ones
        motion,      ///< a wheel or dial of the keyboard was turned
        volume,      ///< a volume control was set
        toggle,      ///< a switch went on, or the last of those with this code went off
        releaseChord ///< Backspace, Escape and Return are held together; the key that completes this has no other
                     ///< output
    };

    Kind kind = Kind::none;
    bool isDown = false; ///< key, passedKey; toggle: on
    quint16 usage = 0;   ///< key: on the keyboard page
    quint16 code = 0;    ///< key, passedKey: the Linux key code of the node; motion: REL_ code; toggle: SW_ code
    int value = 0;       ///< motion, volume

    bool operator==(const TranslatorOutput &) const = default;
};

/// A key that is held on several nodes, or twice on one, goes down with the first and comes up with the last. Its
/// meaning is determined when it goes down. Nonsense is ignored: codes out of range, a release without a press, a
/// second press. The kernel's repetition (value 2) is also ignored, because the output device has its own.
class KeyTranslator
{
public:
    using Time = std::chrono::microseconds; // CLOCK_MONOTONIC

    static constexpr int maximumNodes = 32;

    /// One event of <linux/input.h>.
    struct Event
    {
        quint16 type = 0;
        quint16 code = 0;
        int value = 0;
        Time time{};
    };

    KeyTranslator();
    ~KeyTranslator();

    /// Adds a node and returns its place, from 0 up; -1 when there are maximumNodes. Allocates nothing.
    /// `givesHidUsages`: its scan codes are HID usages (those of an old PS/2 keyboard are not).
    [[nodiscard]] int addNode(bool givesHidUsages);
    [[nodiscard]] TranslatorOutput take(int node, const Event &event);
    /// One step of the removal of a node: the next of its keys comes up, or of its switches goes off. Must be called
    /// until the output is `none`, which means that nothing is left and the place is free.
    [[nodiscard]] TranslatorOutput removeNode(int node);

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
        std::bitset<SW_CNT> on{};                        // by switch
    };

    [[nodiscard]] static TranslatorOutput takeMotion(const Node &node, const Event &event);
    [[nodiscard]] static TranslatorOutput takeVolume(const Node &node, const Event &event);
    [[nodiscard]] TranslatorOutput takeSwitch(Node &node, quint16 code, bool isOn);
    [[nodiscard]] TranslatorOutput takeKey(Node &node, const Event &event);
    [[nodiscard]] TranslatorOutput press(Node &node, quint16 code, bool hasScanCode);
    [[nodiscard]] TranslatorOutput release(Node &node, quint16 code);
    [[nodiscard]] static Meaning meaningOf(const Node &node, quint16 code, bool hasScanCode);
    [[nodiscard]] bool isReleaseChordHeld() const;
    [[nodiscard]] static TranslatorOutput keyOutput(Meaning meaning, quint16 code, bool isDown);

    std::unique_ptr<std::array<Node, maximumNodes>> mNodes;
    std::array<quint16, firstPassed + KeyCodes::codeCount> mHolders{}; // by meaning
    std::array<quint16, SW_CNT> mSwitchHolders{};
};

/// Inline, because most events only accompany a key.
inline TranslatorOutput KeyTranslator::take(int index, const Event &event)
{
    if (index < 0 || index >= maximumNodes)
        return {};
    Node &node = (*mNodes)[static_cast<std::size_t>(index)];
    switch (event.type) {
    case EV_SYN: node.hasScanCode = false; return {};
    case EV_MSC:
        if (event.code == MSC_SCAN) {
            node.hasScanCode = node.givesHidUsages;
            node.scanCode = static_cast<quint32>(event.value);
        }
        return {};
    case EV_REL: return takeMotion(node, event);
    case EV_KEY: return takeKey(node, event);
    case EV_ABS: return takeVolume(node, event);
    case EV_SW: return takeSwitch(node, event.code, event.value != 0);
    default: return {};
    }
}
