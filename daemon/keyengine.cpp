// SPDX-License-Identifier: MIT
#include "daemon/keyengine.h"

#include <algorithm>

using Kind = EngineOutput::Kind;

QList<EngineOutput> KeyEngine::keyDown(HidUsage key, Time)
{
    if (mHeld.contains(key))
        return {};
    QList<HidUsage> &sent = mHeld[key];
    QList<EngineOutput> outputs;
    const KeyAssignment assignment =
        key.page == HidUsage::keyboardPage ? mMap.assignment(key.usage) : KeyAssignment{.key = key.usage, .program = {}};
    switch (assignment.kind) {
    case KeyAssignment::Kind::sendKey:
        sent = usagesOf(key, assignment);
        for (const HidUsage usage : std::as_const(sent))
            send(outputs, usage, true);
        break;
    case KeyAssignment::Kind::switchProfile:
        outputs += EngineOutput{.kind = Kind::switchProfile, .profileIndex = assignment.index};
        break;
    case KeyAssignment::Kind::launchProgram:
        outputs += EngineOutput{.kind = Kind::launchProgram, .program = assignment.program};
        break;
    case KeyAssignment::Kind::disabled:
    case KeyAssignment::Kind::playMacro:
        break;
    }
    return outputs;
}

QList<EngineOutput> KeyEngine::keyUp(HidUsage key, Time)
{
    QList<EngineOutput> outputs;
    const QList<HidUsage> sent = mHeld.take(key);
    for (auto usage = sent.crbegin(); usage != sent.crend(); ++usage)
        send(outputs, *usage, false);
    return outputs;
}

QList<EngineOutput> KeyEngine::releaseAll()
{
    QList<EngineOutput> outputs;
    while (!mHeld.isEmpty())
        outputs += keyUp(mHeld.lastKey(), {});
    return outputs;
}

QList<EngineOutput> KeyEngine::advance(Time)
{
    return {};
}

std::optional<KeyEngine::Time> KeyEngine::nextDeadline() const
{
    return {};
}

void KeyEngine::send(QList<EngineOutput> &outputs, HidUsage usage, bool isDown)
{
    int &count = mSentCount[usage];
    count += isDown ? 1 : -1;
    if (isDown && count == 1)
        outputs += EngineOutput{.kind = Kind::sendDown, .usage = usage};
    if (count == 0) {
        outputs += EngineOutput{.kind = Kind::sendUp, .usage = usage};
        mSentCount.remove(usage);
    }
}

QList<HidUsage> KeyEngine::usagesOf(HidUsage key, const KeyAssignment &assignment) const
{
    QList<HidUsage> usages;
    for (int bit = 0; bit < 8; ++bit) {
        if (assignment.modifiers & (1 << bit))
            usages += HidUsage{HidUsage::keyboardPage, static_cast<quint16>(HidUsage::firstModifier + bit)};
    }
    const HidUsage sent{key.page, assignment.key};
    if (assignment.key != 0 && !usages.contains(sent))
        usages += sent;
    return usages;
}
