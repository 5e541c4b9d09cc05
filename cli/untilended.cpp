// SPDX-License-Identifier: MIT
#include "cli/untilended.h"

#include "platform/terminationsignals.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <unistd.h>

std::optional<std::chrono::milliseconds> secondsOf(const QString &text)
{
    constexpr double longest = 24 * 60 * 60;
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0.001) || seconds > longest)
        return {};
    return std::chrono::milliseconds(qRound64(seconds * 1000));
}

void runUntilEnded(QEventLoop &loop, std::optional<std::chrono::milliseconds> duration)
{
    const TerminationSignals signalListener;
    QObject::connect(&signalListener, &TerminationSignals::terminationRequested, &loop, &QEventLoop::quit);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.callOnTimeout(&loop, &QEventLoop::quit);
    std::optional<QSocketNotifier> input;
    if (duration) {
        timer.start(*duration);
    } else {
        input.emplace(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&*input, &QSocketNotifier::activated, &loop, [&loop] {
            // Consumes the typed text, which the shell would otherwise get. The end of the input also ends the wait.
            std::array<char, 4096> typed{};
            const ssize_t count = ::read(STDIN_FILENO, typed.data(), typed.size());
            if (count <= 0 || std::find(typed.begin(), typed.begin() + count, '\n') != typed.begin() + count)
                loop.quit();
        });
    }
    loop.exec();
}
