// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/linuxkeychannel.h"

#include "daemon/system/deadlinetimer.h"

#include <algorithm>

LinuxKeyChannel::LinuxKeyChannel(QObject *parent) : KeyChannel(parent) {}

LinuxKeyChannel::~LinuxKeyChannel()
{
    removeAllNodes();
}

void LinuxKeyChannel::setOutput(std::unique_ptr<OutputDevice> output)
{
    mOutput = std::move(output);
    mOutput->setTap(tap());
    mLedNotifier = std::make_unique<QSocketNotifier>(mOutput->descriptor(), QSocketNotifier::Read);
    connect(mLedNotifier.get(), &QSocketNotifier::activated, this, &LinuxKeyChannel::showLeds);
}

void LinuxKeyChannel::addNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages,
                              std::chrono::milliseconds patience)
{
    deleteFinishedDevices();
    EventDeviceHandler &handler = *this;
    mNodes.push_back(std::make_unique<EventDevice>(std::move(file), id, givesHidUsages, handler, patience));
    mNodes.back()->start();
}

void LinuxKeyChannel::removeNode(int id)
{
    for (const std::unique_ptr<EventDevice> &node : mNodes) {
        if (node->id() == id)
            node->ungrab();
    }
    deleteFinishedDevices();
}

void LinuxKeyChannel::removeAllNodes()
{
    for (const std::unique_ptr<EventDevice> &node : mNodes)
        node->ungrab();
    deleteFinishedDevices();
}

void LinuxKeyChannel::send(HidUsage usage, bool isDown)
{
    const std::optional<quint16> code = KeyCodes::linuxCode(usage);
    if (!mOutput || !code)
        return;
    if (!isDown)
        mOutput->release(*code);
    else if (mGrabbedNodes > 0)
        mOutput->press(*code);
}

void LinuxKeyChannel::flush()
{
    if (mOutput)
        mOutput->flush();
}

inline void LinuxKeyChannel::actOn(TranslatorOutput output, Time time)
{
    if (tap().isOn())
        addToTap(output);
    switch (output.kind) {
    case TranslatorOutput::Kind::none: break;
    case TranslatorOutput::Kind::key: announceKey(output.usage, output.code, output.isDown, time); break;
    case TranslatorOutput::Kind::passedKey: passKey(output.code, output.isDown, time); break;
    case TranslatorOutput::Kind::motion: mOutput->moveWheel(output.code, output.value); break;
    case TranslatorOutput::Kind::volume: mOutput->setVolume(output.value); break;
    case TranslatorOutput::Kind::toggle: mOutput->setSwitch(output.code, output.isDown); break;
    case TranslatorOutput::Kind::releaseChord: ungrabAll(); break;
    }
}

void LinuxKeyChannel::addToTap(TranslatorOutput output)
{
    constexpr KeyTap::Side side = KeyTap::Side::keyboard;
    switch (output.kind) {
    case TranslatorOutput::Kind::key: tap().addKey(side, {HidUsage::keyboardPage, output.usage}, output.isDown); break;
    case TranslatorOutput::Kind::passedKey: tap().addEvent(side, EV_KEY, output.code, output.isDown); break;
    case TranslatorOutput::Kind::motion: tap().addEvent(side, EV_REL, output.code, output.value); break;
    case TranslatorOutput::Kind::volume: tap().addEvent(side, EV_ABS, output.code, output.value); break;
    case TranslatorOutput::Kind::toggle: tap().addEvent(side, EV_SW, output.code, output.isDown); break;
    case TranslatorOutput::Kind::none:
    case TranslatorOutput::Kind::releaseChord: break;
    }
}

void LinuxKeyChannel::nodeEvent(EventDevice &node, const KeyTranslator::Event &event)
{
    actOn(mTranslator.take(node.translatorPlace, event), event.time);
}

void LinuxKeyChannel::nodeRead(EventDevice &)
{
    flush();
    if (const std::optional<Time> time = std::exchange(mOldestKey, {}))
        mHistogram.add(DeadlineTimer::now() - *time);
}

