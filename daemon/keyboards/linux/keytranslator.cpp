// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keytranslator.h"

#include <linux/input-event-codes.h>

#include <algorithm>

static_assert(HidUsage::lastKey < 0x400);

namespace {

constexpr std::array releaseChord{quint16(40), quint16(41), quint16(42)}; // Return, Escape, Backspace

/// X and Y would turn the keyboard into a pointer; a node that has them is not grabbed.
bool isWheel(quint16 code)
{
    return code != REL_X && code != REL_Y && code <= REL_MAX;
}

} // namespace

KeyTranslator::KeyTranslator(KeySink &sink) : mSink(sink), mNodes(std::make_unique<std::array<Node, maximumNodes>>()) {}

KeyTranslator::~KeyTranslator() = default;

int KeyTranslator::addNode(bool givesHidUsages)
{
    const auto place = std::ranges::find(*mNodes, false, &Node::isTaken);
    if (place == mNodes->end())
        return -1;
    *place = Node{.isTaken = true, .givesHidUsages = givesHidUsages};
    return static_cast<int>(place - mNodes->begin());
}

void KeyTranslator::take(int index, const Event &event)
{
    if (index < 0 || index >= maximumNodes)
        return;
    Node &node = (*mNodes)[static_cast<std::size_t>(index)];
    if (!node.isTaken)
        return;
    switch (event.type) {
    case EV_SYN: node.hasScanCode = false; break;
    case EV_MSC:
        if (event.code == MSC_SCAN) {
            node.hasScanCode = node.givesHidUsages;
            node.scanCode = static_cast<quint32>(event.value);
        }
        break;
    case EV_REL:
        if (isWheel(event.code))
            mSink.passMotion(event.code, event.value, event.time);
        break;
    case EV_KEY:
        if (event.code >= KeyCodes::codeCount)
            break;
        if (event.value == 1)
            press(node, event.code, event.time);
        else if (event.value == 0)
            release(node, event.code, event.time);
        node.hasScanCode = false; // it belongs only to the key that follows it
        break;
    default: break;
    }
}

void KeyTranslator::removeNode(int index, Time time)
{
    if (index < 0 || index >= maximumNodes)
        return;
    Node &node = (*mNodes)[static_cast<std::size_t>(index)];
    for (quint16 code = 0; node.isTaken && code < KeyCodes::codeCount; ++code)
        release(node, code, time);
    node.isTaken = false;
}

bool KeyTranslator::isDown(quint16 code) const
{
    return std::ranges::any_of(*mNodes, [code](const Node &node) { return node.isTaken && node.down[code] != up; });
}

void KeyTranslator::press(Node &node, quint16 code, Time time)
{
    if (node.down[code] != up)
        return;
    const Meaning meaning = meaningOf(node, code);
    node.down[code] = meaning;
    if (++mHolders[meaning] > 1)
        return;
    if (std::ranges::find(releaseChord, meaning) != releaseChord.end() && isReleaseChordHeld())
        mSink.takeReleaseChord();
    else
        emitKey(meaning, true, time);
}

void KeyTranslator::release(Node &node, quint16 code, Time time)
{
    const Meaning meaning = node.down[code];
    if (meaning == up)
        return;
    node.down[code] = up;
    if (--mHolders[meaning] == 0)
        emitKey(meaning, false, time);
}

KeyTranslator::Meaning KeyTranslator::meaningOf(const Node &node, quint16 code)
{
    if (const std::optional<HidUsage> macroKey = KeyCodes::macroKeyOfCode(code))
        return macroKey->usage;
    const std::optional<HidUsage> usage =
        node.hasScanCode ? KeyCodes::usageOfScanCode(node.scanCode, code) : KeyCodes::usageOfCode(code);
    return usage ? usage->usage : static_cast<Meaning>(firstPassed + code);
}

bool KeyTranslator::isReleaseChordHeld() const
{
    return std::ranges::all_of(releaseChord, [this](Meaning meaning) { return mHolders[meaning] > 0; });
}

void KeyTranslator::emitKey(Meaning meaning, bool isDown, Time time)
{
    if (meaning < firstPassed)
        mSink.takeKey({HidUsage::keyboardPage, meaning}, isDown, time);
    else
        mSink.passKey(static_cast<quint16>(meaning - firstPassed), isDown, time);
}
