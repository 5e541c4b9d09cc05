// SPDX-License-Identifier: MIT
// The main function of the benchmarks that measure the whole window, with its English texts. Main thread.
#include "base/resources.h"
#include "base/text.h"

#include <benchmark/benchmark.h>

#include <QApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    installTexts(resourcePath(u"texts"_s), {u"en"_s});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
