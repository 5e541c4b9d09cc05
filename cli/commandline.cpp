// SPDX-License-Identifier: MIT
#include "cli/commandline.h"

#include "cli/commandtable.h"
#include "cli/completioncommand.h"

#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A placeholder of the help, and its meaning.
struct Legend
{
    QLatin1StringView placeholder;
    QLatin1StringView text;
};

constexpr Legend legends[] = {
    {"ID"_L1, "ID is the ID of a keyboard, as \"kestractl device list\" shows it."_L1},
    {"ENTRY"_L1, "ENTRY is the number of a change, as \"kestractl history\" shows it."_L1},
    {"N|NAME"_L1, "N|NAME is a profile or macro: its number (the first one is 1), or its name in any letter case,\n"
                  "  if only one fits. name:2 is the one called \"2\"."_L1},
    {"APPLICATION"_L1, "APPLICATION is a desktop entry, by its path or its id, or an application bundle."_L1},
    {"KEY"_L1, "KEY is a key's name (A, F1, LeftShift, NumPadSeven, M1) or its HID usage (225, 0x04)."_L1},
    {"MODIFIER"_L1,
     "MODIFIER is a modifier key's name (LeftControl, RightShift). \"kestractl key --list\" lists all names."_L1},
    {"COLOR"_L1, "COLOR is six hexadecimal digits (ff8000), or red, orange, yellow, green, cyan, blue, purple,\n"
                 "  pink or white."_L1},
};

QString synopsis(const CommandRow &row)
{
    if (row.forms && row.forms().size() == 1)
        return u"kestractl %1 %2"_s.arg(row.name, row.forms().first().words);
    QString text = u"kestractl %1"_s.arg(row.name);
    if (!row.arguments.isEmpty())
        text += u' ' + row.arguments;
    const QStringList options = QString(row.options).split(u' ', Qt::SkipEmptyParts);
    if (!options.isEmpty())
        text += u" [%1]"_s.arg(options.join(u'|'));
    return text;
}

/// The lines of the help about one command.
QStringList helpLines(const CommandRow &row)
{
    if (!row.forms)
        return {synopsis(row), u"      "_s + row.help};
    QStringList lines;
    for (const CommandForm &form : row.forms())
        lines << u"kestractl %1 %2"_s.arg(row.name, form.words) << u"      "_s + form.help;
    return lines;
}

/// Prints the legends of the placeholders in `lines`, below an empty line.
void printLegends(const QStringList &lines, Console &console)
{
    QStringList texts;
    for (const Legend &legend : legends) {
        if (!lines.filter(legend.placeholder).isEmpty())
            texts += QString(legend.text).split(u'\n');
    }
    if (!texts.isEmpty())
        console.print({});
    for (const QString &text : std::as_const(texts))
        console.print(text);
}

void printHelp(Console &console)
{
    console.print(u"kestractl shows and changes the settings of the Quill Kestra keyboard."_s);
    console.print({});
    console.print(u"Usage:"_s);
    QStringList lines;
    for (const CommandRow &row : commandTable())
        lines += helpLines(row);
    for (const QString &line : std::as_const(lines))
        console.print(u"  "_s + line);
    console.print(u"  kestractl help [COMMAND]"_s);
    console.print(u"  kestractl --help"_s);
    console.print(u"  kestractl --version"_s);
    printLegends(lines, console);
    console.print({});
    console.print(u"Exit codes: 0 done, 1 refused by the daemon, 2 wrong usage, 3 no daemon, 4 no answer,"_s);
    console.print(u"  5 results not written, 6 done in part."_s);
}

bool isInGroup(const CommandRow &row, const QString &group)
{
    return row.name.startsWith(QString(group + u' '));
}

