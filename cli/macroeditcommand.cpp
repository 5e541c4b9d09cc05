// SPDX-License-Identifier: MIT
// "macro edit": the events of a macro as a text in the user's editor, until the text is right or the user gives up.
#include "cli/chosenrecord.h"
#include "cli/commandtable.h"
#include "cli/linewords.h"
#include "cli/macroeventsclient.h"
#include "macros/macrorecord.h"
#include "macros/macrotext.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Ctrl+C and Ctrl+\ are for the editor, which has the terminal. Ignoring them would make it ignore them as well.
class EditorSignals
{
public:
    EditorSignals() : mInterrupt(std::signal(SIGINT, noAction)), mQuit(std::signal(SIGQUIT, noAction)) {}
    ~EditorSignals()
    {
        std::signal(SIGINT, mInterrupt);
        std::signal(SIGQUIT, mQuit);
    }
    Q_DISABLE_COPY_MOVE(EditorSignals)

private:
    using Handler = void (*)(int);
    static void noAction(int) {}

    Handler mInterrupt;
    Handler mQuit;
};

/// The user's editor, with its arguments if it has any.
QString editor()
{
    for (const char *variable : {"VISUAL", "EDITOR"}) {
        if (const QString command = qEnvironmentVariable(variable); !command.trimmed().isEmpty())
            return command;
    }
    return u"vi"_s;
}

CommandResult<void> runEditor(const QString &path)
{
    const QString command = editor();
    const EditorSignals signalsOfEditor;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.start(u"/bin/sh"_s, {u"-c"_s, command + u" \"$1\""_s, command, path});
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return wrongUsage(u"the editor \"%1\" has failed; nothing is changed"_s.arg(command));
    return {};
}

Result<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    return file.readAll();
}

/// Asks on the terminal; true for Return and "y".
bool wantsToEditAgain(Console &console)
{
    console.printNow(u"edit again? [Y/n]"_s);
    std::array<char, 64> answer{};
    if (!std::fgets(answer.data(), int(answer.size()), stdin))
        return false;
    const QByteArray word = QByteArray(answer.data()).trimmed().toLower();
    return word.isEmpty() || word == "y" || word == "yes";
}

/// `error`; if the text differs from `before`, with its place, where it stays.
CommandError withText(CommandError error, QTemporaryDir &folder, const QString &path, const QByteArray &before)
{
    const Result<QByteArray> text = contentOf(path);
    if (!QFile::exists(path) || (text && *text == before))
        return error;
    folder.setAutoRemove(false);
    error.message += u"; your text is in "_s + path;
    return error;
}

QByteArray textFor(const ChosenRecord &macro, const QVariantList &events)
{
    const QString head = u"# The events of %1. A # begins a comment.\n"
                         "# press KEY, release KEY, tap KEY, click 1, wait 100 ms (all of them: man kestractl)\n"_s.arg(
                             MacroText::nameLine(MacroRecord::name(macro.record())).sliced(5).trimmed());
    return (head + MacroText::write(events)).toUtf8();
}

} // namespace

CommandResult<void> editMacro(CommandContext &context)
{
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    const QVariantList events = MacroRecord::events(chosen->record());
    QTemporaryDir folder; // readable by the user alone
    const QString path = folder.filePath(u"macro.txt"_s);
    QFile file(path);
    const QByteArray before = textFor(*chosen, events);
    if (!file.open(QIODevice::WriteOnly) || file.write(before) != before.size() || !file.flush())
        return CommandError{{u"the text cannot be written to \"%1\": %2"_s.arg(path, file.errorString())},
                            ExitCode::noOutput};
    file.close();
    for (;;) {
        if (const CommandResult<void> edited = runEditor(path); !edited)
            return withText(edited.error(), folder, path, before);
        const Result<QByteArray> text = contentOf(path);
        if (!text)
            return withText(wrongUsage(u"\"%1\" cannot be read: %2"_s.arg(path, text.error().message)), folder, path,
                            before);
        const auto content = MacroText::parse(*text);
        QString fault = content ? QString() : content.error().message;
        if (content && content->name)
            fault = u"a name cannot be changed here (see kestractl macro rename)"_s;
        if (!fault.isEmpty()) {
            context.console.fail(ExitCode::usage, fault);
            if (wantsToEditAgain(context.console))
                continue;
            return withText(wrongUsage(u"nothing is changed"_s), folder, path, before);
        }
        if (MacroRecord::digest(content->events) == MacroRecord::digest(events)) {
            context.console.print(chosen->words() + u" is unchanged"_s);
            return {};
        }
        if (const CommandResult<void> stored = replaceEvents(*chosen, content->events); !stored)
            return withText(stored.error(), folder, path, before);
        printStored(context.console, chosen->words() + u" is changed: "_s + eventCount(content->events.size()),
                    content->events);
        return {};
    }
}
