// SPDX-License-Identifier: MIT
// Compares the codec of base/ with libplist: both read and write a full settings document. Prints how many times as
// fast the codec is. Both read the same bytes into their own tree and free it again. The program could use libplist's
// tree only after converting it.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "tests/support/fulldocument.h"

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <QHash>

#include <cstdio>
#include <string>

namespace {

const QByteArray &documentBytes()
{
    static const QByteArray bytes = PropertyList::writeBinary(fullDocument()).value();
    return bytes;
}

/// The same document with a different second argument in every key's entry, which makes all entries differ.
QVariantMap dissimilarDocument()
{
    QVariantMap document = fullDocument();
    QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    int argument = 0;
    for (QVariant &profile : profiles) {
        QVariantMap record = profile.toMap();
        QVariantMap keys = record.value(SettingsKeys::keys).toMap();
        for (QVariant &key : keys) {
            QVariantMap entry = key.toMap();
            entry.insert(SettingsKeys::param2, argument++);
            key = entry;
        }
        record.insert(SettingsKeys::keys, keys);
        profile = record;
    }
    document.insert(SettingsKeys::profiles, profiles);
    return document;
}

const QByteArray &dissimilarBytes()
{
    static const QByteArray bytes = PropertyList::writeBinary(dissimilarDocument()).value();
    return bytes;
}

void readWithCodec(benchmark::State &state, const QByteArray &bytes)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(PropertyList::read(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void readWithLibplist(benchmark::State &state, const QByteArray &bytes)
{
    for (auto _ : state) {
        plist_t root = nullptr;
        plist_from_bin(bytes.constData(), uint32_t(bytes.size()), &root);
        benchmark::DoNotOptimize(root);
        plist_free(root);
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

/// Writes a document that was read, in which equal strings are shared.
void writeReadDocumentWithCodec(benchmark::State &state)
{
    const QVariant root = PropertyList::read(documentBytes()).value();
    for (auto _ : state)
        benchmark::DoNotOptimize(PropertyList::writeBinary(root));
    state.SetBytesProcessed(state.iterations() * documentBytes().size());
}

/// Writes a document that the program built, in which every key is a separate string.
void writeBuiltDocumentWithCodec(benchmark::State &state)
{
    const QVariant root = fullDocument();
    for (auto _ : state)
        benchmark::DoNotOptimize(PropertyList::writeBinary(root));
    state.SetBytesProcessed(state.iterations() * documentBytes().size());
}

void writeWithLibplist(benchmark::State &state)
{
    plist_t root = nullptr;
    plist_from_bin(documentBytes().constData(), uint32_t(documentBytes().size()), &root);
    for (auto _ : state) {
        char *bytes = nullptr;
        uint32_t size = 0;
        plist_to_bin(root, &bytes, &size);
        benchmark::DoNotOptimize(bytes);
        plist_to_bin_free(bytes);
    }
    plist_free(root);
    state.SetBytesProcessed(state.iterations() * documentBytes().size());
}

BENCHMARK_CAPTURE(readWithCodec, full, documentBytes())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readWithLibplist, full, documentBytes())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readWithCodec, dissimilar, dissimilarBytes())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readWithLibplist, dissimilar, dissimilarBytes())->Unit(benchmark::kMicrosecond);
BENCHMARK(writeReadDocumentWithCodec)->Unit(benchmark::kMicrosecond);
BENCHMARK(writeBuiltDocumentWithCodec)->Unit(benchmark::kMicrosecond);
BENCHMARK(writeWithLibplist)->Unit(benchmark::kMicrosecond);

/// Prints as usual and remembers the time of each benchmark (the median of repetitions).
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median")
                mTimes.insert(QByteArray::fromStdString(run.run_name.function_name), run.GetAdjustedCPUTime());
        }
    }

    void printRatio(const char *what, const QByteArray &codec, const QByteArray &libplist) const
    {
        if (mTimes.contains(codec) && mTimes.contains(libplist))
            std::printf("%s: %.1f times as fast as libplist\n", what, mTimes.value(libplist) / mTimes.value(codec));
    }

private:
    QHash<QByteArray, double> mTimes;
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("document: %lld bytes\n", static_cast<long long>(documentBytes().size()));
    reporter.printRatio("reading", "readWithCodec/full", "readWithLibplist/full");
    reporter.printRatio("reading, no two entries alike", "readWithCodec/dissimilar", "readWithLibplist/dissimilar");
    reporter.printRatio("writing what was read", "writeReadDocumentWithCodec", "writeWithLibplist");
    reporter.printRatio("writing what was built", "writeBuiltDocumentWithCodec", "writeWithLibplist");
    return 0;
}
