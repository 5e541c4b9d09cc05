// SPDX-License-Identifier: MIT
#include "tests/daemon/keyboards/linux/fakeeventfile.h"

#include "daemon/system/deadlinetimer.h"

#include <linux/input-event-codes.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class FakeEventFile : public EventFile
{
public:
    explicit FakeEventFile(FakeNode &node) : mNode(node)
    {
        const std::lock_guard lock(mNode.mMutex);
        mNode.mIsOpen = true;
    }

    ~FakeEventFile() override
    {
        const std::lock_guard lock(mNode.mMutex);
        mNode.mIsGrabbed = false; // like the kernel when the file is closed
        mNode.mIsOpen = false;
    }

    [[nodiscard]] int descriptor() const override { return mNode.mPipe[0]; }

    [[nodiscard]] ReadResult read(KeyTranslator::Event &event) override
    {
        const std::lock_guard lock(mNode.mMutex);
        if (mNode.mIsGone && mNode.mQueue.empty())
            return ReadResult::gone;
        if (std::exchange(mNode.mHasDropped, false))
            return ReadResult::dropped;
        if (mNode.mQueue.empty()) {
            char bytes[64];
            while (::read(mNode.mPipe[0], bytes, sizeof bytes) > 0) {
            }
            return ReadResult::nothing;
        }
        event = mNode.mQueue.front();
        mNode.mQueue.pop_front();
        return ReadResult::event;
    }

    [[nodiscard]] int setGrabbed(bool isGrabbed) override
    {
        const std::lock_guard lock(mNode.mMutex);
        if (const auto beforeGrab = isGrabbed ? mNode.mBeforeGrab : nullptr) // a copy, because it may set another
            beforeGrab();
        if (mNode.mIsGone)
            return ENODEV;
        if (isGrabbed && mNode.mGrabError)
            return mNode.mGrabError;
        mNode.mIsGrabbed = isGrabbed;
        return 0;
    }

    [[nodiscard]] Keys keysDown() override
    {
        const std::lock_guard lock(mNode.mMutex);
        std::erase_if(mNode.mQueue, [](const KeyTranslator::Event &event) { return event.type == EV_KEY; });
        return mNode.mDown;
    }

    void inject(quint16 code, bool isDown) override { mNode.change(code, isDown, 0); }

    [[nodiscard]] Switches switchesOn() override
    {
        const std::lock_guard lock(mNode.mMutex);
        std::erase_if(mNode.mQueue, [](const KeyTranslator::Event &event) { return event.type == EV_SW; });
        return mNode.mOn;
    }

    void injectSwitch(quint16 code, bool isOn) override { mNode.setSwitch(code, isOn); }

    void setLed(quint16 led, bool isOn) override
    {
        const std::lock_guard lock(mNode.mMutex);
        mNode.mLeds += u"%1 %2"_s.arg(led).arg(isOn ? "on"_L1 : "off"_L1);
    }

private:
    FakeNode &mNode;
};

FakeNode::FakeNode()
{
    if (::pipe2(mPipe, O_NONBLOCK | O_CLOEXEC) != 0)
        qFatal("no pipe");
}

FakeNode::~FakeNode()
{
    ::close(mPipe[0]);
    ::close(mPipe[1]);
}

void FakeNode::press(quint16 code, quint32 scanCode)
{
    change(code, true, scanCode);
}

void FakeNode::release(quint16 code, quint32 scanCode)
{
    change(code, false, scanCode);
}

void FakeNode::repeat(quint16 code)
{
    const std::lock_guard lock(mMutex);
    queue({.type = EV_KEY, .code = code, .value = 2});
    queue({.type = EV_SYN});
}

/// Like the kernel, ignores changes to the same state.
void FakeNode::setSwitch(quint16 code, bool isOn)
{
    const std::lock_guard lock(mMutex);
    if (mOn[code] == isOn)
        return;
    mOn[code] = isOn;
    if (!mIsGrabbed)
        mSeenByDesktop += u"switch %1 %2"_s.arg(code).arg(isOn ? "on"_L1 : "off"_L1);
    queue({.type = EV_SW, .code = code, .value = isOn ? 1 : 0});
    queue({.type = EV_SYN});
}

void FakeNode::setVolume(int value)
{
    const std::lock_guard lock(mMutex);
    if (!mIsGrabbed)
        mSeenByDesktop += u"volume %1"_s.arg(value);
    queue({.type = EV_ABS, .code = ABS_VOLUME, .value = value});
    queue({.type = EV_SYN});
}

void FakeNode::dropEvents()
{
    const std::lock_guard lock(mMutex);
    mHasDropped = true;
    queue({.type = EV_SYN});
}

void FakeNode::unplug()
{
    const std::lock_guard lock(mMutex);
    mIsGone = true;
    queue({.type = EV_SYN});
}

bool FakeNode::isGrabbed() const
{
    const std::lock_guard lock(mMutex);
    return mIsGrabbed;
}

bool FakeNode::isOpen() const
{
    const std::lock_guard lock(mMutex);
    return mIsOpen;
}

QStringList FakeNode::seenByDesktop() const
{
    const std::lock_guard lock(mMutex);
    return mSeenByDesktop;
}

QStringList FakeNode::leds() const
{
    const std::lock_guard lock(mMutex);
    return mLeds;
}

std::size_t FakeNode::unread() const
{
    const std::lock_guard lock(mMutex);
    return mQueue.size();
}

void FakeNode::setGrabError(int error)
{
    const std::lock_guard lock(mMutex);
    mGrabError = error;
}

void FakeNode::setBeforeGrab(std::function<void()> function)
{
    const std::lock_guard lock(mMutex);
    mBeforeGrab = std::move(function);
}

std::unique_ptr<EventFile> FakeNode::open()
{
    return std::make_unique<FakeEventFile>(*this);
}

/// Like the kernel, ignores changes to the same state.
void FakeNode::change(quint16 code, bool isDown, quint32 scanCode)
{
    const std::lock_guard lock(mMutex);
    if (mDown[code] == isDown)
        return;
    mDown[code] = isDown;
    if (!mIsGrabbed)
        mSeenByDesktop += u"%1 %2"_s.arg(code).arg(isDown ? "down"_L1 : "up"_L1);
    if (scanCode != 0)
        queue({.type = EV_MSC, .code = MSC_SCAN, .value = static_cast<int>(scanCode)});
    queue({.type = EV_KEY, .code = code, .value = isDown ? 1 : 0});
    queue({.type = EV_SYN});
}

void FakeNode::queue(const KeyTranslator::Event &event)
{
    mQueue.push_back(event);
    mQueue.back().time = DeadlineTimer::now();
    if (::write(mPipe[1], "", 1) != 1 && errno != EAGAIN)
        qFatal("cannot wake the reader");
}
