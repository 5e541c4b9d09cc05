// SPDX-License-Identifier: MIT
#include "daemon/engine/keyengine.h"

#include <algorithm>
#include <utility>

using Kind = EngineOutput::Kind;

namespace {

constexpr std::size_t usualPresses = 32; // more keys than two hands hold, with their modifiers
constexpr std::size_t usualSent = 512;   // more than there are keys and playable buttons
constexpr quint8 allModifiers = 0xFF;

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
    mSent.reserve(usualSent);
    mPlaybacks.reserve(maximumPlaybacks);
}

EngineOutputs KeyEngine::setKeyMap(const KeyMap &map)
{
    EngineOutputs outputs;
    mMap = map;
    stopMacrosIf(
        [this](const MacroPlayback &playback) {
            const KeyAssignment &assignment = mMap.assignment(playback.trigger().usage);
            return !playback.isMeantBy(assignment, macroAt(assignment.index));
        },
        outputs);
    return outputs;
}

EngineOutputs KeyEngine::setMacros(const PlayableMacros &macros)
{
    EngineOutputs outputs;
    mMacros = macros;
    stopMacrosIf(
        [this](const MacroPlayback &playback) { return std::ranges::find(mMacros, playback.macro()) == mMacros.end(); },
        outputs);
    return outputs;
}

EngineOutputs KeyEngine::stopMacros()
{
    EngineOutputs outputs;
    stopMacrosIf([](const MacroPlayback &) { return true; }, outputs);
    return outputs;
}

EngineOutputs KeyEngine::setCapturing(bool isCapturing)
{
    mIsCapturing = isCapturing;
    return isCapturing ? stopMacros() : EngineOutputs();
}

EngineOutputs KeyEngine::setGameMode(bool isOn)
{
    EngineOutputs outputs;
    mIsGameModeOn = isOn;
    if (!isOn)
        return outputs;
    for (Press &press : mPresses) {
        if (press.key.isCommand())
            endPress(press, outputs);
    }
    stopMacrosIf([](const MacroPlayback &playback) { return playback.trigger().isCommand(); }, outputs);
    return outputs;
}

EngineOutputs KeyEngine::keyDown(HidUsage key, HidUsage systemKey, Time now)
{
    EngineOutputs outputs;
    if (std::ranges::find(mPresses, key, &Press::key) != mPresses.end())
        return outputs;
    const quint8 modifiers = heldModifiers();
    Press &press = mPresses.emplace_back(Press{.key = key, .systemKey = systemKey, .isCaptured = mIsCapturing});
    const bool isKey = key.page == HidUsage::keyboardPage && key.usage <= HidUsage::lastKey;
    if (mIsCapturing) {
        if (isKey)
            outputs.append({.kind = Kind::captured, .usage = key, .modifiers = modifiers});
    } else if (!isKey) {
        sendKey(press, 0, systemKey, outputs);
    } else if (!mIsGameModeOn || !key.isCommand()) {
        begin(press, mMap.assignment(key.usage), now, outputs);
    }
    return outputs;
}

EngineOutputs KeyEngine::keyUp(HidUsage key, Time)
{
    EngineOutputs outputs;
    const auto press = std::ranges::find(mPresses, key, &Press::key);
    if (press == mPresses.end())
        return outputs;
    endPress(*press, outputs);
    mPresses.erase(press);
    return outputs;
}

EngineOutputs KeyEngine::otherKeyDown()
{
    EngineOutputs outputs;
    liftModifiers(allModifiers, nullptr, outputs);
    return outputs;
}

EngineOutputs KeyEngine::releaseAll()
{
    EngineOutputs outputs = stopMacros();
    for (auto press = mPresses.rbegin(); press != mPresses.rend(); ++press)
        endPress(*press, outputs);
    mPresses.clear();
    return outputs;
}

EngineOutputs KeyEngine::advance(Time now)
{
    EngineOutputs outputs;
    for (int count = 0; count < eventsPerAdvance && !mPlaybacks.empty(); ++count) {
        const auto next = std::ranges::min_element(mPlaybacks, {}, &MacroPlayback::due);
        if (next->due() > now)
            break;
        if (const std::optional<MacroPlayback::Change> change = next->takeNext(now)) {
            if (change->isDown)
                pressByMacro(change->usage, outputs);
            else
                sendUp(change->usage, outputs);
        }
        if (next->isOver())
            mPlaybacks.erase(next);
    }
    return outputs;
}

std::optional<KeyEngine::Time> KeyEngine::nextDeadline() const
{
    if (mPlaybacks.empty())
        return {};
    return std::ranges::min_element(mPlaybacks, {}, &MacroPlayback::due)->due();
}

QList<HidUsage> KeyEngine::sentDown() const
{
    QList<HidUsage> usages;
    for (const SentUsage &sent : mSent)
        usages += sent.usage;
    return usages;
}

