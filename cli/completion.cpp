// SPDX-License-Identifier: MIT
#include "cli/completion.h"

#include "cli/commandtable.h"
#include "cli/keyassignments.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isOption(const QString &word)
{
    return word.startsWith(u'-');
}

bool takesValue(const QString &option)
{
    return std::ranges::find(Options::withValue, option) != Options::withValue.end();
}

/// One way to write the words after a command's name.
struct Form
{
    QStringList arguments;         ///< "KEY", "N|NAME", "on|off"
    QMap<QString, QString> values; ///< option -> what follows it, empty for one without a value
    bool isRepeated = false;       ///< the last argument
};

/// Reads a form as the help shows it.
Form readForm(QString text)
{
    Form form;
    form.isRepeated = text.endsWith("..."_L1);
    static const QRegularExpression decoration(u"[\\[\\]]|,?\\.\\.\\."_s);
    const QStringList words = text.remove(decoration).split(u' ', Qt::SkipEmptyParts);
    for (qsizetype position = 0; position < words.size(); ++position) {
        const QString &word = words.at(position);
        if (!isOption(word))
            form.arguments += word;
        else
            form.values.insert(word, takesValue(word) ? words.value(++position) : QString());
    }
    return form;
}

QList<Form> formsOf(const CommandRow &row)
{
    QList<Form> forms;
    if (!row.forms) {
        forms += readForm(row.arguments);
        for (const QString &option : QString(row.options).split(u' ', Qt::SkipEmptyParts))
            forms.last().values.insert(option, {});
        return forms;
    }
    for (const CommandForm &form : row.forms())
        forms += readForm(form.words);
    return forms;
}

/// The words of an argument that users type unchanged; none if it is a placeholder alone.
QStringList fixedWords(const QString &argument)
{
    static const QRegularExpression fixed(u"^[a-z][a-z-]*$"_s);
    return argument.split(u'|').filter(fixed);
}

bool isPlaceholder(const QString &argument)
{
    return fixedWords(argument).size() < argument.split(u'|').size();
}

/// Whether a line so far fits a form.
bool fits(const Form &form, const QStringList &arguments, const QStringList &options)
{
    if (!std::ranges::all_of(options, [&form](const QString &option) { return form.values.contains(option); }))
        return false;
    if (arguments.size() > form.arguments.size() && !form.isRepeated)
        return false;
    for (qsizetype position = 0; position < std::min(arguments.size(), form.arguments.size()); ++position) {
        const QString &argument = form.arguments.at(position);
        if (!isPlaceholder(argument) && !fixedWords(argument).contains(arguments.at(position)))
            return false;
    }
    return true;
}

/// A shell would have to quote the spaces of a name.
QString nameWithoutSpaces(int code)
{
    const QStringList names = keyNames(code);
    const auto found = std::ranges::find_if(names, [](const QString &name) { return !name.contains(u' '); });
    return found == names.end() ? keyName(code) : *found;
}

QStringList namesOfKeys(bool onlyModifiers)
{
    QStringList names;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        if (!onlyModifiers || modifierBit(row.code) != 0)
            names += nameWithoutSpaces(row.code);
    }
    return names;
}

/// Completes one line. The words before the last one do not change.
class Line
{
public:
    Line(const QStringList &words, const ValuesOfKind &valuesOfKind)
        : mBefore(words.first(words.size() - 1)), mCurrent(words.last()), mValuesOfKind(valuesOfKind)
    {
    }

    Completions completions()
    {
        const bool isHelp = !mBefore.isEmpty() && mBefore.first() == "help"_L1;
        if (isHelp)
            mBefore.removeFirst();
        addNames(mBefore.isEmpty() && !isHelp);
        const CommandRow *row = isHelp ? nullptr : findRow();
        if (row)
            addAfterName(*row);
        return mFound;
    }

private:
    void add(const QString &word, const QString &help = {})
    {
        const bool isKnown =
            std::ranges::any_of(mFound.words, [&word](const Completion &found) { return found.word == word; });
        if (!isKnown && word.startsWith(mCurrent))
            mFound.words += {word, help};
    }

