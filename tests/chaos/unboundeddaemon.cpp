// SPDX-License-Identifier: MIT
// The daemon, with a history that keeps each change as an entry of its own, however old and however large it becomes.
#include "base/propertylist.h"
#include "daemon/daemonprocess.h"
#include "daemon/system/continuesignal.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char *argv[])
{
    std::signal(SIGPIPE, SIG_IGN);
    ContinueSignal::block();
    QCoreApplication application(argc, argv);
    constexpr qint64 centuryMs = qint64{100} * 365 * 24 * 60 * 60 * 1000;
    return static_cast<int>(runDaemon({.bytes = PropertyList::maximumInputBytes, .ageMs = centuryMs, .joiningMs = -1}));
}
