// SPDX-License-Identifier: MIT
// What the tests of the chaos suite are told from outside, and how they wait.
// KESTRA_CHAOS_SEED: of the random requests, faults and moments (271). KESTRA_CHAOS_KILLS: how often killstest kills
// the daemon (220). KESTRA_CHAOS_ROUNDS: how many random standstills standstilltest makes (8).
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <concepts>

inline int numberFromEnvironment(const char *name, int fallback)
{
    const QString text = qEnvironmentVariable(name);
    return text.isEmpty() ? fallback : text.toInt();
}

inline quint32 chaosSeed()
{
    return static_cast<quint32>(numberFromEnvironment("KESTRA_CHAOS_SEED", 271));
}

/// Waits for events until `condition` holds; false when it does not in the end. It looks after each event, so that
/// hundreds of waits cost little more than what they wait for.
template <std::predicate Condition> bool awaitEvents(const Condition &condition)
{
    constexpr int limitMs = 30'000;
    QTimer wakeUp; // for a condition that no event tells of
    wakeUp.start(20);
    const QDeadlineTimer patience(limitMs);
    while (!condition() && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}
