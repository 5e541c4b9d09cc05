// SPDX-License-Identifier: MIT
// A keyboard whose keys have their own thread, like those of real keyboards. Used on the test's thread, except for
// functions that are passed to the key thread.
#pragma once

#include "daemon/keyboards/keyboard.h"
#include "daemon/system/handover.h"
#include "tests/support/notingchannel.h"

#include <QThread>

#include <memory>
#include <utility>

class ThreadedKeyboard : public Keyboard
{
public:
    ThreadedKeyboard() : mChannel(std::make_unique<NotingChannel>()), mKeys(std::make_unique<KeyPath>(*mChannel))
    {
        mChannel->moveToThread(&mThread);
        mKeys->moveToThread(&mThread);
        mThread.start();
    }
    ~ThreadedKeyboard() override
    {
        runOnKeys([this](NotingChannel &) { mKeys.reset(); });
        mThread.quit();
        mThread.wait();
    }
    Q_DISABLE_COPY_MOVE(ThreadedKeyboard)

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override { return {}; }
    [[nodiscard]] KeyPath &keys() override { return *mKeys; }
    void showLight(const Backlight::Settings &) override {}
    void showOnTheFly(OnTheFlyState) override {}
    void showGameMode(bool isOn) override { mIsGameModeShown = isOn; }

    [[nodiscard]] bool isGameModeShown() const { return mIsGameModeShown; }
    void setAttached(bool isAttached)
    {
        if (std::exchange(mIsAttached, isAttached) != isAttached)
            Q_EMIT attachedChanged(isAttached);
    }

    /// Calls `function` with the channel on its thread, and waits until it has returned.
    template <typename Function> void runOnKeys(Function function)
    {
        QMetaObject::invokeMethod(mChannel.get(), HandOver::Call{[this, &function] { function(*mChannel); }},
                                  Qt::BlockingQueuedConnection);
        HandOver::take();
    }

    /// Calls `function` on the thread of the channel later. Any thread.
    template <typename Function> void postToKeys(Function function)
    {
        QMetaObject::invokeMethod(mChannel.get(),
                                  HandOver::Call{[this, function = std::move(function)] { function(*mChannel); }},
                                  Qt::QueuedConnection);
    }

    /// Changes a key of the keyboard page at once.
    void press(quint16 key) { change(key, true); }
    void release(quint16 key) { change(key, false); }
    void pressMacroKey()
    {
        runOnKeys([](NotingChannel &channel) { Q_EMIT channel.macroKeyPressed(KeyChannel::Time(0)); });
    }

private:
    void change(quint16 key, bool isDown)
    {
        runOnKeys([key, isDown](NotingChannel &channel) {
            const HidUsage usage{HidUsage::keyboardPage, key};
            channel.keyChanged(usage, isDown, KeyChannel::Time(0), usage);
        });
    }

    QThread mThread;
    std::unique_ptr<NotingChannel> mChannel; // used on the thread from its start to its end
    std::unique_ptr<KeyPath> mKeys;          // used on the thread from its start to its end
    bool mIsAttached = true;
    bool mIsGameModeShown = false;
};
