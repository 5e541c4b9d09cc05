// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keytranslator.h"

#include <algorithm>
#include <utility>

using Kind = TranslatorOutput::Kind;

static_assert(HidUsage::lastKey < 0x400);

namespace {

// Return, Escape, Backspace
constexpr quint16 firstOfReleaseChord = 40;
constexpr quint16 lastOfReleaseChord = 42;

} // namespace

KeyTranslator::KeyTranslator() : mNodes(std::make_unique<std::array<Node, maximumNodes>>()) {}

KeyTranslator::~KeyTranslator() = default;

int KeyTranslator::addNode(bool givesHidUsages)
{
    const auto place = std::ranges::find(*mNodes, false, &Node::isTaken);
    if (place == mNodes->end())
        return -1;
    *place = Node{.isTaken = true, .givesHidUsages = givesHidUsages};
    return static_cast<int>(place - mNodes->begin());
}

TranslatorOutput KeyTranslator::takeMotion(const Node &node, const Event &event)
{
    // X and Y would turn the keyboard into a pointer; a node that has them is not grabbed.
    const bool isWheel = event.code != REL_X && event.code != REL_Y && event.code <= REL_MAX;
    if (!node.isTaken || !isWheel)
        return {};
    return {.kind = Kind::motion, .code = event.code, .value = event.value};
}

TranslatorOutput KeyTranslator::takeVolume(const Node &node, const Event &event)
{
    if (!node.isTaken || event.code != ABS_VOLUME)
        return {}; // other axes are those of a joystick or a tablet
    return {.kind = Kind::volume, .code = event.code, .value = event.value};
}

TranslatorOutput KeyTranslator::takeSwitch(Node &node, quint16 code, bool isOn)
{
    if (!node.isTaken || code >= SW_CNT || node.on[code] == isOn)
        return {};
    node.on[code] = isOn;
    const bool isLastOrFirst = isOn ? ++mSwitchHolders[code] == 1 : --mSwitchHolders[code] == 0;
    if (!isLastOrFirst)
        return {};
    return {.kind = Kind::toggle, .isDown = isOn, .code = code};
}

TranslatorOutput KeyTranslator::takeKey(Node &node, const Event &event)
{
    const bool hasScanCode = std::exchange(node.hasScanCode, false); // it belongs only to the key that follows it
    if (!node.isTaken || event.code >= KeyCodes::codeCount)
        return {};
    if (event.value == 1)
        return press(node, event.code, hasScanCode);
    if (event.value == 0)
        return release(node, event.code);
    return {};
}

TranslatorOutput KeyTranslator::removeNode(int index)
{
    if (index < 0 || index >= maximumNodes)
        return {};
    Node &node = (*mNodes)[static_cast<std::size_t>(index)];
    for (quint16 code = 0; node.isTaken && code < KeyCodes::codeCount; ++code) {
        if (const TranslatorOutput output = release(node, code); output.kind != Kind::none)
            return output;
    }
    for (quint16 code = 0; node.isTaken && code < SW_CNT; ++code) {
        if (const TranslatorOutput output = takeSwitch(node, code, false); output.kind != Kind::none)
            return output;
    }
    node.isTaken = false;
    return {};
}

TranslatorOutput KeyTranslator::press(Node &node, quint16 code, bool hasScanCode)
{
    if (node.down[code] != up)
        return {};
    const Meaning meaning = meaningOf(node, code, hasScanCode);
    node.down[code] = meaning;
    if (++mHolders[meaning] > 1)
        return {};
    if (meaning >= firstOfReleaseChord && meaning <= lastOfReleaseChord && isReleaseChordHeld())
        return {.kind = Kind::releaseChord};
    return keyOutput(meaning, code, true);
}

TranslatorOutput KeyTranslator::release(Node &node, quint16 code)
{
    const Meaning meaning = node.down[code];
    if (meaning == up)
        return {};
    node.down[code] = up;
    if (--mHolders[meaning] > 0)
        return {};
    return keyOutput(meaning, code, false);
}

KeyTranslator::Meaning KeyTranslator::meaningOf(const Node &node, quint16 code, bool hasScanCode)
{
    if (const std::optional<HidUsage> macroKey = KeyCodes::macroKeyOfCode(code))
        return macroKey->usage;
    const std::optional<HidUsage> usage =
        hasScanCode ? KeyCodes::usageOfScanCode(node.scanCode, code) : KeyCodes::usageOfCode(code);
    return usage ? usage->usage : static_cast<Meaning>(firstPassed + code);
}

bool KeyTranslator::isReleaseChordHeld() const
{
    return std::all_of(mHolders.begin() + firstOfReleaseChord, mHolders.begin() + lastOfReleaseChord + 1,
                       [](quint16 holders) { return holders > 0; });
}

TranslatorOutput KeyTranslator::keyOutput(Meaning meaning, quint16 code, bool isDown)
{
    if (meaning < firstPassed)
        return {.kind = Kind::key, .isDown = isDown, .usage = meaning, .code = code};
    return {.kind = Kind::passedKey, .isDown = isDown, .code = code};
}
