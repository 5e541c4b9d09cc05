// SPDX-License-Identifier: MIT
#include "platform/desktopentry.h"

#include "base/regularfile.h"

#include <QFile>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString withoutEscapes(const QString &raw)
{
    QString text;
    text.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const QChar next = i + 1 < raw.size() ? raw.at(i + 1) : QChar();
        const qsizetype known = raw.at(i) == u'\\' && !next.isNull() ? u"sntr\\"_s.indexOf(next) : -1;
        if (known < 0) {
            text += raw.at(i);
            continue;
        }
        text += u" \n\t\r\\"_s.at(known);
        ++i;
    }
    return text;
}

/// The languages that `locale` (lang_COUNTRY.ENCODING@MODIFIER) matches, best match first.
QStringList languagesOf(const QString &locale)
{
    const QString modifier = locale.section(u'@', 1);
    const QString territory = locale.section(u'@', 0, 0).section(u'.', 0, 0);
    const QString language = territory.section(u'_', 0, 0);
    QStringList languages;
    if (territory != language && !modifier.isEmpty())
        languages += territory + u'@' + modifier;
    if (territory != language)
        languages += territory;
    if (!modifier.isEmpty())
        languages += language + u'@' + modifier;
    return languages << language;
}

/// Splits an "Exec" value into words, one character at a time.
class ExecReader
{
public:
    explicit ExecReader(const DesktopEntry &entry) : mEntry(entry), mLine(entry.text(u"Exec"_s)) {}

    std::optional<QStringList> words()
    {
        for (; mPosition < mLine.size() && mLength <= DesktopEntry::maximumFileBytes; ++mPosition) {
            const QChar character = mLine.at(mPosition);
            if (character == u'%') {
                if (!readFieldCode())
                    return {};
            } else if (character == u'"') {
                mIsQuoted = !mIsQuoted;
                mIsInWord = true;
            } else if (mIsQuoted && character == u'\\' && u"\"`$\\"_s.contains(following())) {
                append(following());
                ++mPosition;
            } else if (!mIsQuoted && isBlank(character)) {
                endWord();
            } else {
                append(QStringView(&character, 1));
            }
        }
        endWord();
        if (mIsQuoted || mLength > DesktopEntry::maximumFileBytes || mWords.isEmpty() || mWords.constFirst().isEmpty())
            return {};
        return mWords;
    }

private:
    static bool isBlank(QChar character) { return character == u' ' || character == u'\t' || character == u'\n'; }

    /// The character after the current one; empty at the end of the line.
    [[nodiscard]] QStringView following() const
    {
        return QStringView(mLine).sliced(mPosition + 1, mPosition + 1 < mLine.size() ? 1 : 0);
    }

    bool readFieldCode()
    {
        ++mPosition;
        switch (mPosition < mLine.size() ? mLine.at(mPosition).unicode() : u'\0') {
        case u'f':
        case u'F':
        case u'u':
        case u'U': // files and addresses: none are passed
        case u'd':
        case u'D':
        case u'n':
        case u'N':
        case u'v':
        case u'm': // deprecated
            return true;
        case u'%': append(u"%"); return true;
        case u'c': append(mEntry.localText(u"Name"_s)); return true;
        case u'k': append(mEntry.path()); return true;
        case u'i': appendIcon(); return true;
        default: return false;
        }
    }

    /// Appends two separate words. Inside another word the code is ignored.
    void appendIcon()
    {
        const bool isWord = !mIsInWord && (following().isEmpty() || isBlank(following().front()));
        const QString icon = isWord ? mEntry.text(u"Icon"_s) : QString();
        if (icon.isEmpty())
            return;
        mWords << u"--icon"_s << icon;
        mLength += icon.size();
    }

    void append(QStringView text)
    {
        mWord += text;
        mLength += text.size();
        mIsInWord = true;
    }

    void endWord()
    {
        if (mIsInWord)
            mWords += std::exchange(mWord, QString());
        mIsInWord = false;
    }

    const DesktopEntry &mEntry;
    const QString mLine;
    qsizetype mPosition = 0;
    qsizetype mLength = 0; // of all words
    bool mIsQuoted = false;
    bool mIsInWord = false; // a quoted word may be empty
    QString mWord;
    QStringList mWords;
};

} // namespace

std::optional<DesktopEntry> DesktopEntry::read(const QString &path)
{
    QFile file(path);
    if (!openRegularFile(file))
        return {};
    const QByteArray content = readUpTo(file, maximumFileBytes + 1);
    return content.size() <= maximumFileBytes ? parse(content, path) : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray &content, const QString &path)
{
    DesktopEntry entry;
    entry.mPath = path;
    bool isInGroup = false;
    bool hasGroup = false;
    for (const QString &rawLine : QString::fromUtf8(content).split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(u'[')) {
            isInGroup = line == "[Desktop Entry]"_L1;
            hasGroup = hasGroup || isInGroup;
        } else if (const qsizetype equals = line.indexOf(u'='); isInGroup && equals > 0 && !line.startsWith(u'#')) {
            entry.mValues.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return hasGroup ? std::optional(entry) : std::nullopt;
}

QString DesktopEntry::text(const QString &key) const
{
    return withoutEscapes(mValues.value(key));
}

QString DesktopEntry::localText(const QString &key, const QString &locale) const
{
    for (const QString &language : languagesOf(locale)) {
        const QString localKey = key + u'[' + language + u']';
        if (mValues.contains(localKey))
            return text(localKey);
    }
    return text(key);
}

std::optional<QStringList> DesktopEntry::commandLine() const
{
    return ExecReader(*this).words();
}

QString DesktopEntry::messagesLocale()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString locale = qEnvironmentVariable(variable);
        if (!locale.isEmpty())
            return locale;
    }
    return u"C"_s;
}
