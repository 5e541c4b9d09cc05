// SPDX-License-Identifier: MIT
// A keyboard's event node without a kernel: the test presses its keys, and sees what the node's other readers (the
// desktop) would have received. Any one thread at a time; the test and the key thread take turns.
#pragma once

#include "daemon/keyboards/linux/eventfile.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

/// What the kernel does, shared by the file and the test: outlives the file.
class FakeNode
{
public:
    FakeNode();
    ~FakeNode();

    // What the keyboard does
    void press(quint16 code, quint32 scanCode = 0);
    void release(quint16 code, quint32 scanCode = 0);
    void repeat(quint16 code);
    void dropEvents();
    void unplug();

    // What has become of it
    [[nodiscard]] bool isGrabbed() const;
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] QStringList seenByDesktop() const; ///< "30 down"
    [[nodiscard]] QStringList leds() const;          ///< "1 on"
    [[nodiscard]] std::size_t unread() const;

    void setGrabError(int error);
    /// What happens each time just before the node is grabbed for the daemon.
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
    QStringList mSeenByDesktop;
    QStringList mLeds;
    std::function<void()> mBeforeGrab;
    int mGrabError = 0;
    bool mIsOpen = false;
    bool mIsGrabbed = false;
    bool mHasDropped = false;
    bool mIsGone = false;
};
