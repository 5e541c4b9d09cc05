// SPDX-License-Identifier: MIT
// The daemon, with a history that keeps each change as an entry of its own, however old and however large it becomes.
#include "base/propertylist.h"
#include "daemon/daemonprocess.h"
#include "daemon/system/continuesignal.h"

#include <QCoreApplication>

#include <csignal>
#include <limits>

int main(int argc, char *argv[])
{
    std::signal(SIGPIPE, SIG_IGN);
    ContinueSignal::block();
    QCoreApplication application(argc, argv);
    return static_cast<int>(runDaemon(
        {.bytes = PropertyList::maximumInputBytes, .ageMs = std::numeric_limits<qint64>::max(), .joiningMs = -1}));
}
