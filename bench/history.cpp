// SPDX-License-Identifier: MIT
// The cost of the history: time and bytes for each of 1,000 ordinary changes of the full document, beside the cost of
// the change itself, in the same run.
//   build/release/bin/bench_history [folder]
#include "base/document.h"
#include "base/settingskeys.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "tests/support/fulldocument.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <numeric>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int changes = 1000;

/// Milliseconds of a part of every change.
struct Cost
{
    QList<double> elapsed;
    QList<double> processor;

    template <typename Function> void measure(const Function &function)
    {
        const auto processorNow = [] {
            timespec time = {};
            ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
            return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
        };
        QElapsedTimer timer;
        timer.start();
        const double start = processorNow();
        function();
        processor += processorNow() - start;
        elapsed += double(timer.nsecsElapsed()) / 1e6;
    }

    static double median(QList<double> values)
    {
        std::ranges::sort(values);
        return values.at(values.size() / 2);
    }
    static double sum(const QList<double> &values) { return std::accumulate(values.begin(), values.end(), 0.0); }
};

/// Mostly keys; some of everything else.
std::pair<Command, QVariantMap> ordinaryChange(QRandomGenerator &random, const Document &document)
{
    const int row = random.bounded(int(document.profiles().size()));
    const int macro = random.bounded(int(document.macros().size()));
    const auto update = [row](const QVariantMap &settings) {
        return std::pair{Command::updateProfile, QVariantMap{{DaemonProtocol::profileId, row},
                                                             {DaemonProtocol::deviceSettingsDictionary, settings}}};
    };
    switch (random.bounded(10)) {
    case 0: return update({{SettingsKeys::brightnessKbNormal, random.bounded(5)}});
    case 1: return update({{SettingsKeys::profileName, u"Profile %1"_s.arg(random.bounded(1000))}});
    case 2: return {Command::switchProfile, {{DaemonProtocol::profileId, row}}};
    case 3:
        return {Command::setDelay,
                {{DaemonProtocol::macroId, macro},
                 {DaemonProtocol::sequenceIndex, random.bounded(90)},
                 {DaemonProtocol::delay, random.bounded(500)}}};
    case 4:
        return {Command::setAllDelays,
                {{DaemonProtocol::macroId, macro},
                 {DaemonProtocol::hasNoDelay, false},
                 {DaemonProtocol::delay, random.bounded(90)}}};
    default: {
        QVariantMap keys = document.profile(row).value(SettingsKeys::keys).toMap();
        keys.insert(QString::number(random.bounded(4, 100)), QVariantMap{{SettingsKeys::command, 16},
                                                                         {SettingsKeys::param1, random.bounded(4, 100)},
                                                                         {SettingsKeys::param2, random.bounded(256)}});
        return update({{SettingsKeys::keys, keys}});
    }
    }
}

void print(const char *name, const Cost &cost)
{
    std::printf("%-28s %8.3f ms elapsed %8.3f ms processor time (medians)\n", name, Cost::median(cost.elapsed),
                Cost::median(cost.processor));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTemporaryDir temporary;
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    SettingsStore store(folder);
    if (!store.open())
        return 1;
    QVariantMap document = SettingsDocument::completed(fullDocument());
    History history(folder);
    qint64 now = 1'700'000'000'000;
    history.setClock([&now] { return now += 60'000; }); // joins nothing
    history.open(document, [] { return QList<QByteArray>(); });
    QRandomGenerator random(271);
    Cost change;
    Cost entry;
    for (int done = 0; done < changes;) {
        const auto [command, request] = ordinaryChange(random, Document(document));
        QVariantMap after;
        bool isStored = false;
        Cost attempt;
        attempt.measure([&] { // as the daemon has always done it
            const CommandOutcome outcome = findDocumentCommand(static_cast<qint32>(command))->apply(document, request);
            isStored = outcome.changesDocument && !CurrentSettings::areSame(outcome.document, document)
                       && store.save(outcome.document);
            after = outcome.document;
        });
        if (!isStored)
            continue;
        change.elapsed += attempt.elapsed;
        change.processor += attempt.processor;
        entry.measure(
            [&] { history.record(document, {{.document = after, .cause = {.author = u"client"_s}}}, store.digest()); });
        document = after;
        ++done;
    }
    print("change without the history", change);
    print("its entry in the history", entry);
    Cost opening;
    History again(folder);
    again.setClock([&now] { return now; });
    opening.measure([&] { again.open(document, [] { return QList<QByteArray>(); }); });
    print("reading it at the start", opening);
    std::printf("ratio of the sums: %.3f elapsed, %.3f processor time\n",
                Cost::sum(entry.elapsed) / Cost::sum(change.elapsed),
                Cost::sum(entry.processor) / Cost::sum(change.processor));
    std::printf("history: %lld bytes for %lld entries; settings: %lld bytes\n",
                static_cast<long long>(QFileInfo(folder + u"/history"_s).size()),
                static_cast<long long>(again.entries().size()),
                static_cast<long long>(QFileInfo(folder + u"/settings.plist"_s).size()));
    return 0;
}
