// SPDX-License-Identifier: MIT
// The accuracy of playing a macro on the virtual keyboard: the error of each event against the sum of the pauses before
// it. It is measured where the daemon passes the event to the keyboard, relative to the key press. It is also measured
// at a client on the bus, relative to the earliest event, because the bus delays every event. Run it on a private bus:
//   dbus-run-session -- build/release/bin/bench_playback
#include "base/document.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/deadlinetimer.h"
#include "macros/macrorecord.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/sentrecorder.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

using Time = DeadlineTimer::Time;

constexpr int eventCount = 1000;
constexpr int longestPauseMs = 30;
constexpr uint firstTrigger = 106; // M1
constexpr uint firstPlayed = 4;    // A; each macro plays a key of its own

/// Presses and releases of one key, with pauses that `seed` determines.
QVariantMap macro(quint32 seed, uint key)
{
    QRandomGenerator random(seed);
    QVariantList events;
    for (int count = 0; count < eventCount; ++count)
        events += MacroRecord::eventRecord({.command = count % 2 == 0 ? MacroRecord::keyDown : MacroRecord::keyUp,
                                            .delayMs = random.bounded(1, longestPauseMs + 1),
                                            .argument = key});
    return MacroRecord::withEvents({{u"MacroName"_s, u"Macro %1"_s.arg(seed)}}, events);
}

/// The time after the press at which each event is due.
std::vector<Time> dueTimes(const QVariantMap &macro)
{
    std::vector<Time> times;
    Time sum{};
    for (const QVariant &event : MacroRecord::events(macro)) {
        sum += std::chrono::milliseconds(MacroRecord::eventFields(event.toMap()).delayMs);
        times.push_back(sum);
    }
    return times;
}

QVariantMap documentWith(int macroCount)
{
    QVariantList macros;
    QVariantMap keys;
    for (int index = 0; index < macroCount; ++index) {
        macros += macro(static_cast<quint32>(index), firstPlayed + static_cast<uint>(index));
        keys.insert(QString::number(firstTrigger + static_cast<uint>(index)),
                    QVariantMap{{u"command"_s, 10}, {u"param1"_s, index}, {u"param2"_s, 1}});
    }
    const QVariantMap profile{{u"ProfileName"_s, u"Bench"_s}, {u"Keys"_s, keys}};
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{profile}},
                                        {u"Macros"_s, macros},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

/// The arrival times of the events: [macro][event].
using Arrivals = std::vector<std::vector<Time>>;

/// Records each event, and ends the loop when all have arrived.
class Arrival
{
public:
    Arrival(int macroCount, QEventLoop &loop) : mTimes(static_cast<std::size_t>(macroCount)), mLoop(loop) {}

    void note(uint usage)
    {
        mTimes[usage - firstPlayed].push_back(DeadlineTimer::now());
        if (std::ranges::all_of(mTimes, [](const auto &times) { return times.size() == eventCount; }))
            mLoop.quit();
    }

    [[nodiscard]] const Arrivals &times() const { return mTimes; }

private:
    Arrivals mTimes;
    QEventLoop &mLoop;
};

/// Prints percentiles of the errors, in microseconds. The drift is how much later the last tenth is than the first.
void report(const char *where, int macroCount, const std::vector<std::vector<qint64>> &errorsOfMacros)
{
    std::vector<qint64> all;
    qint64 drift = 0;
    for (std::vector<qint64> errors : errorsOfMacros) {
        all.insert(all.end(), errors.begin(), errors.end());
        const auto tenth = static_cast<std::ptrdiff_t>(errors.size() / 10);
        std::sort(errors.begin(), errors.begin() + tenth);
        std::sort(errors.end() - tenth, errors.end());
        drift = std::max(drift, *(errors.end() - tenth / 2) - errors[static_cast<std::size_t>(tenth / 2)]);
    }
    std::ranges::sort(all);
    const auto percentile = [&](double share) {
        return static_cast<long long>(all[static_cast<std::size_t>(share * static_cast<double>(all.size() - 1))]);
    };
    std::printf("%-12s %2d macros: median %4lld us, 99th percentile %5lld us, greatest %6lld us, drift %lld us\n",
                where, macroCount, percentile(0.5), percentile(0.99), percentile(1), static_cast<long long>(drift));
}

