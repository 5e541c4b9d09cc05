// SPDX-License-Identifier: MIT
// The keys of the grabbed keyboards, and their output to the computer. Lives on the key thread; its functions must be
// called there, except those marked. An ordinary key allocates nothing, logs nothing and crosses no thread.
#pragma once

#include "daemon/keyboards/keychannel.h"
#include "daemon/keyboards/linux/eventdevice.h"
#include "daemon/keyboards/linux/latencyhistogram.h"
#include "daemon/keyboards/linux/outputdevice.h"

#include <QSocketNotifier>

#include <atomic>
#include <bitset>
#include <memory>
#include <vector>

/// Treats several keyboards with several nodes each as one keyboard. Passes keys that are not assignable to the output
/// unchanged. The release chord ungrabs every node, releases every key and emits releaseChordPressed().
class LinuxKeyChannel : public KeyChannel, private EventDeviceHandler
{
    Q_OBJECT

public:
    using Time = KeyChannel::Time; // the same as the translator's

    explicit LinuxKeyChannel(QObject *parent = nullptr);
    ~LinuxKeyChannel() override;

    [[nodiscard]] KeyLatency latency() const { return mHistogram.latency(); } ///< any thread
    [[nodiscard]] quint64 lostEvents() const { return mLostEvents; }          ///< any thread

    /// Must be called once, before the first node.
    void setOutput(std::unique_ptr<OutputDevice> output);
    /// `id`: identifies the node in removeNode() and nodeChanged().
    void addNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages,
                 std::chrono::milliseconds patience = EventDevice::usualPatience);
    void removeNode(int id);
    void removeAllNodes();
    /// Whether the daemon controls the key lighting. If so, the lighting keys are the daemon's, not the desktop's.
    void setLit(bool isLit) { mIsLit = isLit; }

    /// Nothing reaches the computer while no node is grabbed.
    void send(HidUsage usage, bool isDown) override;
    void flush() override;

Q_SIGNALS:
    // Rare, for other threads
    void nodeChanged(int id, EventDevice::State state, int error); ///< errno, or 0
    void releaseChordPressed();
    void ownKeyPressed(KeyCodes::OwnKey key); ///< except the Macro key, see macroKeyPressed()

private:
    void nodeEvent(EventDevice &node, const KeyTranslator::Event &event) override;
    void nodeRead(EventDevice &node) override;
    void nodeDroppedEvents(EventDevice &node) override;
    void nodeStateChanged(EventDevice &node) override;

    void actOn(TranslatorOutput output, Time time);
    void addToTap(TranslatorOutput output);
    void announceKey(quint16 usage, quint16 code, bool isDown, Time time);
    void passKey(quint16 code, bool isDown, Time time);
    [[nodiscard]] bool takeOwnKey(quint16 code, bool isDown, Time time);
    void removeFromTranslator(EventDevice &node);
    void ungrabAll();
    void showLeds();
    void deleteFinishedDevices();

    KeyTranslator mTranslator;
    std::unique_ptr<OutputDevice> mOutput;
    std::unique_ptr<QSocketNotifier> mLedNotifier;
    std::vector<std::unique_ptr<EventDevice>> mNodes;
    std::bitset<16> mLeds;          // as set by the desktop
    Time mLatestTime{};             // of the events so far
    std::optional<Time> mOldestKey; // of those read and not yet measured
    LatencyHistogram mHistogram;
    std::atomic<quint64> mLostEvents = 0;
    std::bitset<KeyCodes::codeCount> mOwnDown; // own keys that the desktop does not see
    int mGrabbedNodes = 0;
    bool mIsLit = false;
};
