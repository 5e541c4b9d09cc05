// SPDX-License-Identifier: MIT
#include "platform/terminationsignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A signal handler may call only a few functions. This one writes the number of the signal into this pair, and the
// event loop reads it.
std::array<int, 2> signalSockets{-1, -1};

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

void noteSignal(int signalNumber)
{
    const int interruptedErrno = errno;
    const auto number = static_cast<char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &number, 1);
    errno = interruptedErrno;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalSockets.data()) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &TerminationSignals::readSignal);
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : handledSignals)
        ::sigaction(signalNumber, &action, nullptr);
}

TerminationSignals::~TerminationSignals()
{
    for (const int signalNumber : handledSignals)
        ::signal(signalNumber, SIG_DFL);
    for (int &socket : signalSockets) {
        if (socket >= 0)
            ::close(socket);
        socket = -1;
    }
}

void TerminationSignals::readSignal()
{
    char signalNumber = 0;
    if (::read(signalSockets[1], &signalNumber, 1) == 1)
        Q_EMIT terminationRequested(signalNumber);
}