void measureAtTheKeyboard(int macroCount)
{
    const QTemporaryDir folder;
    SettingsStore store(folder.path());
    if (!store.open())
        qFatal("no settings");
    VirtualKeyboard keyboard;
    QEventLoop loop;
    Arrival arrival(macroCount, loop);
    const QVariantMap document = documentWith(macroCount);
    DeviceDaemon daemon(store, keyboard,
                        {.sendReply = [](const QString &, qint32, const QVariantMap &) {},
                         .postNotification = [](const QString &, const QVariantMap &) {},
                         .watchClient = [](const QString &) {},
                         .launchProgram = [](const QString &) {},
                         .now = DeadlineTimer::now},
                        document);
    QObject::connect(&keyboard, &VirtualKeyboard::sent, &loop, [&](uint, uint usage, bool) { arrival.note(usage); });
    std::vector<Time> starts;
    for (int index = 0; index < macroCount; ++index) {
        starts.push_back(DeadlineTimer::now());
        (void)keyboard.press(7, firstTrigger + static_cast<uint>(index));
    }
    loop.exec();
    std::vector<std::vector<qint64>> errors(static_cast<std::size_t>(macroCount));
    for (std::size_t index = 0; index < errors.size(); ++index) {
        const std::vector<Time> due = dueTimes(Document(document).macros().at(qsizetype(index)).toMap());
        for (std::size_t event = 0; event < due.size(); ++event)
            errors[index].push_back((arrival.times()[index][event] - starts[index] - due[event]).count());
    }
    report("the keyboard", macroCount, errors);
}

void measureAtAClient(int macroCount)
{
    DaemonProcessFixture daemon;
    if (!daemon.start())
        qFatal("no daemon");
    const QVariantMap document = documentWith(macroCount);
    for (const QVariant &record : Document(document).macros())
        (void)daemon.request(DaemonProtocol::Command::addMacro, {{u"MacroContents"_s, record}});
    (void)daemon.request(DaemonProtocol::Command::updateProfile,
                         {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, Document(document).activeProfile()}});
    KeyboardProxy proxy;
    QEventLoop loop;
    Arrival arrival(macroCount, loop);
    QObject::connect(&proxy, &KeyboardProxy::Sent, &loop, [&](uint, uint usage, bool) { arrival.note(usage); });
    for (int index = 0; index < macroCount; ++index)
        (void)daemon.callKeyboard(u"Press"_s, {7u, firstTrigger + static_cast<uint>(index)});
    loop.exec();
    std::vector<std::vector<qint64>> errors(static_cast<std::size_t>(macroCount));
    for (std::size_t index = 0; index < errors.size(); ++index) {
        const std::vector<Time> due = dueTimes(Document(document).macros().at(qsizetype(index)).toMap());
        for (std::size_t event = 0; event < due.size(); ++event)
            errors[index].push_back((arrival.times()[index][event] - due[event]).count());
        const qint64 earliest = std::ranges::min(errors[index]);
        for (qint64 &error : errors[index])
            error -= earliest;
    }
    report("a client", macroCount, errors);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (!QCoreApplication::arguments().sliced(1).isEmpty()) {
        std::fputs("usage: dbus-run-session -- bench_playback\n", stderr);
        return 1;
    }
    if (!qEnvironmentVariableIsSet("KESTRA_BIN_DIR"))
        qputenv("KESTRA_BIN_DIR", QCoreApplication::applicationDirPath().toLocal8Bit());
    for (const int macroCount : {1, 5}) {
        measureAtTheKeyboard(macroCount);
        measureAtAClient(macroCount);
    }
    return 0;
}
