// SPDX-License-Identifier: MIT
// An event device without a kernel, for millions of events: unlike FakeNode it wakes its reader once for each report,
// takes the time from the test, and can drop events. Used on the test's thread.
#pragma once

#include "daemon/keyboards/linux/eventfile.h"

#include <linux/input-event-codes.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <vector>

class StormNode
{
public:
    StormNode() : mWakeUp(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~StormNode() { ::close(mWakeUp); }
    StormNode(const StormNode &) = delete;
    StormNode &operator=(const StormNode &) = delete;

    /// Reports a key, or only changes its state in the kernel, whose event is lost.
    void change(quint16 code, quint32 scanCode, bool isDown, KeyTranslator::Time time, bool isLost = false)
    {
        mDown.set(code, isDown);
        if (isLost) {
            mHasDropped = true;
            return;
        }
        if (scanCode != 0)
            mQueue.push_back({.type = EV_MSC, .code = MSC_SCAN, .value = static_cast<int>(scanCode), .time = time});
        mQueue.push_back({.type = EV_KEY, .code = code, .value = isDown ? 1 : 0, .time = time});
    }
    /// Ends the report, and wakes the reader.
    void report(KeyTranslator::Time time)
    {
        mTime = time;
        mQueue.push_back({.type = EV_SYN, .code = SYN_REPORT, .time = time});
        wake();
    }
    void unplug()
    {
        mIsGone = true;
        wake();
    }

    void setTime(KeyTranslator::Time time) { mTime = time; }

    [[nodiscard]] const EventFile::Keys &down() const { return mDown; }
    [[nodiscard]] bool isGrabbed() const { return mIsGrabbed; }
    [[nodiscard]] bool isUnread() const { return mIsGone || mHasDropped || mNext < mQueue.size(); }

    [[nodiscard]] std::unique_ptr<EventFile> open() { return std::make_unique<File>(*this); }

private:
    class File : public EventFile
    {
    public:
        explicit File(StormNode &node) : mNode(node) {}
        ~File() override { mNode.mIsGrabbed = false; }

        [[nodiscard]] int descriptor() const override { return mNode.mWakeUp; }
        [[nodiscard]] ReadResult read(KeyTranslator::Event &event) override { return mNode.read(event); }
        [[nodiscard]] int setGrabbed(bool isGrabbed) override
        {
            mNode.mIsGrabbed = isGrabbed && !mNode.mIsGone;
            return mNode.mIsGone ? ENODEV : 0;
        }
        [[nodiscard]] Keys keysDown() override
        {
            mNode.mQueue.clear(); // the kernel also drops them
            mNode.mNext = 0;
            mNode.mKnown = mNode.mDown;
            return mNode.mDown;
        }
        void inject(quint16 code, bool isDown) override
        {
            mNode.change(code, 0, isDown, mNode.mTime);
            mNode.report(mNode.mTime);
        }
        void setLed(quint16, bool) override {}

    private:
        StormNode &mNode;
    };

    void wake()
    {
        if (::eventfd_write(mWakeUp, 1) != 0)
            qFatal("cannot wake the reader");
    }

    [[nodiscard]] EventFile::ReadResult read(KeyTranslator::Event &event)
    {
        if (mIsGone) {
            mIsGrabbed = false;
            return EventFile::ReadResult::gone;
        }
        if (mHasDropped) {
            findMissed();
            return EventFile::ReadResult::dropped;
        }
        if (mNext == mQueue.size()) {
            eventfd_t value = 0;
            (void)::eventfd_read(mWakeUp, &value);
            mQueue.clear();
            mNext = 0;
            return EventFile::ReadResult::nothing;
        }
        event = mQueue[mNext++];
        if (event.type == EV_KEY)
            mKnown.set(event.code, event.value != 0);
        return EventFile::ReadResult::event;
    }

    /// Like libevdev: the differences in the order of the codes, without scan codes.
    void findMissed()
    {
        mHasDropped = false;
        mQueue.clear();
        mNext = 0;
        for (std::size_t code = 0; code < mDown.size(); ++code) {
            if (mDown[code] != mKnown[code])
                change(static_cast<quint16>(code), 0, mDown[code], mTime);
        }
        mQueue.push_back({.type = EV_SYN, .code = SYN_REPORT, .time = mTime});
    }

    int mWakeUp;
    std::vector<KeyTranslator::Event> mQueue;
    std::size_t mNext = 0;
    EventFile::Keys mDown;
    EventFile::Keys mKnown; // to the reader
    KeyTranslator::Time mTime{};
    bool mIsGrabbed = false;
    bool mHasDropped = false;
    bool mIsGone = false;
};