void LinuxKeyChannel::nodeDroppedEvents(EventDevice &)
{
    mLostEvents.fetch_add(1, std::memory_order_relaxed);
}

void LinuxKeyChannel::nodeStateChanged(EventDevice &node)
{
    if (node.state() == EventDevice::State::grabbed) {
        node.translatorPlace = mTranslator.addNode(node.givesHidUsages());
        if (node.translatorPlace < 0)
            return node.ungrab(); // more nodes than places: the desktop keeps this one
        if (++mGrabbedNodes == 1) {
            mHistogram.clear();
            mLostEvents = 0;
        }
        for (quint16 led = 0; led < mLeds.size(); ++led)
            node.setLed(led, mLeds[led]);
    } else if (node.translatorPlace >= 0) {
        removeFromTranslator(node);
    }
    Q_EMIT nodeChanged(node.id(), node.state(), node.error());
}

void LinuxKeyChannel::removeFromTranslator(EventDevice &node)
{
    const int place = std::exchange(node.translatorPlace, -1);
    const Time now = DeadlineTimer::now();
    TranslatorOutput output;
    while ((output = mTranslator.removeNode(place)).kind != TranslatorOutput::Kind::none)
        actOn(output, now);
    mOldestKey.reset(); // these keys came up without a release by the user, so they are not measured
    if (--mGrabbedNodes > 0)
        return flush();
    Q_EMIT keysLost();
    mOutput->releaseAll(); // in case anything is left
    flush();
}

void LinuxKeyChannel::announceKey(quint16 usage, quint16 code, bool isDown, Time time)
{
    if (!mOldestKey)
        mOldestKey = time;
    // Of two nodes, the one that is read later may have the older event.
    mLatestTime = std::max(mLatestTime, time);
    keyChanged({HidUsage::keyboardPage, usage}, isDown, mLatestTime, KeyCodes::systemKeyOfCode(code));
}

bool LinuxKeyChannel::takeOwnKey(quint16 code, bool isDown, Time time)
{
    const KeyCodes::OwnKey key = KeyCodes::ownKey(code);
    const bool isOurs = key == KeyCodes::OwnKey::macro || (key != KeyCodes::OwnKey::none && mIsLit);
    const bool isTaken = isDown ? isOurs : mOwnDown[code]; // a release goes to the receiver of the press
    mOwnDown[code] = isDown && isTaken;
    if (isDown && isTaken) {
        mLatestTime = std::max(mLatestTime, time);
        if (key == KeyCodes::OwnKey::macro)
            Q_EMIT macroKeyPressed(mLatestTime);
        else
            Q_EMIT ownKeyPressed(key);
    }
    return isTaken;
}

void LinuxKeyChannel::passKey(quint16 code, bool isDown, Time time)
{
    if (takeOwnKey(code, isDown, time))
        return;
    if (!mOldestKey)
        mOldestKey = time;
    if (isDown) {
        Q_EMIT otherKeyPressed();
        mOutput->press(code);
    } else {
        mOutput->release(code);
    }
}

void LinuxKeyChannel::ungrabAll()
{
    for (const std::unique_ptr<EventDevice> &node : mNodes)
        node->ungrab();
    Q_EMIT releaseChordPressed();
}

void LinuxKeyChannel::showLeds()
{
    mOutput->readLeds([this](quint16 led, bool isOn) {
        if (led >= mLeds.size())
            return;
        mLeds[led] = isOn;
        for (const std::unique_ptr<EventDevice> &node : mNodes)
            node->setLed(led, isOn);
    });
}

/// Destroys nodes that are neither waiting nor grabbed. Must not be called during a call of a node.
void LinuxKeyChannel::deleteFinishedDevices()
{
    std::erase_if(mNodes, [](const std::unique_ptr<EventDevice> &node) {
        return node->state() != EventDevice::State::waiting && node->state() != EventDevice::State::grabbed;
    });
}
