// SPDX-License-Identifier: MIT
#include "base/daemonprotocol.h"
#include "base/filesizesignal.h"
#include "daemon/daemonprocess.h"
#include "daemon/launch/detachedprocess.h"
#include "daemon/system/continuesignal.h"
#include "daemon/system/logging.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstddef>
#include <pthread.h>

using namespace Qt::StringLiterals;

namespace {

/// A stopped daemon would hold the keyboard, and the user could not type to continue it. The daemon must also not end
/// with the reader of its log.
void ignoreSignals()
{
    for (const int number : {SIGTSTP, SIGTTIN, SIGTTOU, SIGPIPE})
        std::signal(number, SIG_IGN); // DetachedProcess restores the default for the programs that it starts
}

/// If a stack of the usual 8 MiB happens to lie on one of the kernel's huge pages, it occupies 2 MiB of memory.
void makeStacksSmall()
{
    constexpr std::size_t stackSize = 1024 * 1024; // too small for a huge page, many times what a thread uses
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setstacksize(&attributes, stackSize);
    ::pthread_setattr_default_np(&attributes);
    ::pthread_attr_destroy(&attributes);
}

} // namespace

int main(int argc, char *argv[])
{
    ignoreSignals();
    makeFileSizeLimitAnError();
    ContinueSignal::block();
    makeStacksSmall();
    // Makes event loops wait with poll(). GLib's loop is slower and needs memory of its own.
    qputenv(DetachedProcess::withheldVariable, "1");
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(DaemonProtocol::daemonProcessName);
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRA_VERSION));
    qSetMessagePattern(u"%{category} %{type}: %{message}"_s);
    makeLogVisible();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Device daemon of the Quill Kestra keyboard: keeps its settings, answers its clients and maps its keys.\n"
        u"Runs in the foreground until SIGTERM or SIGINT; logs to standard error (QT_LOGGING_RULES chooses what).\n"
        u"Settings are kept in $XDG_STATE_HOME/quill-kestra (default ~/.local/state/quill-kestra).\n"
        u"Exit codes: 0 ended by a signal, 1 wrong arguments, 2 no session bus, 3 already running, 4 the settings cannot be read or kept, 5 the key thread was stuck."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        qCritical("unexpected argument: %s", qUtf8Printable(parser.positionalArguments().constFirst()));
        return 1;
    }
    return static_cast<int>(runDaemon());
}
