// SPDX-License-Identifier: MIT
// Runs in the virtual machine: runs the given scenarios, or measures. Writes the results to the console, one a line,
// for run.py outside.
// Usage: vmdriver SCENARIO_FILE... | vmdriver --measure us | vmdriver --measure instructions
#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/latency.h"
#include "tests/vm/driver/machine.h"
#include "tests/vm/driver/passthrough.h"
#include "tests/vm/driver/scenario.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <sstream>
#include <thread>

using namespace std::chrono_literals;

namespace {

bool runOne(const std::string &path)
{
    const auto start = std::chrono::steady_clock::now();
    std::string problem;
    try {
        runScenario(readScenario(path));
    } catch (const std::exception &failure) {
        problem = failure.what();
    }
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    std::printf("kestra-vm: %s %s (%lld ms)\n", problem.empty() ? "ok" : "failed",
                std::filesystem::path(path).stem().c_str(), static_cast<long long>(took.count()));
    std::istringstream lines(problem);
    for (std::string line; std::getline(lines, line);)
        std::printf("kestra-vm:   %s\n", line.c_str());
    std::fflush(stdout);
    return problem.empty();
}

/// The unit of printed latencies.
struct Unit
{
    std::string name;
    long long nanoseconds; // by the machine's clock, which can be set to one instruction per nanosecond
};

/// The value below which this share of the sorted times lies, in units.
long long quantile(const Latencies &times, double share, const Unit &unit)
{
    return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))].count() / unit.nanoseconds;
}

constexpr struct
{
    const char *name;
    double share;
} quantiles[] = {{"p10", 0.1}, {"p50", 0.5}, {"p90", 0.9}, {"p99", 0.99}};

/// `times` are sorted.
void printLatency(const std::string &name, const Latencies &times, const Unit &unit)
{
    std::string text;
    for (const auto &[quantileName, share] : quantiles)
        text += std::string(text.empty() ? "" : ", ") + quantileName + ' '
                + std::to_string(quantile(times, share, unit)) + ' ' + unit.name;
    std::printf("kestra-vm: latency %-38s %s\n", name.c_str(), text.c_str());
}

/// The value of "name:" in a file of /proc.
std::string procValue(const std::string &path, const std::string &name)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name + ":"))
            return line.substr(line.find_first_not_of(": \t", name.size()));
    }
    return "?";
}

/// The sum over all threads of a process.
long contextSwitches(pid_t id)
{
    long sum = 0;
    for (const auto &task : std::filesystem::directory_iterator("/proc/" + std::to_string(id) + "/task"))
        sum += std::stol(procValue(task.path().string() + "/status", "voluntary_ctxt_switches"));
    return sum;
}

void printClockSource()
{
    std::ifstream file("/sys/devices/system/clocksource/clocksource0/current_clocksource");
    std::string name;
    file >> name;
    std::printf("kestra-vm: clock of the machine: %s\n", name.c_str());
}

/// The machine has no desktop, and the daemon looks for one in its first minute.
void printIdleness(pid_t daemon)
{
    constexpr auto span = 10s;
    constexpr auto limit = 120s;
    for (auto end = span; end <= limit; end += span) {
        const long before = contextSwitches(daemon);
        std::this_thread::sleep_for(span);
        const long count = contextSwitches(daemon) - before;
        std::printf("kestra-vm: idle until %ld s: woken %ld times in 10 s\n", static_cast<long>(end.count()), count);
        if (count == 0)
            return;
    }
}

/// One way of a key from a keyboard to its reader.
struct Way
{
    std::string name;
    UhidKeyboard &keyboard;
    EventNode &node;
    Latencies times = {};
};

using MeasureSome = Latencies (*)(UhidKeyboard &, EventNode &, int);

/// Measures the ways in turn, because other load on the machine then slows all of them equally.
void measureInTurn(std::span<Way> ways, MeasureSome measureSome)
{
    constexpr int turns = 50;
    constexpr int keysOfATurn = 20;
    for (int turn = 0; turn < turns; ++turn) {
        for (Way &way : ways)
            std::ranges::copy(measureSome(way.keyboard, way.node, keysOfATurn), std::back_inserter(way.times));
    }
    for (Way &way : ways)
        std::ranges::sort(way.times);
}

/// How much the daemon adds to the keyboard itself, compared with the pass-through.
void printAdded(const Latencies &raw, const Latencies &passed, const Latencies &daemon, const Unit &unit)
{
    for (const auto &[name, share] : {quantiles[0], quantiles[1]}) {
        const long long base = quantile(raw, share, unit);
        const long long floor = quantile(passed, share, unit) - base;
        const long long added = quantile(daemon, share, unit) - base;
        std::printf("kestra-vm: %s: the daemon adds %lld %s, a pass-through %lld: %.2f times\n", name, added,
                    unit.name.c_str(), floor, static_cast<double>(added) / static_cast<double>(floor));
    }
}

void printLatencies(const std::string &suffix, MeasureSome measureSome, Machine &machine, EventNode &raw,
                    EventNode &passed, const Unit &unit)
{
    std::array<Way, 3> ways{
        Way{.name = "raw", .keyboard = machine.keyboard("raw"), .node = raw},
        Way{.name = "through a pass-through", .keyboard = machine.keyboard("passed"), .node = passed},
        Way{.name = "through the daemon", .keyboard = machine.keyboard("used"), .node = machine.desktop()}};
    measureInTurn(ways, measureSome);
    for (const Way &way : ways)
        printLatency(way.name + suffix, way.times, unit);
    printAdded(ways[0].times, ways[1].times, ways[2].times, unit);
}

void measure(const Unit &unit)
{
    printClockSource();
    Machine machine("/run/scenario");
    machine.plug("raw", {});
    machine.plug("passed", {});
    machine.plug("used", {});
    EventNode raw = EventNode::open("Keyboard raw", true);
    const PassThrough passThrough("Keyboard passed");
    EventNode passed = EventNode::open(PassThrough::name, true);
    machine.startDaemon();
    machine.use({"used"});
    printLatencies("", measureLatency, machine, raw, passed, unit);
    printLatencies(", read by the writer", measureLatencyForWriter, machine, raw, passed, unit);
    printIdleness(machine.daemon().id());
    std::printf("kestra-vm: memory of the daemon (PSS): %s\n",
                procValue("/proc/" + std::to_string(machine.daemon().id()) + "/smaps_rollup", "Pss").c_str());
    std::fflush(stdout);
    machine.endDaemon(SIGTERM);
}

} // namespace

int main(int argc, char *argv[])
{
    std::vector<std::string> words(argv + 1, argv + argc);
    const bool isMeasuring = words.size() == 2 && words.front() == "--measure";
    const std::vector<std::string> paths = isMeasuring ? std::vector<std::string>() : words;
    std::ptrdiff_t failed = 0;
    for (const std::string &path : paths)
        failed += runOne(path) ? 0 : 1;
    if (isMeasuring) {
        try {
            measure({.name = words.back(), .nanoseconds = words.back() == "us" ? 1000 : 1});
        } catch (const std::exception &failure) {
            std::printf("kestra-vm: failed measuring\nkestra-vm:   %s\n", failure.what());
            ++failed;
        }
    }
    std::printf("kestra-vm: done, %td failed of %zu\n", failed, paths.size());
    std::fflush(stdout);
    return failed == 0 ? 0 : 1;
}