ExitCode printHelpFor(const QStringList &words, Console &console)
{
    if (words.isEmpty()) {
        printHelp(console);
        return ExitCode::ok;
    }
    const QString wanted = words.join(u' ');
    QStringList lines;
    for (const CommandRow &row : commandTable()) {
        if (row.name == wanted || isInGroup(row, wanted))
            lines += helpLines(row);
    }
    if (lines.isEmpty())
        return console.fail(ExitCode::usage, u"no command \"%1\" (see kestractl --help)"_s.arg(wanted));
    for (const QString &line : std::as_const(lines))
        console.print(line);
    printLegends(lines, console);
    return ExitCode::ok;
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
    QMap<QString, QString> options; // option -> its value, empty for one without
    QString problem;                // empty when the line can be read
};

/// Reads the option at `position`, which is moved to its value where that is the next word.
void readOption(SplitLine &line, const QStringList &arguments, qsizetype &position)
{
    const QString &argument = arguments.at(position);
    const QString option = argument.section(u'=', 0, 0);
    if (line.options.contains(option))
        line.problem = u"the option %1 is given twice"_s.arg(option);
    if (std::ranges::find(Options::withValue, option) == Options::withValue.end()) {
        line.options.insert(argument, QString()); // with its "=", which then is part of an unknown option
        return;
    }
    const bool hasOwnValue = argument.size() > option.size();
    if (!hasOwnValue && ++position == arguments.size()) {
        line.problem = u"the option %1 needs a value"_s.arg(option);
        return;
    }
    line.options.insert(option, hasOwnValue ? argument.sliced(option.size() + 1) : arguments.at(position));
}

/// Options can be anywhere before "--"; a single dash is a word.
SplitLine split(const QStringList &arguments)
{
    SplitLine line;
    bool onlyWords = false;
    for (qsizetype position = 0; position < arguments.size(); ++position) {
        const QString &argument = arguments.at(position);
        if (!onlyWords && argument == "--"_L1)
            onlyWords = true;
        else if (!onlyWords && argument.size() > 1 && argument.startsWith(u'-'))
            readOption(line, arguments, position);
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
    for (const QString &option : line.options.keys()) {
        if (!allowed.contains(option))
            return console.fail(ExitCode::usage, u"\"%1\" takes no option %2"_s.arg(row.name, option));
    }
    if (line.options.contains(Options::json) && line.options.contains(Options::plist))
        return console.fail(ExitCode::usage, u"the options --json, --plist exclude each other"_s);
    if (line.options.contains(Options::json) && line.options.contains(Options::text))
        return console.fail(ExitCode::usage, u"the options --json, --text exclude each other"_s);
    DaemonClient daemon;
    CommandContext context{.console = console, .daemon = daemon, .arguments = arguments, .options = line.options};
    const CommandResult<void> result = row.function(context);
    return result ? ExitCode::ok : console.fail(result.error().code, result.error().message);
}

} // namespace

ExitCode runCommandLine(const QStringList &arguments, Console &console)
{
    if (!arguments.isEmpty() && arguments.first() == "--complete"_L1) {
        printCompletions(arguments.sliced(1), console);
        return ExitCode::ok;
    }
    const SplitLine line = split(arguments);
    if (line.options.contains("--help"_L1) || line.options.contains("-h"_L1))
        return printHelpFor(line.words, console);
    if (line.options.contains("--version"_L1)) {
        console.print(u"kestractl %1"_s.arg(QLatin1StringView(KESTRA_VERSION)));
        return ExitCode::ok;
    }
    if (!line.problem.isEmpty())
        return console.fail(ExitCode::usage, line.problem);
    if (line.words.isEmpty())
        return console.fail(ExitCode::usage, u"no command given (see kestractl --help)"_s);
    if (line.words.first() == "help"_L1)
        return printHelpFor(line.words.sliced(1), console);
    if (const CommandRow *row = findRow(line.words))
        return runRow(*row, line, console);
    const QString &group = line.words.first();
    const bool isGroup =
        std::ranges::any_of(commandTable(), [&](const CommandRow &row) { return isInGroup(row, group); });
    return console.fail(ExitCode::usage, u"no command \"%1\" (see kestractl %2)"_s.arg(
                                             line.words.join(u' '), isGroup ? u"help "_s + group : u"--help"_s));
}
