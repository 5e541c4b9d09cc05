// SPDX-License-Identifier: MIT
#include "daemon/keyboards/keypath.h"

#include "daemon/system/deadlinetimer.h"
#include "daemon/system/handover.h"
#include "daemon/system/logging.h"

#include <utility>

KeyPath::KeyPath(KeyChannel &channel, QObject *parent) : KeyPath(channel, KeyClock{.now = DeadlineTimer::now}, parent)
{
    auto *timer = new DeadlineTimer(this); // a child moves to another thread together with the path
    if (!timer->isUsable())
        qCCritical(lcDaemon, "daemon: no timer, macros will not play");
    connect(timer, &DeadlineTimer::reached, this, &KeyPath::wake);
    mClock.wakeAt = [timer](std::optional<Time> deadline) { timer->setDeadline(deadline); };
}

KeyPath::KeyPath(KeyChannel &channel, KeyClock clock, QObject *parent)
    : QObject(parent), mChannel(channel), mClock(std::move(clock))
{
    mChannel.setReceiver(this);
    connect(&mChannel, &KeyChannel::macroKeyPressed, this, &KeyPath::takeMacroKey);
    connect(&mChannel, &KeyChannel::otherKeyPressed, this, &KeyPath::takeOtherKey);
    connect(&mChannel, &KeyChannel::keysLost, this, &KeyPath::releaseAll);
}

KeyPath::~KeyPath()
{
    mChannel.setReceiver(nullptr);
}

KeyPath::SwitchNumber KeyPath::start(KeySettings &settings)
{
    mIsStarted = true;
    mIsSwitchUnanswered = false;
    std::swap(mSettings, settings);
    applySettings();
    return mLastSwitch;
}

void KeyPath::change(std::shared_ptr<Change> change)
{
    if (mIsStarted)
        exchangeSettings(*change);
    change.reset();
    HandOver::give();
    Q_EMIT changeTaken();
}

void KeyPath::exchangeSettings(Change &change)
{
    const bool isUpToDate = change.lastSwitch == mLastSwitch;
    if (!isUpToDate && change.settings.hasProfile(mSettings.activeProfile))
        change.settings.activeProfile = mSettings.activeProfile;
    const bool isAnswer = mIsSwitchUnanswered && isUpToDate;
    // The key's switch has stopped the macros. Those that play now belong to the profile that it chose.
    const bool isOtherProfile =
        isAnswer ? change.settings.activeProfile != mSettings.activeProfile : change.isOtherProfile;
    mIsSwitchUnanswered = !isUpToDate && (mIsSwitchUnanswered || change.isOtherProfile);
    std::swap(mSettings, change.settings);
    if (isUpToDate && isOtherProfile)
        perform(mEngine.stopMacros());
    applySettings();
}

void KeyPath::applySettings()
{
    perform(mEngine.setMacros(mSettings.macros));
    perform(mEngine.setKeyMap(mSettings.profiles[static_cast<std::size_t>(mSettings.activeProfile)]->map));
    perform(mEngine.setGameMode(mSettings.isGameModeOn));
}

void KeyPath::listen(const Listening &listening)
{
    if (listening.lastMacroKey == mLastMacroKey)
        setListening(listening);
}

void KeyPath::setListening(const Listening &listening)
{
    mListening = listening;
    perform(mEngine.setCapturing(listening.isCapturing));
}

void KeyPath::takeMacroKey(Time time)
{
    if (!mIsStarted)
        return;
    switch (mListening.macroKey) {
    case MacroKeyEffect::none: break;
    case MacroKeyEffect::startsRecording:
        mHasReportedPress = false;
        setListening({.isReporting = true, .macroKey = MacroKeyEffect::endsRecording});
        break;
    case MacroKeyEffect::endsRecording:
        if (mHasReportedPress)
            setListening({.isCapturing = true, .macroKey = MacroKeyEffect::discards});
        else
            setListening({});
        break;
    case MacroKeyEffect::discards: setListening({}); break;
    }
    HandOver::give();
    Q_EMIT macroKeyPressed(time, ++mLastMacroKey);
}

void KeyPath::stop()
{
    setListening({});
    releaseAll();
    mIsStarted = false;
}

void KeyPath::releaseAll()
{
    perform(mEngine.releaseAll());
}

void KeyPath::wake()
{
    mWakeTime.reset();
    const Time now = mClock.now();
    perform(mEngine.advance(now));
    rest(now);
}

/// Postpones the next awakening if the macros have been late for too long. `awakening`: the time of this one.
void KeyPath::rest(Time awakening)
{
    const Time now = mClock.now();
    if (!mWakeTime || *mWakeTime > now)
        return mBurstStart.reset();
    if (!mBurstStart)
        mBurstStart = awakening;
    const Time burst = now - *mBurstStart;
    if (burst < longestBurst)
        return;
    mBurstStart.reset();
    mWakeTime = now + burst;
    mClock.wakeAt(mWakeTime);
}

void KeyPath::takeKey(HidUsage key, bool isDown, Time time, HidUsage systemKey)
{
    if (!mIsStarted)
        return;
    if (mListening.isReporting) {
        mHasReportedPress = mHasReportedPress || isDown;
        HandOver::give();
        Q_EMIT keyReported(key, isDown, time);
    }
    perform(isDown ? mEngine.keyDown(key, systemKey, time) : mEngine.keyUp(key, time));
}

void KeyPath::takeOtherKey()
{
    perform(mEngine.otherKeyDown());
}

void KeyPath::perform(const EngineOutputs &outputs)
{
    bool hasSent = false;
    HandOver::give();
    for (const EngineOutput &output : outputs) {
        switch (output.kind) {
        case EngineOutput::Kind::sendDown:
        case EngineOutput::Kind::sendUp:
            mChannel.send(output.usage, output.kind == EngineOutput::Kind::sendDown);
            hasSent = true;
            break;
        case EngineOutput::Kind::captured: Q_EMIT keyCaptured(output.usage, output.modifiers); break;
        case EngineOutput::Kind::switchProfile: chooseProfile(output.profileIndex); break;
        case EngineOutput::Kind::launchProgram: Q_EMIT programChosen(output.program); break;
        }
    }
    if (hasSent)
        mChannel.flush();
    if (const auto deadline = mEngine.nextDeadline(); deadline != mWakeTime) {
        mWakeTime = deadline;
        mClock.wakeAt(deadline);
    }
}

void KeyPath::chooseProfile(int index)
{
    ++mLastSwitch;
    if (mSettings.hasProfile(index) && index != mSettings.activeProfile) {
        mSettings.activeProfile = index;
        mIsSwitchUnanswered = true;
        perform(mEngine.stopMacros());
        perform(mEngine.setKeyMap(mSettings.profiles[static_cast<std::size_t>(index)]->map));
    }
    HandOver::give();
    Q_EMIT profileChosen(index, mLastSwitch);
}
