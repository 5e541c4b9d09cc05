// SPDX-License-Identifier: MIT
// quill-kestra-keyboard-rule: gives the user at the seat the right to one keyboard, or takes it back. Started by
// pkexec, after the user has given an administrator's password.
#include "rulehelper/systemservices.h"

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum ExitCode { refused = 1, wrongUsage = 2 };

int fail(const Error &error, ExitCode code)
{
    std::fprintf(stderr, "quill-kestra-keyboard-rule: %s\n", qUtf8Printable(error.message));
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    ::clearenv();
    ::umask(022);
    if (::chdir("/") != 0 || ::close_range(3, ~0U, 0) != 0)
        return fail({u"cannot leave the caller's environment"_s}, refused);
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments += QString::fromUtf8(argv[index]);
    const Result<RuleHelper::Request> request = RuleHelper::requestOf(arguments);
    if (!request)
        return fail(request.error(), wrongUsage);
    const Result<void> done = RuleHelper::carryOut(*request, RuleHelper::systemServices());
    return done ? EXIT_SUCCESS : fail(done.error(), refused);
}
