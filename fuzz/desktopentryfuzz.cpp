// SPDX-License-Identifier: MIT
// Desktop entries. Whatever the file contains, its command line is refused, or it has a program and does not exceed the
// size limit of files. A key can only start an executable file.
#include "daemon/launch/programlauncher.h"
#include "fuzz/target.h"
#include "platform/applicationinformation.h"
#include "platform/desktopentry.h"

#include <QFileInfo>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

void requireRunnable(const ProgramLauncher::Plan &plan)
{
    require(plan.isRefused() == plan.command.isEmpty(), "a refused plan has no command");
    if (plan.isRefused())
        return;
    const QFileInfo program(plan.command.constFirst());
    require(program.isAbsolute() && program.isFile() && program.isExecutable(), "what is started may be run");
}

void desktopentry(QByteArrayView input)
{
    const QString path = workFolder().filePath(u"fuzz.desktop"_s);
    if (const auto entry = DesktopEntry::parse(input.toByteArray(), path)) {
        (void)entry->localText(u"Name"_s, u"de_CH.UTF-8@euro"_s);
        const QStringList words = entry->commandLine().value_or(QStringList{u"none"_s});
        require(!words.isEmpty() && !words.constFirst().isEmpty(), "a command line has a program");
        const qsizetype length = std::accumulate(words.cbegin(), words.cend(), qsizetype(0),
                                                 [](qsizetype sum, const QString &word) { return sum + word.size(); });
        require(length <= DesktopEntry::maximumFileBytes + 6 * words.size(), "a command line is bounded");
    }
    writeWorkFile(path, input);
    (void)ApplicationInformation::read(path);
    requireRunnable(ProgramLauncher::planFor(path));
}

} // namespace

KESTRA_FUZZ_TARGET(desktopentry)
