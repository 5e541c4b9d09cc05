// SPDX-License-Identifier: MIT
#include "tests/vm/driver/modelstorm.h"

#include "tests/support/keymodel.h"
#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/stormprofiles.h"
#include "tests/vm/driver/waiting.h"

#include <linux/input-event-codes.h>

#include <deque>
#include <random>

using namespace std::chrono_literals;
using Key = KeyModel::Key;

namespace {

constexpr std::uint8_t usageN = 0x11; // a default key in every profile, which no other key sends
constexpr std::uint8_t usageZ = 0x1D; // disabled in the profiles of the storm
constexpr std::uint16_t mediaMarker = 0xE9;
constexpr int markerCode = KEY_VOLUMEUP;
constexpr int keyboardCount = 2;
constexpr int pressesThatOverflow = 200; // the kernel's buffer of an event device
constexpr std::size_t shownInputs = 40;  // of a failure

class Storm
{
public:
    Storm(Machine &machine, unsigned seed)
        : mMachine(machine), mRandom(seed), mSettings(mRandom), mModel(mSettings.profiles, mSettings.macros)
    {
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard)
            plug(keyboard);
        mSettings.install(machine);
        machine.use({nameOf(0), nameOf(1)});
        mDesktop = &machine.desktop();
        mKernel = EventNode::open(Machine::outputName, false);
        switchByClient(1);
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard)
            awaitUse(keyboard);
    }

    void run(int events)
    {
        for (int event = 0; event < events; ++event) {
            try {
                step();
            } catch (const Failure &failure) {
                std::string text = "event " + std::to_string(event) + ": " + failure.what() + "; the last inputs:";
                for (const std::string &input : mInputs)
                    text += "\n" + input;
                throw Failure(text);
            }
        }
        note("end");
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard) {
            while (!mHeld[keyboard].empty())
                change(keyboard, *mHeld[keyboard].begin(), false);
        }
        if (mModel.isPlaying()) // until the key is pressed again
            replugAll();
        compareAfterMarker();
        if (!kernelKeys().empty())
            throw Failure("keys are down at the end: " + text(kernelKeys()));
        if (mComparisonsOfKeys == 0)
            throw Failure("no key was ever down in a comparison");
    }