    /// The next words of commands' names.
    void addNames(bool isFirstWord)
    {
        for (const CommandRow &row : commandTable()) {
            const QStringList name = QString(row.name).split(u' ');
            if (name.size() > mBefore.size() && name.first(mBefore.size()) == mBefore)
                add(name.at(mBefore.size()), name.size() == mBefore.size() + 1 ? QString(row.help) : QString());
        }
        if (!isFirstWord)
            return;
        add(u"help"_s, u"show how a command is written"_s);
        if (isOption(mCurrent)) {
            add(u"--help"_s);
            add(u"--version"_s);
        }
    }

    /// The row with the longest name that the line begins with.
    const CommandRow *findRow() const
    {
        const CommandRow *longest = nullptr;
        for (const CommandRow &row : commandTable()) {
            const QStringList name = QString(row.name).split(u' ');
            if (mBefore.first(std::min(name.size(), mBefore.size())) == name
                && (!longest || row.name.size() > longest->name.size()))
                longest = &row;
        }
        return longest;
    }

    void addAfterName(const CommandRow &row)
    {
        QStringList arguments;
        QStringList options;
        bool isValue = false; // the next word belongs to the option before it
        for (const QString &word : mBefore.sliced(QString(row.name).count(u' ') + 1)) {
            if (isValue) {
                isValue = false;
            } else if (isOption(word)) {
                options += word;
                isValue = takesValue(word);
            } else {
                arguments += word;
            }
        }
        for (const Form &form : formsOf(row)) {
            if (!fits(form, arguments, options))
                continue;
            if (isValue)
                addArgument(form.values.value(mBefore.last()), row, arguments);
            else
                addNext(form, row, arguments, options);
        }
    }

    void addNext(const Form &form, const CommandRow &row, const QStringList &arguments, const QStringList &options)
    {
        if (isOption(mCurrent)) {
            for (const QString &option : form.values.keys()) {
                if (!options.contains(option))
                    add(option);
            }
            return;
        }
        if (arguments.size() < form.arguments.size())
            addArgument(form.arguments.at(arguments.size()), row, arguments);
        else if (form.isRepeated)
            addArgument(form.arguments.last(), row, arguments);
    }

    void addArgument(const QString &argument, const CommandRow &row, const QStringList &arguments)
    {
        for (const QString &word : fixedWords(argument))
            add(word);
        if (argument == "FILE"_L1 || argument == "PATH"_L1 || argument == "APPLICATION"_L1)
            mFound.canBeFile = true;
        for (const QString &value : values(argument, row, arguments))
            add(value);
    }

    QStringList values(const QString &placeholder, const CommandRow &row, const QStringList &arguments) const
    {
        if (placeholder == "KEY"_L1 || placeholder == "MODIFIER"_L1)
            return namesOfKeys(placeholder == "MODIFIER"_L1);
        if (placeholder == "ID"_L1)
            return mValuesOfKind(CompletionValues::keyboards);
        if (placeholder == "DATE"_L1)
            return mValuesOfKind(CompletionValues::backups);
        if (placeholder != "N|NAME"_L1)
            return {};
        // Of the command's own kind, or of the kind that the word before it names: "key A macro NAME".
        const bool isMacro = row.name.startsWith("macro"_L1) || arguments.value(1) == "macro"_L1;
        return mValuesOfKind(isMacro ? CompletionValues::macros : CompletionValues::profiles);
    }

    QStringList mBefore;
    QString mCurrent;
    const ValuesOfKind &mValuesOfKind;
    Completions mFound;
};

} // namespace

Completions completionsOf(const QStringList &words, const ValuesOfKind &valuesOfKind)
{
    return Line(words.isEmpty() ? QStringList{QString()} : words, valuesOfKind).completions();
}
