// SPDX-License-Identifier: MIT
// Runs in the virtual machine: runs the given scenarios, or measures. Writes the results to the console, one a line,
// for run.py outside.
// Usage: vmdriver SCENARIO_FILE... | vmdriver --measure us | vmdriver --measure instructions
#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/latency.h"
#include "tests/vm/driver/machine.h"
#include "tests/vm/driver/scenario.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
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

void printLatency(const std::string &name, Latencies times, const Unit &unit)
{
    std::ranges::sort(times);
    const auto at = [&](double share) {
        const auto time = times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
        return std::to_string(time.count() / unit.nanoseconds) + ' ' + unit.name;
    };
    std::printf("kestra-vm: latency %-38s p50 %s, p90 %s, p99 %s\n", name.c_str(), at(0.5).c_str(), at(0.9).c_str(),
                at(0.99).c_str());
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

/// Measures the two in turn, because other load on the machine then slows both equally.
void printLatencies(const std::string &way, Latencies (*measureSome)(UhidKeyboard &, EventNode &, int),
                    Machine &machine, EventNode &raw, const Unit &unit)
{
    constexpr int turns = 50;
    constexpr int keysOfATurn = 20;
    Latencies ofKeyboard;
    Latencies throughDaemon;
    for (int turn = 0; turn < turns; ++turn) {
        std::ranges::copy(measureSome(machine.keyboard("raw"), raw, keysOfATurn), std::back_inserter(ofKeyboard));
        std::ranges::copy(measureSome(machine.keyboard("used"), machine.desktop(), keysOfATurn),
                          std::back_inserter(throughDaemon));
    }
    printLatency("raw" + way, ofKeyboard, unit);
    printLatency("through the daemon" + way, throughDaemon, unit);
}

void measure(const Unit &unit)
{
    printClockSource();
    Machine machine("/run/scenario");
    machine.plug("raw", {});
    machine.plug("used", {});
    EventNode raw = EventNode::open("Keyboard raw", true);
    machine.startDaemon();
    machine.use({"used"});
    printLatencies("", measureLatency, machine, raw, unit);
    printLatencies(", read by the writer", measureLatencyForWriter, machine, raw, unit);
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