private:
    static std::string nameOf(int keyboard) { return keyboard == 0 ? "a" : "b"; }
    UhidKeyboard &keyboard(int number) { return mMachine.keyboard(nameOf(number)); }
    [[nodiscard]] unsigned random(unsigned bound) { return static_cast<unsigned>(mRandom() % bound); }

    void note(const std::string &text)
    {
        mInputs.push_back(text);
        if (mInputs.size() > shownInputs)
            mInputs.pop_front();
    }

    void plug(int number)
    {
        mMachine.plug(nameOf(number), {.name = {}, .serial = nameOf(number), .kind = UhidKeyboard::Kind::media});
    }

    void step()
    {
        switch (const unsigned kind = random(1000)) {
        case 0:
        case 1: return switchByClient(static_cast<int>(random(3)));
        case 2:
        case 3: return changeFront(random(2) == 0);
        case 4: return unplug(static_cast<int>(random(keyboardCount)));
        case 5: return pressReleaseChord();
        case 6:
        case 7: return setCapturing(true);
        case 8:
        case 9: return dropEvents();
        default:
            if (mIsCapturing && kind >= 960)
                return setCapturing(false);
            if (mModel.isPlaying() && kind >= 900)
                return endMacro();
            if (kind < 50)
                return useKeyboard(static_cast<int>(random(keyboardCount)));
            if (kind < 200)
                return compare();
            changeSomeKey();
        }
    }

    void changeSomeKey()
    {
        std::set<std::uint8_t> &held = mHeld[mKeyboard];
        if (held.size() >= 4 || (!held.empty() && random(2) == 0))
            return change(mKeyboard, *std::next(held.begin(), random(static_cast<unsigned>(held.size()))), false);
        const std::uint8_t usage = StormProfiles::pressedKeys[random(StormProfiles::pressedKeys.size())];
        if (!held.contains(usage))
            change(mKeyboard, usage, true);
    }

    /// Macros without an end would make the slow steps rare, and the marker frequent.
    void endMacro()
    {
        const KeyModel::Assignment playing = mModel.playing().front();
        for (const auto &[key, assignment] : mSettings.profiles[static_cast<std::size_t>(mModel.activeProfile())]) {
            if (assignment != playing)
                continue;
            const auto usage = static_cast<std::uint8_t>(key);
            for (int number = 0; number < keyboardCount; ++number) {
                if (mHeld[number].contains(usage))
                    return change(number, usage, false);
            }
            return change(mKeyboard, usage, true);
        }
    }

    void change(int number, std::uint8_t usage, bool isDown)
    {
        useKeyboard(number);
        const bool isMacro = mModel.assignment(usage).kind == KeyModel::Assignment::Kind::macro;
        if (isDown && isMacro)
            sync(); // reads the ends of earlier rounds
        note(nameOf(number) + (isDown ? " presses " : " releases ") + codeName(StormProfiles::codeOf(usage)));
        if (!keyboard(number).setDown(usage, isDown))
            throw Failure("no room in a report");
        const std::size_t playing = mModel.playing().size();
        const int profile = mModel.activeProfile();
        if (isDown) {
            mHeld[number].insert(usage);
            mModel.press(number, usage, usage, usage);
        } else {
            mHeld[number].erase(usage);
            mModel.release(number, usage);
        }
        if (mModel.activeProfile() != profile)
            mIsAutomatic = false;
        settleMacros(playing);
        drain();
    }

    /// A macro with rounds plays to its end. One without an end plays at least a round after the input.
    void settleMacros(std::size_t before)
    {
        const std::vector<KeyModel::Assignment> playing = mModel.playing();
        if (playing.size() > before && playing.back().repeat < KeyModel::untilPressedAgain) {
            awaitRounds(playing.back().number, playing.back().repeat);
            passTime();
        }
        if (!mModel.isPlaying())
            return;
        sync();
        for (const KeyModel::Assignment &endless : mModel.playing())
            awaitRounds(endless.number, 2);
        passTime();
    }

    void passTime() { mModel.passTime(mTime += 2s); }

    void awaitRounds(int macro, int rounds)
    {
        awaitReleases(StormProfiles::codeOf(StormProfiles::endOfRound(macro)), rounds);
    }

    /// Reads the keys of the desktop until this one has come up so often.
    void awaitReleases(int code, int count)
    {
        const auto end = std::chrono::steady_clock::now() + patience; // other macros must not postpone it
        while (count > 0) {
            const auto key = mDesktop->next(timeUntil(end));
            if (!key || std::chrono::steady_clock::now() > end)
                throw Failure(codeName(code) + " does not come");
            if (key->code == code && key->value == 0)
                --count;
        }
    }

    void drain()
    {
        while (mDesktop->next(0ms)) {
        }
    }

    /// Waits until the daemon has handled all inputs of the current keyboard: a media key passes through it.
    void sync()
    {
        keyboard(mKeyboard).reportMedia(mediaMarker);
        keyboard(mKeyboard).reportMedia(0);
        awaitReleases(markerCode, 1);
        modelMarker(mKeyboard);
    }

    void modelMarker(int number)
    {
        mModel.press(number, markerCode, KeyModel::firstOther + markerCode, 0);
        mModel.release(number, markerCode);
    }

    void useKeyboard(int number)
    {
        if (number == mKeyboard)
            return;
        sync(); // the daemon reads two keyboards in any order
        mKeyboard = number;
    }

    /// The daemon may need a moment to grab the keyboard.
    void awaitUse(int number)
    {
        mModel.plug(number);
        mKeyboard = number;
        const bool isUsed = becomesTrue([this, number] {
            keyboard(number).reportMedia(mediaMarker);
            keyboard(number).reportMedia(0);
            while (const auto key = mDesktop->next(50ms)) {
                if (key->code == markerCode && key->value == 0)
                    return true;
            }
            return false;
        });
        if (!isUsed)
            throw Failure("the daemon does not grab keyboard " + nameOf(number));
        modelMarker(number);
        drain();
    }

    [[nodiscard]] std::set<int> kernelKeys() { return withoutMacros(mKernel->downInKernel()); }
    [[nodiscard]] std::set<int> modelKeys()
    {
        std::set<int> codes;
        for (const Key key : mModel.down())
            codes.insert(StormProfiles::codeOf(key));
        return withoutMacros(codes);
    }
    [[nodiscard]] std::set<int> withoutMacros(std::set<int> codes)
    {
        if (mModel.isPlaying())
            std::erase_if(codes, [](int code) { return StormProfiles::isOfMacro(code); });
        return codes;
    }

    static std::string text(const std::set<int> &codes)
    {
        std::string names;
        for (const int code : codes)
            names += codeName(code) + ' ';
        return names;
    }

    void awaitModel()
    {
        if (!becomesTrue([this] { return kernelKeys() == modelKeys(); }))
            throw Failure("down: " + text(kernelKeys()) + "; must be down: " + text(modelKeys()));
        drain();
    }

    /// Mostly without the marker, which ends the modifiers of keys.
    void compare()
    {
        if (random(4) != 0)
            awaitModel();
        else
            compareAfterMarker();
    }

    void compareAfterMarker()
    {
        sync();
        mComparisonsOfKeys += modelKeys().empty() ? 0 : 1;
        if (kernelKeys() != modelKeys())
            throw Failure("after all: down: " + text(kernelKeys()) + "; must be down: " + text(modelKeys()));
    }

    /// Macros would fill the desktop's buffer during a slow step.
    [[nodiscard]] bool isReadyForSlowStep()
    {
        if (mModel.isPlaying())
            return false;
        awaitModel();
        compareAfterMarker();
        return true;
    }

    void switchByClient(int profile)
    {
        if (mKeyboard >= 0 && !isReadyForSlowStep())
            return;
        note("client: profile " + std::to_string(profile));
        mMachine.mustControl({"profile", "switch", std::to_string(profile + 1)});
        mModel.switchProfile(profile);
        mIsAutomatic = false;
    }

    void changeFront(bool isBound)
    {
        if (isBound == mIsBoundInFront || !isReadyForSlowStep())
            return;
        note(isBound ? "bound application" : "unbound application");
        mMachine.mustControl({"focus", isBound ? StormProfiles::application : "org.example.Other"});
        (void)mMachine.mustControl({"status"});
        mIsBoundInFront = isBound;
        if (isBound) {
            mRemembered = mModel.activeProfile();
            mIsAutomatic = true;
            mModel.switchProfile(StormProfiles::boundProfile);
        } else if (mIsAutomatic) {
            mIsAutomatic = false;
            mModel.switchProfile(mRemembered);
        }
    }

    void unplug(int number)
    {
        useKeyboard(number);
        if (!isReadyForSlowStep())
            return;
        note("unplug " + nameOf(number));
        mMachine.unplug(nameOf(number));
        mHeld[number].clear();
        mModel.unplug(number);
        awaitModel();
        plug(number);
        awaitUse(number);
    }

    void pressReleaseChord()
    {
        if (mIsCapturing || !isReadyForSlowStep())
            return;
        note("release chord");
        keyboard(mKeyboard).report(std::vector<std::uint8_t>{0x28, 0x29, 0x2A});
        for (int number = 0; number < keyboardCount; ++number) {
            mModel.unplug(number);
            mHeld[number].clear();
        }
        awaitModel();
        for (int number = 0; number < keyboardCount; ++number)
            keyboard(number).releaseAll();
        mMachine.use({nameOf(0), nameOf(1)});
        for (int number = 0; number < keyboardCount; ++number)
            awaitUse(number);
    }

    void setCapturing(bool isCapturing)
    {
        if (isCapturing == mIsCapturing || !isReadyForSlowStep())
            return;
        note(isCapturing ? "capture" : "end of the capture");
        if (isCapturing) {
            mMachine.startClient({"capture"});
            if (!becomesTrue([this] { return mMachine.told().find("answer to 29") != std::string::npos; }))
                throw Failure("the client does not get the keys");
        } else {
            const std::size_t length = mMachine.daemonLog().size();
            mMachine.endClient();
            if (!becomesTrue(
                    [&] { return mMachine.daemonLog().find("the client is gone", length) != std::string::npos; }))
                throw Failure("the daemon does not notice that the client has gone");
        }
        (void)mMachine.mustControl({"status"}); // the main thread has finished
        mIsCapturing = isCapturing;
        mModel.setCapturing(isCapturing);
    }

    /// The daemon is stopped while more keys come than the kernel keeps.
    void dropEvents()
    {
        if (mModel.activeProfile() == 0 || !isReadyForSlowStep())
            return; // in the first profile, Z is a key
        note("dropped events on " + nameOf(mKeyboard));
        mMachine.daemon().send(SIGSTOP);
        for (int count = 0; count < pressesThatOverflow; ++count) {
            (void)keyboard(mKeyboard).setDown(usageZ, true);
            (void)keyboard(mKeyboard).setDown(usageZ, false);
        }
        std::set<std::uint8_t> &held = mHeld[mKeyboard];
        const bool isDown = !held.contains(usageN);
        for (const std::uint8_t usage : std::set<std::uint8_t>(held)) {
            if (usage != usageN && random(2) == 0) {
                (void)keyboard(mKeyboard).setDown(usage, false);
                mModel.release(mKeyboard, usage);
                held.erase(usage);
            }
        }
        (void)keyboard(mKeyboard).setDown(usageN, isDown);
        if (isDown) {
            held.insert(usageN);
            mModel.press(mKeyboard, usageN, usageN, usageN);
        } else {
            held.erase(usageN);
            mModel.release(mKeyboard, usageN);
        }
        mMachine.daemon().send(SIGCONT);
        awaitModel();
        compareAfterMarker();
        if (mMachine.status("lostEvents") == "0")
            throw Failure("the kernel has dropped nothing");
    }

    /// Ends all macros.
    void replugAll()
    {
        for (int number = 0; number < keyboardCount; ++number) {
            mMachine.unplug(nameOf(number));
            mModel.unplug(number);
        }
        awaitModel();
        for (int number = 0; number < keyboardCount; ++number) {
            plug(number);
            awaitUse(number);
        }
    }

    Machine &mMachine;
    std::mt19937 mRandom;
    StormProfiles mSettings;
    KeyModel mModel;
    EventNode *mDesktop = nullptr;
    std::optional<EventNode> mKernel; // for its state alone
    KeyModel::Time mTime{};
    std::array<std::set<std::uint8_t>, keyboardCount> mHeld;
    int mKeyboard = -1; // the one that has the next input; none before the first
    bool mIsCapturing = false;
    bool mIsBoundInFront = false;
    bool mIsAutomatic = false;
    int mRemembered = 0;
    int mComparisonsOfKeys = 0;
    std::deque<std::string> mInputs;
};

} // namespace

void modelStorm(Machine &machine, unsigned seed, int events)
{
    Storm(machine, seed).run(events);
}
