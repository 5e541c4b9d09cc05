// SPDX-License-Identifier: MIT
// The cost of one keyboard event in the key engine with a full profile: every key of the layout is pressed and
// released, alone and while four others are held. Also the cost of a change of the profile. The last line is the
// result: the average time of one event and its memory allocations.
#include "daemon/engine/keyengine.h"
#include "keys/keylayout.h"
#include "macros/macrorecord.h"
#include "tests/support/fulldocument.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

std::atomic<std::size_t> allocations = 0;

} // namespace

// Counts every allocation of the process. Qt's containers allocate by malloc, which glibc lets a program wrap.
extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *malloc(std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

namespace {

std::vector<HidUsage> layoutKeys()
{
    std::vector<HidUsage> keys;
    for (const KeyRow &row : KeyLayout::selectableKeys())
        keys.push_back({HidUsage::keyboardPage, static_cast<quint16>(row.code)});
    return keys;
}

double secondsPerEvent = 0;
double allocationsPerEvent = 0;

/// Presses and releases each key in turn while the first `heldCount` keys of the layout stay down.
void pressAndReleaseEveryKey(benchmark::State &state)
{
    const auto heldCount = static_cast<std::size_t>(state.range(0));
    const std::vector<HidUsage> keys = layoutKeys();
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(fullProfile(QStringLiteral("Full"))));
    for (std::size_t index = 0; index < heldCount; ++index)
        (void)engine.keyDown(keys[index], {});
    const std::size_t allocationsBefore = allocations;
    std::size_t events = 0;
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        for (std::size_t index = heldCount; index < keys.size(); ++index) {
            benchmark::DoNotOptimize(engine.keyDown(keys[index], {}));
            benchmark::DoNotOptimize(engine.keyUp(keys[index], {}));
        }
        events += 2 * (keys.size() - heldCount);
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    secondsPerEvent = seconds.count() / static_cast<double>(events);
    allocationsPerEvent = static_cast<double>(allocations - allocationsBefore) / static_cast<double>(events);
    state.SetItemsProcessed(static_cast<int64_t>(events));
    state.counters["ns/event"] = secondsPerEvent * 1e9;
    state.counters["allocations/event"] = allocationsPerEvent;
}

/// The cost that a profile switch or a new mapping adds to its change of the document.
void compileProfile(benchmark::State &state)
{
    const QVariantMap profile = fullProfile(QStringLiteral("Full"));
    KeyEngine engine;
    const std::size_t allocationsBefore = allocations;
    for (auto _ : state)
        (void)engine.setKeyMap(KeyMap(profile));
    state.counters["allocations"] =
        benchmark::Counter(double(allocations - allocationsBefore), benchmark::Counter::kAvgIterations);
}

/// One event of a macro while five of the longest macros play.
void playEvents(benchmark::State &state)
{
    constexpr int playing = 5;
    QVariantList events;
    for (int count = 0; count < MacroRecord::maximumEvents; ++count)
        events += MacroRecord::eventRecord({.command = count % 2 == 0 ? MacroRecord::keyDown : MacroRecord::keyUp,
                                            .delayMs = 1 + count % 7,
                                            .argument = 4U + count / 2 % 26});
    QVariantList macros;
    QVariantMap keys;
    for (int index = 0; index < playing; ++index) {
        macros += MacroRecord::withEvents({{QStringLiteral("macroID"), index}}, events);
        keys.insert(QString::number(106 + index), QVariantMap{{QStringLiteral("command"), 10},
                                                              {QStringLiteral("param1"), index},
                                                              {QStringLiteral("param2"), 255}});
    }
    KeyEngine engine;
    (void)engine.setMacros(playableMacros(macros));
    (void)engine.setKeyMap(KeyMap({{QStringLiteral("Keys"), keys}}));
    for (quint16 index = 0; index < playing; ++index)
        (void)engine.keyDown({HidUsage::keyboardPage, static_cast<quint16>(106 + index)}, {});
    const std::size_t allocationsBefore = allocations;
    std::size_t count = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.advance(*engine.nextDeadline()));
        ++count;
    }
    state.SetItemsProcessed(static_cast<int64_t>(count));
    state.counters["allocations/call"] =
        static_cast<double>(allocations - allocationsBefore) / static_cast<double>(count);
}

BENCHMARK(compileProfile)->Unit(benchmark::kMicrosecond);
BENCHMARK(playEvents)->Unit(benchmark::kNanosecond);
BENCHMARK(pressAndReleaseEveryKey)->Arg(0)->Arg(4)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    std::printf("one event, four other keys held: %.0f ns, %.2f allocations\n", secondsPerEvent * 1e9,
                allocationsPerEvent);
    return 0;
}
