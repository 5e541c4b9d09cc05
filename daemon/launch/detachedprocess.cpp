// SPDX-License-Identifier: MIT
#include "daemon/launch/detachedprocess.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <linux/close_range.h>

namespace {

/// The data for the new process, prepared before the fork: after it, only async-signal-safe calls are allowed.
struct Image
{
    const char *program;
    char *const *arguments;
    char *const *environment;
    const char *workingDirectory;
    int errorPipe; // closed by a successful exec
};

void resetSignals()
{
    for (int signalNumber = 1; signalNumber < NSIG; ++signalNumber)
        ::signal(signalNumber, SIG_DFL); // fails for signals that cannot be changed
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// The kernel ends a daemon whose keys take too long with real-time priority; this limit must not affect the program.
/// The hard limit, which RealtimeKit requires, cannot be raised again; RealtimeKit would also require it of the
/// program.
void resetRealTimeLimit()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_RTTIME, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_RTTIME, &limit);
}

/// The exec closes every file except the three standard ones.
void closeFilesOnExec()
{
    constexpr unsigned int firstOther = STDERR_FILENO + 1;
    if (::close_range(firstOther, ~0U, CLOSE_RANGE_CLOEXEC) == 0)
        return;
    const long count = ::sysconf(_SC_OPEN_MAX); // for kernels before 5.11
    for (int file = firstOther; file < count; ++file)
        ::fcntl(file, F_SETFD, FD_CLOEXEC);
}

[[nodiscard]] bool openNull()
{
    const int null = ::open("/dev/null", O_RDWR);
    if (null < 0)
        return false;
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(null, file);
    if (null > STDERR_FILENO)
        ::close(null);
    return true;
}

[[noreturn]] void endWithError(const Image &image)
{
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(image.errorPipe, &error, sizeof error);
    ::_exit(127);
}

[[noreturn]] void becomeProgram(const Image &image)
{
    resetSignals();
    resetRealTimeLimit();
    closeFilesOnExec();
    if (openNull() && ::chdir(image.workingDirectory) == 0)
        ::execve(image.program, image.arguments, image.environment);
    endWithError(image);
}

/// The child leaves the session and ends at once, so the grandchild has no parent in this process.
[[noreturn]] void detach(const Image &image)
{
    ::setsid();
    const pid_t grandchild = ::fork();
    if (grandchild < 0)
        endWithError(image);
    if (grandchild == 0)
        becomeProgram(image);
    ::_exit(0);
}

/// This process's environment without withheldVariable; null at its end.
std::vector<char *> environmentToPassOn()
{
    const std::string withheld = std::string(DetachedProcess::withheldVariable) + '=';
    std::vector<char *> variables;
    for (char *const *variable = environ; *variable; ++variable) {
        if (!std::string_view(*variable).starts_with(withheld))
            variables.push_back(*variable);
    }
    variables.push_back(nullptr);
    return variables;
}

Error systemError(int error)
{
    return {QString::fromLocal8Bit(std::strerror(error))};
}

/// The error that came through the pipe before the exec closed it; 0 for none.
int readError(int pipe)
{
    int error = 0;
    ssize_t count = 0;
    do
        count = ::read(pipe, &error, sizeof error);
    while (count < 0 && errno == EINTR);
    return count == sizeof error ? error : 0;
}

} // namespace

Result<void> DetachedProcess::start(const QStringList &command, const QString &workingDirectory)
{
    QList<QByteArray> words;
    for (const QString &word : command)
        words += QFile::encodeName(word);
    std::vector<char *> arguments;
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const std::vector<char *> environment = environmentToPassOn();
    const QByteArray directory = QFile::encodeName(workingDirectory);

    std::array<int, 2> errorPipe{};
    if (::pipe2(errorPipe.data(), O_CLOEXEC) != 0)
        return systemError(errno);
    const pid_t child = ::fork();
    if (child == 0)
        detach({.program = arguments.front(),
                .arguments = arguments.data(),
                .environment = environment.data(),
                .workingDirectory = directory.constData(),
                .errorPipe = errorPipe[1]});
    int error = child < 0 ? errno : 0;
    ::close(errorPipe[1]);
    if (child > 0) {
        error = readError(errorPipe[0]);
        while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    ::close(errorPipe[0]);
    if (error != 0)
        return systemError(error);
    return {};
}
