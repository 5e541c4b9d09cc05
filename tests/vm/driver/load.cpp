// SPDX-License-Identifier: MIT
#include "tests/vm/driver/load.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/waiting.h"

#include <linux/input-event-codes.h>

#include <ctime>
#include <random>
#include <set>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t usageB = 0x05;
constexpr std::uint8_t usageEscape = 0x29;
constexpr std::uint8_t usageF24 = 0x73;

/// The keys that the desktop sees as down, from the beginning.
class Down
{
public:
    explicit Down(EventNode &desktop) : mDesktop(desktop) {}

    /// Takes the next key; returns false when none arrives within `limit`.
    bool take(std::chrono::milliseconds limit)
    {
        const auto key = mDesktop.next(limit);
        if (!key)
            return false;
        if (key->value == 2)
            return true;
        const bool isNew = key->value == 1 ? mCodes.insert(key->code).second : mCodes.erase(key->code) == 1;
        if (!isNew)
            throw Failure(codeName(key->code) + (key->value == 1 ? " down twice" : " up without having been down"));
        mHasMarkerCome = key->code == KEY_F24 && key->value == 0;
        return true;
    }

    void takeUntilMarker()
    {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!mHasMarkerCome) {
            if (!take(timeUntil(end)))
                throw Failure("the last key did not come");
        }
    }

    [[nodiscard]] const std::set<int> &codes() const { return mCodes; }

private:
    EventNode &mDesktop;
    std::set<int> mCodes;
    bool mHasMarkerCome = false;
};

/// The last event arrives a moment after its report.
constexpr double lowestShareOfRate = 0.99;

/// The time since its construction that this thread has left to the rest of the machine. The thread makes the reports
/// and reads the keys, which takes the emulator longer than the daemon's part.
class OthersClock
{
public:
    [[nodiscard]] std::chrono::nanoseconds now() const
    {
        return monotonicNow() - mStart - (usedByThisThread() - mUsedAtStart);
    }

    void sleepUntil(std::chrono::nanoseconds time) const
    {
        for (auto left = time - now(); left > 0ns; left = time - now())
            std::this_thread::sleep_for(left);
    }

private:
    static std::chrono::nanoseconds usedByThisThread()
    {
        timespec used{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
        return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
    }

    std::chrono::nanoseconds mStart = monotonicNow();
    std::chrono::nanoseconds mUsedAtStart = usedByThisThread();
};

} // namespace

void flood(Machine &machine, const std::string &name, int rate, int seconds)
{
    UhidKeyboard &keyboard = machine.keyboard(name);
    EventNode &desktop = machine.desktop();
    const int total = rate * seconds;
    int read = 0;
    const auto take = [&](std::chrono::milliseconds limit) {
        const auto key = desktop.next(limit);
        if (!key)
            return false;
        if (key->value == 2)
            return true;
        if (key->code != KEY_B || key->value != (read % 2 == 0 ? 1 : 0))
            throw Failure("event " + std::to_string(read) + " is " + codeName(key->code));
        ++read;
        return true;
    };
    const OthersClock clock;
    for (int sent = 0; sent < total; ++sent) {
        clock.sleepUntil(sent * std::chrono::nanoseconds(1s) / rate);
        (void)keyboard.setDown(usageB, sent % 2 == 0);
        while (take(0ms)) {
        }
    }
    while (read < total) {
        if (!take(patience))
            throw Failure(std::to_string(total - read) + " of " + std::to_string(total) + " events are missing");
    }
    const std::chrono::duration<double> took = clock.now();
    const double reached = total / took.count();
    if (reached < lowestShareOfRate * rate)
        throw Failure("only " + std::to_string(static_cast<int>(reached)) + " reports a second");
}

void storm(Machine &machine, const std::vector<std::string> &keyboards, unsigned seed, int reports)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> usage(0x04, 0x31);
    std::uniform_int_distribution<int> modifier(0xE0, 0xE7);
    std::uniform_int_distribution<int> count(0, 6);
    Down down(machine.desktop());
    for (int number = 0; number < reports; ++number) {
        std::set<std::uint8_t> keys;
        for (int key = count(random); key > 0; --key)
            keys.insert(static_cast<std::uint8_t>(random() % 4 == 0 ? modifier(random) : usage(random)));
        keys.erase(usageEscape); // a separate scenario tests the release chord
        const std::vector<std::uint8_t> list(keys.begin(), keys.end());
        machine.keyboard(keyboards[random() % keyboards.size()]).report(list);
        // An event device keeps some dozens of events for a reader, and a report brings up to half of that.
        while (down.take(0ms)) {
        }
    }
    for (const std::string &name : keyboards)
        machine.keyboard(name).releaseAll();
    UhidKeyboard &last = machine.keyboard(keyboards.front());
    (void)last.setDown(usageF24, true);
    (void)last.setDown(usageF24, false);
    down.takeUntilMarker();
    if (!down.codes().empty())
        throw Failure("still down: " + codeName(*down.codes().begin()));
}
