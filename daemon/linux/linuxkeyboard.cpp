// SPDX-License-Identifier: MIT
#include "daemon/linux/linuxkeyboard.h"

using namespace Qt::StringLiterals;

LinuxKeyboard::LinuxKeyboard(QObject *parent) : Keyboard(parent) {}

LinuxKeyboard::~LinuxKeyboard() = default;

void LinuxKeyboard::start(std::unique_ptr<OutputDevice> output)
{
    mThread = std::make_unique<KeyThread>();
    LinuxKeyChannel *channel = &mThread->channel();
    connect(channel, &LinuxKeyChannel::nodeChanged, this, &LinuxKeyboard::nodeChanged);
    connect(channel, &LinuxKeyChannel::panicked, this, &LinuxKeyboard::panicked);
    connect(mThread.get(), &KeyThread::realTimeChanged, this, &LinuxKeyboard::realTimeChanged);
    QMetaObject::invokeMethod(
        channel, [channel, output = std::move(output)]() mutable { channel->setOutput(std::move(output)); },
        Qt::QueuedConnection);
}

void LinuxKeyboard::send(HidUsage usage, bool isDown)
{
    LinuxKeyChannel *channel = &mThread->channel();
    QMetaObject::invokeMethod(
        channel,
        [channel, usage, isDown] {
            channel->send(usage, isDown);
            channel->flush();
        },
        Qt::QueuedConnection);
}

void LinuxKeyboard::addNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages)
{
    LinuxKeyChannel *channel = &mThread->channel();
    QMetaObject::invokeMethod(
        channel,
        [channel, file = std::move(file), id, givesHidUsages]() mutable {
            channel->addNode(std::move(file), id, givesHidUsages);
        },
        Qt::QueuedConnection);
}

void LinuxKeyboard::removeNode(int id)
{
    LinuxKeyChannel *channel = &mThread->channel();
    QMetaObject::invokeMethod(
        channel, [channel, id] { channel->removeNode(id); }, Qt::QueuedConnection);
}

void LinuxKeyboard::setAttached(bool isAttached, quint16 version)
{
    if (isAttached)
        mFirmwareVersion = u"%1.%2"_s.arg(uint(version >> 8), 0, 16).arg(uint(version & 0xFF), 2, 16, QChar(u'0'));
    if (std::exchange(mIsAttached, isAttached) != isAttached)
        Q_EMIT attachedChanged(isAttached);
}
