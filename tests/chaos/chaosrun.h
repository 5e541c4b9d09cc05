// SPDX-License-Identifier: MIT
// The environment variables of the chaos suite, and its way to wait. The variables, with their defaults:
// KESTRA_CHAOS_SEED: the seed of the random requests, faults and moments (271). KESTRA_CHAOS_KILLS: how often killstest
// kills the daemon (220). KESTRA_CHAOS_CHANGES: how many changes historykillstest makes (1000; 250 with
// AddressSanitizer). KESTRA_CHAOS_ROUNDS: how many random standstills standstilltest has (8).
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

/// Handles events until `condition` holds; false when it does not hold in time. The check follows each event, so
/// hundreds of waits cost little time of their own.
template <std::predicate Condition> bool awaitEvents(const Condition &condition)
{
    constexpr int limitMs = 30'000;
    QTimer wakeUp; // for a condition that changes without an event
    wakeUp.start(20);
    const QDeadlineTimer patience(limitMs);
    while (!condition() && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}
