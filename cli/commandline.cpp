// SPDX-License-Identifier: MIT
#include "cli/commandline.h"

#include "cli/commandtable.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QString synopsis(const CommandRow &row)
{
    QString text = u"kestractl %1"_s.arg(row.name);
    if (!row.arguments.isEmpty())
        text += u' ' + row.arguments;
    const QStringList options = QString(row.options).split(u' ', Qt::SkipEmptyParts);
    if (!options.isEmpty())
        text += u" [%1]"_s.arg(options.join(u'|'));
    return text;
}

void printHelp(Console &console)
{
    console.print(u"kestractl shows and changes what the daemon of the Quill Kestra keyboard holds.\n"_s);
    console.print(u"Usage:"_s);
    for (const CommandRow &row : commandTable())
        console.print(u"  %1\n        %2"_s.arg(synopsis(row), row.help));
    console.print(u"  kestractl help [COMMAND]\n  kestractl --help\n  kestractl --version\n"_s);
    console.print(u"KEY is a key's name (A, F1, LeftShift, NumPadSeven, M1) or its HID usage (225, 0x04)."_s);
    console.print(u"N is a number from \"profile list\"; the first profile is 0.\n"_s);
    console.print(u"Exit codes: 0 done, 1 refused by the daemon, 2 wrong usage, 3 no daemon, 4 no answer."_s);
}

ExitCode printHelpFor(const QStringList &words, Console &console)
{
    if (words.isEmpty()) {
        printHelp(console);
        return ExitCode::ok;
    }
    const QString wanted = words.join(u' ');
    bool found = false;
    for (const CommandRow &row : commandTable()) {
        if (row.name != wanted && !row.name.startsWith(QString(wanted + u' ')))
            continue;
        console.print(u"%1\n        %2"_s.arg(synopsis(row), row.help));
        found = true;
    }
    return found ? ExitCode::ok : console.fail(ExitCode::usage, u"no command \"%1\" (see kestractl --help)"_s.arg(wanted));
}

/// The row whose name the words begin with; two words before one.
const CommandRow *findRow(const QStringList &words)
{
    for (qsizetype count = std::min<qsizetype>(2, words.size()); count > 0; --count) {
        const QString name = words.first(count).join(u' ');
        for (const CommandRow &row : commandTable()) {
            if (row.name == name)
                return &row;
        }
    }
    return nullptr;
}

struct SplitLine
{
    QStringList words;
    QStringList options;
};

/// Options may stand anywhere before "--"; a single dash is a word.
SplitLine split(const QStringList &arguments)
{
    SplitLine line;
    bool onlyWords = false;
    for (const QString &argument : arguments) {
        if (!onlyWords && argument == "--"_L1)
            onlyWords = true;
        else if (!onlyWords && argument.size() > 1 && argument.startsWith(u'-'))
            line.options.append(argument);
        else
            line.words.append(argument);
    }
    return line;
}

ExitCode runRow(const CommandRow &row, const SplitLine &line, Console &console)
{
    const qsizetype nameWords = QString(row.name).count(u' ') + 1;
    const QStringList arguments = line.words.sliced(nameWords);
    if (arguments.size() < row.minimumArguments || arguments.size() > row.maximumArguments)
        return console.fail(ExitCode::usage, u"usage: %1"_s.arg(synopsis(row)));
    const QStringList allowed = QString(row.options).split(u' ', Qt::SkipEmptyParts);
    for (const QString &option : line.options) {
        if (!allowed.contains(option))
            return console.fail(ExitCode::usage, u"\"%1\" takes no option %2"_s.arg(row.name, option));
    }
    if (QSet<QString>(line.options.begin(), line.options.end()).size() > 1)
        return console.fail(ExitCode::usage, u"the options %1 exclude each other"_s.arg(line.options.join(u", "_s)));
    DaemonClient daemon;
    CommandContext context{.console = console, .daemon = daemon, .arguments = arguments, .options = line.options};
    return row.function(context);
}

} // namespace

ExitCode runCommandLine(const QStringList &arguments, Console &console)
{
    const SplitLine line = split(arguments);
    if (line.options.contains("--help"_L1) || line.options.contains("-h"_L1))
        return printHelpFor(line.words, console);
    if (line.options.contains("--version"_L1)) {
        console.print(u"kestractl %1"_s.arg(QLatin1StringView(KESTRA_VERSION)));
        return ExitCode::ok;
    }
    if (line.words.isEmpty())
        return console.fail(ExitCode::usage, u"no command given (see kestractl --help)"_s);
    if (line.words.first() == "help"_L1)
        return printHelpFor(line.words.sliced(1), console);
    if (const CommandRow *row = findRow(line.words))
        return runRow(*row, line, console);
    return console.fail(ExitCode::usage, u"no command \"%1\" (see kestractl --help)"_s.arg(line.words.join(u' ')));
}
