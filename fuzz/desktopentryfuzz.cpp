// SPDX-License-Identifier: MIT
// Desktop entries. Whatever the file contains, its command line is refused, or it has a program and does not exceed the
// size limit of files. A key can only start the executable file that the entry names.
#include "daemon/launch/programlauncher.h"
#include "fuzz/target.h"
#include "platform/applicationinformation.h"
#include "platform/desktopentry.h"

#include <QFileInfo>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// `program` is what the entry names: by its full path, or by a file name that was looked up.
void requireRunnable(const Result<ProgramLauncher::Plan> &plan, const QString &program)
{
    if (!plan)
        return;
    require(!plan->command.isEmpty(), "a plan has a command");
    const QFileInfo started(plan->command.constFirst());
    require(started.isAbsolute() && started.isFile() && started.isExecutable(), "what is started may be run");
    require(program.startsWith(u'/') ? started == QFileInfo(program) : started.fileName() == program,
            "what is started is what the entry names");
}

void desktopentry(QByteArrayView input)
{
    const QString path = workFolder().filePath(u"fuzz.desktop"_s);
    QString program;
    if (const auto entry = DesktopEntry::parse(input.toByteArray(), path)) {
        (void)entry->localText(u"Name"_s, u"de_CH.UTF-8@euro"_s);
        const QStringList words = entry->commandLine().value_or(QStringList{u"none"_s});
        require(!words.isEmpty() && !words.constFirst().isEmpty(), "a command line has a program");
        program = words.constFirst();
        const qsizetype length = std::accumulate(words.cbegin(), words.cend(), qsizetype(0),
                                                 [](qsizetype sum, const QString &word) { return sum + word.size(); });
        require(length <= DesktopEntry::maximumFileBytes + 6 * words.size(), "a command line is bounded");
    }
    writeWorkFile(path, input);
    (void)ApplicationInformation::read(path);
    requireRunnable(ProgramLauncher::planFor(path), program);
}

} // namespace

KESTRA_FUZZ_TARGET(desktopentry)