void KeyEngine::begin(Press &press, const KeyAssignment &assignment, Time now, EngineOutputs &outputs)
{
    switch (assignment.kind) {
    case KeyAssignment::Kind::defaultKey: sendKey(press, 0, press.systemKey, outputs); break;
    case KeyAssignment::Kind::sendKey:
        sendKey(press, assignment.modifiers, {HidUsage::keyboardPage, assignment.key}, outputs);
        break;
    case KeyAssignment::Kind::switchProfile:
        outputs.append({.kind = Kind::switchProfile, .profileIndex = assignment.index});
        break;
    case KeyAssignment::Kind::launchProgram:
        outputs.append({.kind = Kind::launchProgram, .program = assignment.program});
        break;
    case KeyAssignment::Kind::playMacro: playMacro(press.key, assignment, now, outputs); break;
    case KeyAssignment::Kind::disabled: break;
    }
}

void KeyEngine::playMacro(HidUsage trigger, const KeyAssignment &assignment, Time now, EngineOutputs &outputs)
{
    const auto running = std::ranges::find(mPlaybacks, trigger, &MacroPlayback::trigger);
    if (running != mPlaybacks.end()) {
        // A macro with a number of repeats plays all of them; a hasty second press must not cut it off.
        if (running->endsWithNextPress())
            stopMacrosIf([&](const MacroPlayback &playback) { return playback.trigger() == trigger; }, outputs);
        return;
    }
    const PlayableMacro *macro = macroAt(assignment.index);
    if (!macro || macro->steps.empty() || mPlaybacks.size() == maximumPlaybacks)
        return;
    mPlaybacks.emplace_back(trigger, assignment, mMacros[static_cast<std::size_t>(assignment.index)], now);
}

template <typename Condition> void KeyEngine::stopMacrosIf(Condition condition, EngineOutputs &outputs)
{
    for (auto playback = mPlaybacks.begin(); playback != mPlaybacks.end();) {
        if (!condition(std::as_const(*playback))) {
            ++playback;
            continue;
        }
        while (!playback->held().isEmpty())
            sendUp(playback->held().takeFirst(), outputs);
        playback = mPlaybacks.erase(playback);
    }
}

const PlayableMacro *KeyEngine::macroAt(int index) const
{
    return index >= 0 && index < static_cast<int>(mMacros.size()) ? mMacros[static_cast<std::size_t>(index)].get()
                                                                  : nullptr;
}

void KeyEngine::sendKey(Press &press, quint8 modifiers, HidUsage usage, EngineOutputs &outputs)
{
    press.modifiers = modifiers;
    if (usage.usage != 0 && !(usage.modifierBit() & modifiers)) // a key that is also one of its modifiers is sent once
        press.sent = usage;
    if (modifiers == 0 && mAccompaniedPresses == 0) { // an ordinary key
        if (press.sent.usage != 0)
            sendDown(press.sent, outputs);
        return;
    }
    if (press.sendsOrdinaryKey() && isDown(press.sent)) {
        press.modifiers = 0; // nothing is pressed, and an Alt or Meta without a key would open a menu
        return sendDown(press.sent, outputs);
    }
    mAccompaniedPresses += press.isAccompanied();
    const quint8 needed = press.modifiers | press.sent.modifierBit();
    if (needed != 0 || press.sent.usage != 0)
        liftModifiers(static_cast<quint8>(~needed), &press, outputs);
    forEachModifier(press.modifiers, [&](HidUsage modifier) { sendDown(modifier, outputs); });
    if (press.sent.usage != 0)
        sendDown(press.sent, outputs);
    liftModifiers(needed, &press, outputs); // they stay down for this press
}

void KeyEngine::pressByMacro(HidUsage usage, EngineOutputs &outputs)
{
    const quint8 needed = usage.modifierBit();
    if (needed != 0 || !isDown(usage))
        liftModifiers(static_cast<quint8>(~needed), nullptr, outputs);
    sendDown(usage, outputs);
    liftModifiers(needed, nullptr, outputs);
}

/// Ends those modifiers in `lifted` that presses other than `exception` send with an ordinary key.
void KeyEngine::liftModifiers(quint8 lifted, const Press *exception, EngineOutputs &outputs)
{
    if (mAccompaniedPresses == 0)
        return;
    for (Press &press : mPresses) {
        if (&press == exception || !press.isAccompanied())
            continue;
        forEachModifier(press.modifiers & lifted, [&](HidUsage modifier) { sendUp(modifier, outputs); });
        press.modifiers &= static_cast<quint8>(~lifted);
        mAccompaniedPresses -= !press.isAccompanied();
    }
}

void KeyEngine::endPress(Press &press, EngineOutputs &outputs)
{
    stopMacrosIf(
        [&](const MacroPlayback &playback) { return playback.trigger() == press.key && playback.endsWithRelease(); },
        outputs);
    mAccompaniedPresses -= press.isAccompanied();
    if (press.sent.usage != 0)
        sendUp(press.sent, outputs);
    forEachModifier(press.modifiers, [&](HidUsage modifier) { sendUp(modifier, outputs); });
    press.modifiers = 0;
    press.sent = {};
}

bool KeyEngine::isDown(HidUsage usage) const
{
    return std::ranges::find(mSent, usage, &SentUsage::usage) != mSent.end();
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
        modifiers |= press.heldModifiers();
    return modifiers;
}

quint8 KeyEngine::Press::heldModifiers() const
{
    if (isCaptured)
        return systemKey.modifierBit();
    return sendsOrdinaryKey() ? 0 : modifiers | sent.modifierBit();
}
