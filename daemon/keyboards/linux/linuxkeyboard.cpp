// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/linuxkeyboard.h"

#include "daemon/system/handover.h"

#include <algorithm>

using namespace Qt::StringLiterals;

LinuxKeyboard::LinuxKeyboard(QObject *parent)
    : Keyboard(parent), mLight({.folders = {}, .setForeignBrightness = [this](const QString &led, uint brightness) {
                                    mSeatBrightness.set(led, brightness);
                                }})
{
}

LinuxKeyboard::~LinuxKeyboard() = default;

void LinuxKeyboard::start(std::unique_ptr<OutputDevice> output)
{
    mThread = std::make_unique<KeyThread>();
    LinuxKeyChannel *channel = &mThread->channel();
    connect(channel, &LinuxKeyChannel::nodeChanged, this, &LinuxKeyboard::nodeChanged);
    connect(channel, &LinuxKeyChannel::releaseChordPressed, this, &LinuxKeyboard::releaseChordPressed);
    connect(channel, &LinuxKeyChannel::ownKeyPressed, this, &LinuxKeyboard::takeOwnKey);
    connect(mThread.get(), &KeyThread::realTimeChanged, this, &LinuxKeyboard::realTimeChanged);
    callKeys([channel, output = std::move(output)]() mutable { channel->setOutput(std::move(output)); });
}

void LinuxKeyboard::addNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages)
{
    LinuxKeyChannel *channel = &mThread->channel();
    callKeys([channel, file = std::move(file), id, givesHidUsages]() mutable {
        channel->addNode(std::move(file), id, givesHidUsages);
    });
}

void LinuxKeyboard::removeNode(int id)
{
    LinuxKeyChannel *channel = &mThread->channel();
    callKeys([channel, id] { channel->removeNode(id); });
}

void LinuxKeyboard::setNodes(const QStringList &nodes, quint16 version)
{
    if (nodes == mNodes)
        return;
    mNodes = nodes;
    mLight.useNodes(nodes);
    LinuxKeyChannel *channel = &mThread->channel();
    callKeys([channel, isLit = mLight.ledCount() > 0] { channel->setLit(isLit); });
    const bool isAttached = !nodes.isEmpty();
    if (isAttached)
        mFirmwareVersion = u"%1.%2"_s.arg(uint(version >> 8), 0, 16).arg(uint(version & 0xFF), 2, 16, QChar(u'0'));
    if (std::exchange(mIsAttached, isAttached) != isAttached)
        Q_EMIT attachedChanged(isAttached);
}

template <typename Function> void LinuxKeyboard::callKeys(Function function)
{
    QMetaObject::invokeMethod(&mThread->channel(), HandOver::Call{std::move(function)}, Qt::QueuedConnection);
}

void LinuxKeyboard::takeOwnKey(KeyCodes::OwnKey key)
{
    using Own = KeyCodes::OwnKey;
    if (!mIsAttached)
        return; // was released meanwhile
    const int brightness = mLight.settings().brightness;
    if (brightness > Backlight::minimumBrightness)
        mBrightnessWhenOn = brightness;
    switch (key) {
    case Own::none:
    case Own::macro: break;
    case Own::brighter: Q_EMIT brightnessChosen(std::min(brightness + 1, Backlight::maximumBrightness)); break;
    case Own::darker: Q_EMIT brightnessChosen(std::max(brightness - 1, Backlight::minimumBrightness)); break;
    case Own::lightSwitch:
        Q_EMIT brightnessChosen(brightness > Backlight::minimumBrightness ? Backlight::minimumBrightness
                                                                          : mBrightnessWhenOn);
        break;
    }
}
