// SPDX-License-Identifier: MIT
// All grabbed keyboards as one Keyboard. Main thread only; its keys live on the key thread, which runs from the first
// use to the end of the daemon.
#pragma once

#include "daemon/keyboards/keyboard.h"
#include "daemon/keyboards/linux/keythread.h"
#include "daemon/keyboards/linux/ledlight.h"
#include "daemon/keyboards/linux/seatbrightness.h"

#include <functional>
#include <memory>

class LinuxKeyboard : public Keyboard
{
    Q_OBJECT

public:
    explicit LinuxKeyboard(QObject *parent = nullptr);
    ~LinuxKeyboard() override;

    [[nodiscard]] bool isAttached() const override { return mIsAttached; }
    [[nodiscard]] QString firmwareVersion() const override { return mFirmwareVersion; }

    [[nodiscard]] KeyPath &keys() override { return mThread->keys(); } ///< after start() only
    void showLight(const Backlight::Settings &settings) override { mLight.show(settings); }
    void showOnTheFly(OnTheFlyState) override {} // the kernel knows no keyboard with a light for it
    void showGameMode(bool) override {}          // as above

    [[nodiscard]] KeyThread *keyThread() const { return mThread.get(); } ///< null before start()

    /// Starts the key thread. Must be called once. `output` is the way to the computer.
    void start(std::unique_ptr<OutputDevice> output);
    void addNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages);
    void removeNode(int id);
    /// Sets the grabbed nodes; without any, the keyboard is not attached. `version`: the device's, as the kernel
    /// reports it, with two decimal digits per byte.
    void setNodes(const QStringList &nodes, quint16 version);

Q_SIGNALS:
    // From the key thread, see LinuxKeyChannel
    void nodeChanged(int id, EventDevice::State state, int error);
    void releaseChordPressed();
    void realTimeChanged();

private:
    /// Calls `function` on the key thread later.
    template <typename Function> void callKeys(Function function);
    void takeOwnKey(KeyCodes::OwnKey key);

    std::unique_ptr<KeyThread> mThread;
    SeatBrightness mSeatBrightness;
    LedLight mLight;
    QStringList mNodes;
    QString mFirmwareVersion;
    int mBrightnessWhenOn = Backlight::maximumBrightness;
    bool mIsAttached = false;
};
