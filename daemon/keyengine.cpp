// SPDX-License-Identifier: MIT
#include "daemon/keyengine.h"

#include <algorithm>

using Kind = EngineOutput::Kind;

namespace {

constexpr std::size_t usualPresses = 32; // more keys than two hands hold, with their modifiers

/// Calls `function` with the usage of each modifier in `modifiers`, from the lowest bit to the highest.
template <typename Function> void forEachModifier(quint8 modifiers, Function function)
{
    for (quint16 bit = 0; bit < 8; ++bit) {
        if (modifiers & (1 << bit))
            function(HidUsage{HidUsage::keyboardPage, static_cast<quint16>(HidUsage::firstModifier + bit)});
    }
}

} // namespace

KeyEngine::KeyEngine()
{
    mPresses.reserve(usualPresses);
    mSent.reserve(usualPresses);
}

EngineOutputs KeyEngine::setGameMode(bool isOn)
{
    EngineOutputs outputs;
    mIsGameModeOn = isOn;
    if (!isOn)
        return outputs;
    for (Press &press : mPresses) {
        if (press.key.isCommand())
            letGo(press, outputs);
    }
    return outputs;
}

EngineOutputs KeyEngine::keyDown(HidUsage key, Time)
{
    EngineOutputs outputs;
    if (std::ranges::find(mPresses, key, &Press::key) != mPresses.end())
        return outputs;
    const quint8 modifiers = heldModifiers();
    Press &press = mPresses.emplace_back(Press{.key = key});
    const bool isKey = key.page == HidUsage::keyboardPage && key.usage <= HidUsage::lastKey;
    if (mIsCapturing) {
        if (isKey)
            outputs.append({.kind = Kind::captured, .usage = key, .modifiers = modifiers});
    } else if (!isKey) {
        sendKey(press, 0, key, outputs);
    } else if (!mIsGameModeOn || !key.isCommand()) {
        begin(press, mMap.assignment(key.usage), outputs);
    }
    return outputs;
}

EngineOutputs KeyEngine::keyUp(HidUsage key, Time)
{
    EngineOutputs outputs;
    const auto press = std::ranges::find(mPresses, key, &Press::key);
    if (press == mPresses.end())
        return outputs;
    letGo(*press, outputs);
    mPresses.erase(press);
    return outputs;
}

EngineOutputs KeyEngine::releaseAll()
{
    EngineOutputs outputs;
    for (auto press = mPresses.rbegin(); press != mPresses.rend(); ++press)
        letGo(*press, outputs);
    mPresses.clear();
    return outputs;
}

EngineOutputs KeyEngine::advance(Time)
{
    return {};
}

std::optional<KeyEngine::Time> KeyEngine::nextDeadline() const
{
    return {};
}

QList<HidUsage> KeyEngine::sentDown() const
{
    QList<HidUsage> usages;
    for (const SentUsage &sent : mSent)
        usages += sent.usage;
    return usages;
}

void KeyEngine::begin(Press &press, const KeyAssignment &assignment, EngineOutputs &outputs)
{
    switch (assignment.kind) {
    case KeyAssignment::Kind::sendKey:
        sendKey(press, assignment.modifiers, {HidUsage::keyboardPage, assignment.key}, outputs);
        break;
    case KeyAssignment::Kind::switchProfile:
        outputs.append({.kind = Kind::switchProfile, .profileIndex = assignment.index});
        break;
    case KeyAssignment::Kind::launchProgram:
        outputs.append({.kind = Kind::launchProgram, .program = assignment.program});
        break;
    case KeyAssignment::Kind::playMacro: // the key itself sends nothing
    case KeyAssignment::Kind::disabled: break;
    }
}

void KeyEngine::sendKey(Press &press, quint8 modifiers, HidUsage usage, EngineOutputs &outputs)
{
    press.modifiers = modifiers;
    if (usage.usage != 0 && !(usage.modifierBit() & modifiers)) // a modifier of itself is sent once
        press.sent = usage;
    forEachModifier(press.modifiers, [&](HidUsage modifier) { sendDown(modifier, outputs); });
    if (press.sent.usage != 0)
        sendDown(press.sent, outputs);
}

void KeyEngine::letGo(Press &press, EngineOutputs &outputs)
{
    if (press.sent.usage != 0)
        sendUp(press.sent, outputs);
    forEachModifier(press.modifiers, [&](HidUsage modifier) { sendUp(modifier, outputs); });
    press = Press{.key = press.key};
}

void KeyEngine::sendDown(HidUsage usage, EngineOutputs &outputs)
{
    const auto sent = std::ranges::find(mSent, usage, &SentUsage::usage);
    if (sent != mSent.end()) {
        ++sent->holders;
        return;
    }
    mSent.push_back({.usage = usage, .holders = 1});
    outputs.append({.kind = Kind::sendDown, .usage = usage});
}

void KeyEngine::sendUp(HidUsage usage, EngineOutputs &outputs)
{
    const auto sent = std::ranges::find(mSent, usage, &SentUsage::usage);
    if (--sent->holders > 0)
        return;
    mSent.erase(sent);
    outputs.append({.kind = Kind::sendUp, .usage = usage});
}

quint8 KeyEngine::heldModifiers() const
{
    quint8 modifiers = 0;
    for (const Press &press : mPresses)
        modifiers |= press.key.modifierBit();
    return modifiers;
}
