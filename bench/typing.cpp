// SPDX-License-Identifier: MIT
// The cost of turning a text of 1,000 letters into the events of a macro, beside one pass over the same letters that
// only looks up each one in a table. Also the cost of a layout's table, which is made once.
//   build/release/bin/bench_typing
#include "platform/keymap.h"
#include "typing/typedtext.h"
#include "typing/typingtable.h"

#include <QHash>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr int letters = 1'000;
constexpr int runs = 51;

double processorMs()
{
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// Milliseconds of processor time of one call: the median of the runs.
template <typename Function> double medianMs(const Function &function)
{
    QList<double> times;
    for (int run = 0; run < runs; ++run) {
        const double start = processorMs();
        function();
        times += processorMs() - start;
    }
    std::ranges::sort(times);
    return times.at(times.size() / 2);
}

} // namespace

int main()
{
    const std::pair<const char *, QString> texts[] = {{"us", u"The quick brown fox jumps. "_s},
                                                      {"de", u"Äußerst böse Füße @ 5 €; "_s},
                                                      {"fr", u"Forêt naïve où l'été dîne, "_s},
                                                      {"ru", u"Съешь же ещё французских булок, "_s}};
    for (const auto &[layout, words] : texts) {
        const Keymap keymap = Keymap::fromNames(layout);
        const QString text = words.repeated(letters / words.size() + 1).first(letters);
        TypingTable table;
        const double tableMs = medianMs([&] { table = TypingTable(keymap, "en_US.UTF-8"); });
        qsizetype events = 0;
        const double typingMs = medianMs([&] { events = typeText(text, table, 20).events.size(); });
        QHash<QString, int> numbers;
        for (const QChar letter : text)
            numbers.insert(QString(letter), letter.unicode());
        int sum = 0;
        const double lookUpMs = medianMs([&] {
            for (const QChar letter : text)
                sum += numbers.value(QString(letter));
        });
        std::printf("%s: %lld events in %.3f ms, %.1f times a look-up of each letter; the table takes %.1f ms (%d)\n",
                    layout, static_cast<long long>(events), typingMs, typingMs / lookUpMs, tableMs, sum % 10);
    }
    return 0;
}
