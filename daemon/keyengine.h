// SPDX-License-Identifier: MIT
// The key engine: keys of the keyboard in, what the computer is to receive out. A pure state machine without clock and
// I/O; the time is passed in. Owned by the daemon, one thread.
#pragma once

#include "daemon/hidusage.h"
#include "daemon/keyassignment.h"

#include <QList>
#include <QMap>
#include <QString>

#include <chrono>
#include <optional>

/// One thing to do, in the order given.
struct EngineOutput
{
    enum class Kind { sendDown, sendUp, switchProfile, launchProgram };

    Kind kind = Kind::sendDown;
    HidUsage usage = {};   ///< sendDown, sendUp
    int profileIndex = -1; ///< switchProfile: position in "Profiles", which may not exist
    QString program = {};  ///< launchProgram: path

    bool operator==(const EngineOutput &) const = default;
};

/// What a key does is decided when it goes down; its release ends just that, whatever was assigned in between.
/// Every usage sent down is sent up again, at the latest by releaseAll(); two keys that send the same usage send it
/// down once, with the first, and up once, with the last.
class KeyEngine
{
public:
    using Time = std::chrono::milliseconds; // since any fixed moment; never goes backwards

    /// Presses from now on follow `map`.
    void setKeyMap(const KeyMap &map) { mMap = map; }

    /// A second press without a release, and a release without a press, do nothing.
    [[nodiscard]] QList<EngineOutput> keyDown(HidUsage key, Time now);
    [[nodiscard]] QList<EngineOutput> keyUp(HidUsage key, Time now);
    /// Lets go of everything: the keyboard is gone, or the daemon ends.
    [[nodiscard]] QList<EngineOutput> releaseAll();

    /// What is due by `now`; to be called at nextDeadline() at the latest.
    [[nodiscard]] QList<EngineOutput> advance(Time now);
    [[nodiscard]] std::optional<Time> nextDeadline() const;

    /// The usages that the computer sees down.
    [[nodiscard]] QList<HidUsage> sentDown() const { return mSentCount.keys(); }

private:
    void send(QList<EngineOutput> &outputs, HidUsage usage, bool isDown);
    [[nodiscard]] QList<HidUsage> usagesOf(HidUsage key, const KeyAssignment &assignment) const;

    KeyMap mMap;
    QMap<HidUsage, QList<HidUsage>> mHeld; // key that is down -> what it sent down, in order
    QMap<HidUsage, int> mSentCount;        // usage that is down -> how many keys hold it
};
