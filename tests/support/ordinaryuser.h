// SPDX-License-Identifier: MIT
// Runs code without the superuser's rights, because file modes do not restrict the superuser. Used on the test's
// thread, which must be the only one.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

/// The result of `call` in a child process with an ordinary user's rights; null when the child failed.
template <typename Call> QString asOrdinaryUser(Call call)
{
    constexpr uid_t unprivilegedUser = 65534; // "nobody"
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) // a program that `call` starts must not keep the pipe open
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        if (::getuid() == 0 && (::setgid(unprivilegedUser) != 0 || ::setuid(unprivilegedUser) != 0))
            ::_exit(2);
        const QByteArray result = QFile::encodeName(call());
        const bool isWhole = ::write(ends[1], result.constData(), size_t(result.size())) == result.size();
        ::_exit(isWhole ? 0 : 3);
    }
    ::close(ends[1]);
    QFile reader;
    QString result;
    if (child > 0 && reader.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        result = QFile::decodeName(reader.readAll());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {};
    return result;
}
