// SPDX-License-Identifier: MIT
// The keys of the daemon, from event devices to the output device, side by side with the reference model. Both get the
// same random inputs: several keyboards, settings, switches, captures, time. Used on the test's thread, whose event
// dispatcher is the key thread's.
#pragma once

#include "daemon/keyboards/keypath.h"
#include "daemon/keyboards/linux/linuxkeychannel.h"
#include "tests/daemon/keyboards/linux/stormcomputer.h"
#include "tests/daemon/keyboards/linux/stormnode.h"
#include "tests/daemon/keyboards/linux/stormsettings.h"
#include "tests/support/keymodel.h"

#include <QRandomGenerator>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// One input. Every input is possible at any time, so any part of a storm is also a storm.
struct StormInput
{
    enum class Kind {
        keys,     ///< one report
        lostKeys, ///< changes that the kernel drops
        plug,     ///< possibly with keys down
        unplug,
        ungrab, ///< the user releases the keyboard
        time,
        lateTime, ///< the daemon is late
        switchProfile,
        capture,
        endCapture,
        macroKey,
        gameMode,
        assign,
        editMacro,
    };

    Kind kind = Kind::keys;
    std::array<quint32, 4> values{}; ///< random
};

class KeyStorm
{
public:
    /// `seed` determines the profiles and macros.
    explicit KeyStorm(quint32 seed, bool isLogging = false);
    ~KeyStorm();

    [[nodiscard]] static StormInput randomInput(QRandomGenerator &random);

    /// Carries the input out and compares. Returns the difference; empty when there is none.
    [[nodiscard]] QString run(const StormInput &input);
    /// Ends the storm in one of several ways, after which nothing may be down.
    [[nodiscard]] QString end(quint32 way);

    /// Keys that went down or up, and all other inputs.
    [[nodiscard]] int eventCount() const { return mEventCount; }
    /// The inputs as text, one line each; empty without logging.
    [[nodiscard]] const QStringList &log() const { return mLog; }
    [[nodiscard]] bool hasPlayed() const { return mHasPlayed; }

private:
    void carryOut(const StormInput &input);
    void changeKeys(int keyboard, const std::array<quint32, 4> &values, bool isLost);
    void settle();
    void plug(int keyboard, quint32 keys);
    void unplug(int keyboard, bool isGone);
    void pressMacroKey(int keyboard);
    void passTime(KeyModel::Time span, bool isLate);
    void assign(int profile, const std::array<quint32, 4> &values);
    void setMacro(int number, quint32 seed);
    void switchProfile(int number);
    void changeSettings(bool isOtherProfile);
    void answerSwitch();
    void setCapturing(bool isCapturing);
    void forgetLostNodes();
    [[nodiscard]] QString difference() const;
    void note(const QString &line);

    KeyModel mModel;
    KeySettings mSettings; // of the main thread
    std::vector<QVariantMap> mProfiles;
    QVariantList mMacros;
    StormComputer mComputer;
    KeyModel::Time mNow;
    std::optional<KeyEngine::Time> mWakeTime;
    std::array<std::unique_ptr<StormNode>, StormSettings::keyboardCount> mNodes;
    std::vector<std::unique_ptr<StormNode>> mOldNodes; // the channel may still have them
    LinuxKeyChannel mChannel;
    KeyPath mPath;
    std::vector<std::pair<int, KeyPath::SwitchNumber>> mSwitches; // reported by the keys and not yet answered
    KeyPath::SwitchNumber mLastSwitch = 0;                        // the last answered one
    bool mIsCapturing = false;
    int mEventCount = 0;
    bool mHasPlayed = false;
    bool mIsLogging;
    int mKeysOfInput = 0; // that went down or up
    QStringList mLog;
};
