// SPDX-License-Identifier: MIT
// Runs a fuzz target without libFuzzer: on each file of a corpus folder, then on a fixed sequence of mutations.
// Usage: <program> TARGET CORPUS-FOLDER MUTATIONS
#include "fuzz/target.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

std::map<std::string, FuzzTarget> &targets()
{
    static std::map<std::string, FuzzTarget> all;
    return all;
}

void run(FuzzTarget target, const QByteArray &input)
{
    // Copies the input to memory of exactly its size, where a sanitizer detects reading past the end.
    const std::vector<char> exact(input.cbegin(), input.cend());
    target(QByteArrayView(exact.data(), qsizetype(exact.size())));
}

QList<QByteArray> corpus(const QString &folder)
{
    QList<QByteArray> inputs;
    const QDir directory(folder);
    for (const QString &name : directory.entryList(QDir::Files, QDir::Name)) {
        QFile file(directory.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            inputs.append(file.readAll());
    }
    return inputs;
}

/// `input` with one mutation: a byte changed, a bit flipped, bytes removed, doubled, inserted, or taken from `other`.
QByteArray mutated(QByteArray input, const QByteArray &other, std::mt19937 &random)
{
    const auto below = [&random](qsizetype bound) { return bound > 0 ? qsizetype(random() % size_t(bound)) : 0; };
    const qsizetype at = below(input.size());
    const qsizetype length = 1 + below(8);
    switch (random() % 6) {
    case 0: return input.isEmpty() ? input : input.replace(at, 1, QByteArray(1, char(random())));
    case 1: return input.isEmpty() ? input : input.replace(at, 1, QByteArray(1, char(input[at] ^ 1 << random() % 8)));
    case 2: return input.remove(at, length);
    case 3: return input.insert(at, input.mid(at, length));
    case 4: return input.insert(at, QByteArray(length, char(random())));
    default: return input.first(at) + other.sliced(below(other.size()));
    }
}

} // namespace

FuzzTargetRegistration::FuzzTargetRegistration(const char *name, FuzzTarget target)
{
    targets()[name] = target;
}

int main(int argc, char **argv)
{
    prepareFuzzing(argc, argv);
    const auto target = targets().find(argc == 4 ? argv[1] : "");
    const QList<QByteArray> inputs =
        target == targets().end() ? QList<QByteArray>() : corpus(QString::fromLocal8Bit(argv[2]));
    if (inputs.isEmpty()) {
        std::fprintf(stderr, "usage: %s TARGET CORPUS-FOLDER MUTATIONS (the folder must hold files)\n", argv[0]);
        for (const auto &known : targets())
            std::fprintf(stderr, "  %s\n", known.first.c_str());
        return 2;
    }
    for (const QByteArray &input : inputs)
        run(target->second, input);
    std::mt19937 random(1);
    const int mutations = atoi(argv[3]);
    for (int i = 0; i < mutations; ++i) {
        QByteArray input = inputs[qsizetype(random() % size_t(inputs.size()))];
        for (unsigned changes = 1 + random() % 4; changes > 0; --changes)
            input = mutated(input, inputs[qsizetype(random() % size_t(inputs.size()))], random);
        run(target->second, input);
    }
    std::printf("%lld files and %d mutations\n", static_cast<long long>(inputs.size()), mutations);
    return 0;
}
