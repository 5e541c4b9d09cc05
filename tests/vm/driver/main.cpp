// SPDX-License-Identifier: MIT
// Runs in the virtual machine: does the scenarios named, or all in /scenarios, and measures; with --measure it does
// only that. Writes what became of them to the console, a line each, for run.py outside.
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

void printLatency(const std::string &name, Latencies times)
{
    std::ranges::sort(times);
    const auto at = [&times](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))].count() / 1000;
    };
    std::printf("kestra-vm: latency %-38s p50 %5lld us, p90 %5lld us, p99 %5lld us\n", name.c_str(),
                static_cast<long long>(at(0.5)), static_cast<long long>(at(0.9)), static_cast<long long>(at(0.99)));
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

/// All threads of a process.
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

/// There is no desktop in the machine: the daemon looks for one in its first minute.
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

/// In turn, so that whatever else slows the machine slows both.
void printLatencies(const std::string &way, Latencies (*measureSome)(UhidKeyboard &, EventNode &, int),
                    Machine &machine, EventNode &raw)
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
    printLatency("raw" + way, ofKeyboard);
    printLatency("through the daemon" + way, throughDaemon);
}

void measure()
{
    printClockSource();
    Machine machine("/run/scenario");
    machine.plug("raw", {});
    machine.plug("used", {});
    EventNode raw = EventNode::open("Keyboard raw", true);
    machine.startDaemon();
    machine.use({"used"});
    printLatencies("", measureLatency, machine, raw);
    printLatencies(", read by the writer", measureLatencyForWriter, machine, raw);
    printIdleness(machine.daemon().id());
    std::printf("kestra-vm: memory of the daemon (PSS): %s\n",
                procValue("/proc/" + std::to_string(machine.daemon().id()) + "/smaps_rollup", "Pss").c_str());
    std::fflush(stdout);
    machine.endDaemon(SIGTERM);
}

} // namespace

int main(int argc, char *argv[])
{
    std::vector<std::string> paths(argv + 1, argv + argc);
    const bool isMeasuringOnly = paths == std::vector<std::string>{"--measure"};
    if (isMeasuringOnly)
        paths.clear();
    const bool isAll = paths.empty() && !isMeasuringOnly;
    if (isAll) {
        for (const auto &entry : std::filesystem::directory_iterator("/scenarios"))
            paths.push_back(entry.path().string());
        std::ranges::sort(paths);
    }
    std::ptrdiff_t failed = 0;
    for (const std::string &path : paths)
        failed += runOne(path) ? 0 : 1;
    if (isAll || isMeasuringOnly) {
        try {
            measure();
        } catch (const std::exception &failure) {
            std::printf("kestra-vm: failed measuring\nkestra-vm:   %s\n", failure.what());
            ++failed;
        }
    }
    std::printf("kestra-vm: done, %td failed of %zu\n", failed, paths.size());
    std::fflush(stdout);
    return failed == 0 ? 0 : 1;
}
