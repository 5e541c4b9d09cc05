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
#include <map>
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
    bool isTimeSkipped;    // that clock skips the time in which nothing runs
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
    std::printf("kestra-vm: latency %-48s %s\n", name.c_str(), text.c_str());
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

long wakeUps(pid_t daemon, std::chrono::seconds span)
{
    const long before = contextSwitches(daemon);
    std::this_thread::sleep_for(span);
    return contextSwitches(daemon) - before;
}

/// Counts how often the daemon is woken during `span`. The machine has no desktop, and the daemon searches for one in
/// its first minute.
void measureIdleness(pid_t daemon, std::chrono::minutes span)
{
    constexpr auto firstMinute = 70s;
    constexpr long mostWakeUps = 6; // it looks at its priority at growing intervals of up to 10 minutes
    std::printf("kestra-vm: idle, woken %ld times in the first %ld s", wakeUps(daemon, firstMinute),
                static_cast<long>(firstMinute.count()));
    const long count = wakeUps(daemon, span);
    std::printf(", then %ld times in %ld minutes\n", count, static_cast<long>(span.count()));
    if (count > mostWakeUps)
        throw Failure("something wakes the idle daemon");
}

/// The proportional share of the daemon's memory, in all and of the files that have the most.
void measureMemory(pid_t daemon)
{
    constexpr long most = 10 * 1024L; // kB
    const std::string folder = "/proc/" + std::to_string(daemon);
    const std::string total = procValue(folder + "/smaps_rollup", "Pss");
    std::printf("kestra-vm: memory of the daemon (PSS): %s\n", total.c_str());
    std::map<std::string, long> sizes; // in kB
    std::ifstream file(folder + "/smaps");
    std::string mapped;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first, second;
        words >> first >> second;
        if (first == "Pss:") {
            sizes[mapped] += std::stol(second);
        } else if (first.find('-') != std::string::npos && !first.ends_with(':')) { // begins a mapping
            std::string offset, device, node;
            mapped.clear();
            words >> offset >> device >> node >> mapped;
        }
    }
    std::vector<std::pair<long, std::string>> largest;
    for (const auto &[name, size] : sizes)
        largest.emplace_back(size, name.empty() ? "[without a file]" : std::filesystem::path(name).filename().string());
    std::ranges::sort(largest, std::greater());
    constexpr std::size_t shown = 12;
    largest.resize(std::min(largest.size(), shown));
    for (const auto &[size, name] : largest)
        std::printf("kestra-vm:   %s: %ld kB\n", name.c_str(), size);
    if (std::stol(total) > most)
        throw Failure("the daemon has too much memory");
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

/// How much the daemon adds to the keyboard itself, compared with a pass-through. Returns the greater ratio.
double printAdded(const Way &raw, const Way &passed, const Way &daemon, const Unit &unit)
{
    double greatest = 0;
    for (const auto &[name, share] : {quantiles[0], quantiles[1]}) {
        const long long base = quantile(raw.times, share, unit);
        const long long floor = quantile(passed.times, share, unit) - base;
        const long long added = quantile(daemon.times, share, unit) - base;
        const double ratio = static_cast<double>(added) / static_cast<double>(floor);
        std::printf("kestra-vm: %s: the daemon adds %lld %s, %s %lld: %.2f times\n", name, added, unit.name.c_str(),
                    passed.name.c_str(), floor, ratio);
        greatest = std::max(greatest, ratio);
    }
    return greatest;
}

constexpr const char *passedOutput = "Output of a pass-through";
constexpr const char *urgentOutput = "Output of a pass-through in real time";

void printLatencies(const std::string &suffix, MeasureSome measureSome, Machine &machine, EventNode &raw,
                    EventNode &passed, EventNode &urgent, const Unit &unit)
{
    std::array<Way, 4> ways{
        Way{.name = "raw", .keyboard = machine.keyboard("raw"), .node = raw},
        Way{.name = "a pass-through", .keyboard = machine.keyboard("passed"), .node = passed},
        Way{.name = "a pass-through in real time", .keyboard = machine.keyboard("urgent"), .node = urgent},
        Way{.name = "the daemon", .keyboard = machine.keyboard("used"), .node = machine.desktop()}};
    measureInTurn(ways, measureSome);
    for (const Way &way : ways)
        printLatency(way.name + suffix, way.times, unit);
    (void)printAdded(ways[0], ways[1], ways[3], unit);
    // Instructions do not depend on the load of the host, times do.
    constexpr double mostAdded = 1.25;
    if (printAdded(ways[0], ways[2], ways[3], unit) > mostAdded && unit.isTimeSkipped)
        throw Failure("a key takes the daemon too many instructions");
}

void measure(const Unit &unit)
{
    printClockSource();
    Machine machine("/run/scenario");
    for (const char *name : {"raw", "passed", "urgent", "used"})
        machine.plug(name, {});
    EventNode raw = EventNode::open("Keyboard raw", true);
    const PassThrough passThrough("Keyboard passed", passedOutput);
    const PassThrough urgentPassThrough("Keyboard urgent", urgentOutput, PassThrough::Priority::realTime);
    EventNode passed = EventNode::open(passedOutput, true);
    EventNode urgent = EventNode::open(urgentOutput, true);
    machine.startDaemon();
    machine.use({"used"});
    printLatencies("", measureLatency, machine, raw, passed, urgent, unit);
    printLatencies(", read by the writer", measureLatencyForWriter, machine, raw, passed, urgent, unit);
    measureIdleness(machine.daemon().id(), unit.isTimeSkipped ? 10min : 1min);
    measureMemory(machine.daemon().id());
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
            const bool isTime = words.back() == "us";
            measure({.name = words.back(), .nanoseconds = isTime ? 1000 : 1, .isTimeSkipped = !isTime});
        } catch (const std::exception &failure) {
            std::printf("kestra-vm: failed measuring\nkestra-vm:   %s\n", failure.what());
            ++failed;
        }
    }
    std::printf("kestra-vm: done, %td failed of %zu\n", failed, paths.size());
    std::fflush(stdout);
    return failed == 0 ? 0 : 1;
}
