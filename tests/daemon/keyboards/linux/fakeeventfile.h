// SPDX-License-Identifier: MIT
// A keyboard's event device without a kernel. The test presses its keys, and sees what the other readers of the device
// (the desktop) would have received. Any one thread at a time may use it; the test and the key thread take turns.
#pragma once

#include "daemon/keyboards/linux/eventfile.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

/// Does the kernel's part. The file and the test share it; it outlives the file.
class FakeNode
{
public:
    FakeNode();
    ~FakeNode();

    // Input of the keyboard
    void press(quint16 code, quint32 scanCode = 0);
    void release(quint16 code, quint32 scanCode = 0);
    void repeat(quint16 code);
    void setSwitch(quint16 code, bool isOn);
    void setVolume(int value);
    void dropEvents();
    void unplug();

    // State of the device
    [[nodiscard]] bool isGrabbed() const;
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] QStringList seenByDesktop() const; ///< "30 down", "switch 2 on", "volume 7"
    [[nodiscard]] QStringList leds() const;          ///< "1 on"
    [[nodiscard]] std::size_t unread() const;

    void setGrabError(int error);
    /// `function` runs each time just before the daemon grabs the device.
    void setBeforeGrab(std::function<void()> function);

    [[nodiscard]] std::unique_ptr<EventFile> open();

private:
    friend class FakeEventFile;

    void change(quint16 code, bool isDown, quint32 scanCode);
    void queue(const KeyTranslator::Event &event);

    mutable std::recursive_mutex mMutex;
    int mPipe[2] = {-1, -1};
    std::deque<KeyTranslator::Event> mQueue;
    EventFile::Keys mDown;
    EventFile::Switches mOn;
    QStringList mSeenByDesktop;
    QStringList mLeds;
    std::function<void()> mBeforeGrab;
    int mGrabError = 0;
    bool mIsOpen = false;
    bool mIsGrabbed = false;
    bool mHasDropped = false;
    bool mIsGone = false;
};
