// SPDX-License-Identifier: MIT
// The time that a user waits for one change of a key: from the call of the hub, over the bus, through the real daemon
// and its disk, back into the document and onto the screen. Run it on a private bus:
//   dbus-run-session -- build/release/bin/bench_updatekey
#include "base/settingskeys.h"
#include "bench/benchprogram.h"
#include "keys/keyboardkeyscontroller.h"
#include "tests/support/fulldocument.h"

#include <benchmark/benchmark.h>

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

void updateKeyAndRedraw(benchmark::State &state)
{
    BenchProgram program(fullDocument());
    int command = 20;
    for (auto _ : state) {
        QVariantMap keys = program.controller.currentProfileDict().value(SettingsKeys::keys).toMap();
        QVariantMap entry = keys.value(u"4"_s).toMap();
        command = command == 20 ? 45 : 20;
        entry[SettingsKeys::command] = command;
        keys[u"4"_s] = entry;
        program.controller.updateKeySettings({{SettingsKeys::keys, keys}});
        QApplication::processEvents(); // paints what changed
    }
    const QVariantMap stored = program.controller.currentProfileDict().value(SettingsKeys::keys).toMap();
    if (stored.value(u"4"_s).toMap().value(SettingsKeys::command).toInt() != command)
        state.SkipWithError("the change did not come back");
}

void selectKeyAndRedraw(benchmark::State &state)
{
    BenchProgram program(fullDocument());
    KeyboardKeysController *keys = program.controller.keysController();
    bool isFirst = true;
    for (auto _ : state) {
        isFirst ? keys->clickA(nullptr) : keys->clickL(nullptr);
        isFirst = !isFirst;
        QApplication::processEvents(); // paints what changed
    }
}

BENCHMARK(updateKeyAndRedraw)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(50)->Repetitions(5);
BENCHMARK(selectKeyAndRedraw)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);

} // namespace
