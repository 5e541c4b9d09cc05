// SPDX-License-Identifier: MIT
#include "base/oldstyleplistreader.h"

#include "base/propertylistbudget.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The characters of "\200" to "\377": the upper half of the NEXTSTEP character set (unicode.org,
/// MAPPINGS/VENDORS/NEXT/NEXTSTEP.TXT), the original character set of this form.
constexpr std::array<char16_t, 128> nextStepUpperHalf = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, 0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC,
    0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9, 0x00DA, 0x00DB,
    0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, 0x00A9, 0x00A1, 0x00A2, 0x00A3, 0x2044, 0x00A5, 0x0192,
    0x00A7, 0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x00AE, 0x2013, 0x2020, 0x2021,
    0x00B7, 0x00A6, 0x00B6, 0x2022, 0x201A, 0x201E, 0x201D, 0x00BB, 0x2026, 0x2030, 0x00AC, 0x00BF, 0x00B9,
    0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD,
    0x02DB, 0x02C7, 0x2014, 0x00B1, 0x00BC, 0x00BD, 0x00BE, 0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5,
    0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1,
    0x0141, 0x00D8, 0x0152, 0x00BA, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB,
    0x0131, 0x00FC, 0x00FD, 0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD};

/// Returns the value of a hexadecimal digit, or -1 for any other character.
int hexadecimalDigit(QChar character)
{
    const char16_t c = character.unicode();
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

bool isOctalDigit(QChar character)
{
    return character >= u'0' && character <= u'7';
}

/// True for a character that a string may have without quotes.
bool isUnquoted(QChar character)
{
    const char16_t c = character.unicode();
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')
           || QLatin1StringView("_$/:.-").contains(character);
}

/// Recursive descent over the characters.
class Reader
{
public:
    explicit Reader(QStringView text) : mText(text) {}

    std::optional<QVariant> read()
    {
        QVariant root;
        if (!skipSpace() || mAt == mText.size() || !readRoot(root) || !skipSpace() || mAt != mText.size())
            return {};
        return root;
    }

private:
    QChar peek(qsizetype ahead = 0) const { return mAt + ahead < mText.size() ? mText[mAt + ahead] : QChar(); }

    bool take(char16_t character)
    {
        if (mAt >= mText.size() || mText[mAt] != character)
            return false;
        ++mAt;
        return true;
    }

    /// Skips space and comments; false if a comment has no end.
    bool skipSpace()
    {
        while (mAt < mText.size()) {
            if (peek() == u'/' && peek(1) == u'/') {
                while (mAt < mText.size() && peek() != u'\n' && peek() != u'\r')
                    ++mAt;
            } else if (peek() == u'/' && peek(1) == u'*') {
                const qsizetype end = mText.indexOf("*/"_L1, mAt + 2);
                if (end < 0)
                    return false;
                mAt = end + 2;
            } else if (peek().isSpace()) {
                ++mAt;
            } else {
                break;
            }
        }
        return true;
    }

    bool readRoot(QVariant &root)
    {
        if (QStringView(u"{(<").contains(peek()))
            return readValue(root, 1);
        // A file of strings has entries up to its end.
        return mBudget.takeNodes(1) && readEntries(root, 1, [this] { return mAt == mText.size(); });
    }

    bool readValue(QVariant &value, int depth)
    {
        if (!mBudget.takeNodes(1))
            return false;
        if (take(u'{'))
            return readDictionary(value, depth);
        if (take(u'('))
            return readArray(value, depth);
        if (take(u'<'))
            return readData(value);
        QString text;
        if (!readString(text))
            return false;
        value = text;
        return true;
    }

    bool readDictionary(QVariant &value, int depth)
    {
        return depth <= PropertyList::maximumDepth && skipSpace()
               && readEntries(value, depth, [this] { return take(u'}'); });
    }

    /// Reads the entries until `takeEnd`. The semicolon after the last one may be missing before a brace.
    template <typename TakeEnd> bool readEntries(QVariant &value, int depth, TakeEnd takeEnd)
    {
        QVariantMap dictionary;
        while (!takeEnd()) {
            QString key;
            QVariant element;
            if (!mBudget.takeNodes(1) || !readString(key) || !skipSpace() || !take(u'=') || !skipSpace()
                || !readValue(element, depth + 1) || !skipSpace())
                return false;
            dictionary.insert(key, element);
            if (!take(u';') && peek() != u'}')
                return false;
            if (!skipSpace())
                return false;
        }
        value = dictionary;
        return true;
    }

    /// A comma after the last element is allowed.
    bool readArray(QVariant &value, int depth)
    {
        QVariantList array;
        if (depth > PropertyList::maximumDepth || !skipSpace())
            return false;
        while (!take(u')')) {
            QVariant element;
            if (!readValue(element, depth + 1) || !skipSpace())
                return false;
            array.append(element);
            if (!take(u',') && peek() != u')')
                return false;
            if (!skipSpace())
                return false;
        }
        value = array;
        return true;
    }

    bool readData(QVariant &value)
    {
        QByteArray data("");
        int pending = -1;
        for (; mAt < mText.size() && peek() != u'>'; ++mAt) {
            if (peek().isSpace())
                continue;
            const int digit = hexadecimalDigit(peek());
            if (digit < 0)
                return false;
            if (pending < 0) {
                pending = digit;
            } else {
                data.append(char(pending << 4 | digit));
                pending = -1;
            }
        }
        value = data;
        return pending < 0 && take(u'>') && mBudget.takeContent(quint64(data.size()));
    }

    bool readString(QString &text)
    {
        const QChar quote = peek();
        if (quote == u'"' || quote == u'\'')
            return readQuoted(quote.unicode(), text);
        const qsizetype start = mAt;
        while (mAt < mText.size() && isUnquoted(peek()))
            ++mAt;
        text = mText.sliced(start, mAt - start).toString();
        return mAt > start && mBudget.takeContent(quint64(text.size()) * 2);
    }

    bool readQuoted(char16_t quote, QString &text)
    {
        ++mAt;
        text = u""_s;
        while (mAt < mText.size() && peek() != quote) {
            if (take(u'\\')) {
                if (mAt >= mText.size())
                    return false;
                text += readEscape();
            } else {
                text += mText[mAt++];
            }
        }
        return take(quote) && mBudget.takeContent(quint64(text.size()) * 2);
    }

    /// Reads what follows a backslash: a letter with a meaning, \Uxxxx, an octal code, or a character that means
    /// itself.
    QChar readEscape()
    {
        const QChar letter = mText[mAt];
        if (isOctalDigit(letter))
            return readOctal();
        ++mAt;
        switch (letter.unicode()) {
        case u'a': return u'\a';
        case u'b': return u'\b';
        case u'f': return u'\f';
        case u'n': return u'\n';
        case u'r': return u'\r';
        case u't': return u'\t';
        case u'v': return u'\v';
        case u'U': return readUnicode();
        default: return letter;
        }
    }

    QChar readOctal()
    {
        int code = 0;
        for (int i = 0; i < 3 && isOctalDigit(peek()); ++i)
            code = code * 8 + (mText[mAt++].unicode() - u'0');
        code &= 0xff;
        return code < 0x80 ? QChar(char16_t(code)) : QChar(nextStepUpperHalf[size_t(code - 0x80)]);
    }

    /// Reads a UTF-16 code unit of up to four hexadecimal digits. Without any, returns the letter U itself.
    QChar readUnicode()
    {
        if (hexadecimalDigit(peek()) < 0)
            return u'U';
        int code = 0;
        for (int i = 0; i < 4 && hexadecimalDigit(peek()) >= 0; ++i)
            code = code * 16 + hexadecimalDigit(mText[mAt++]);
        return char16_t(code);
    }

    QStringView mText;
    qsizetype mAt = 0;
    PropertyListBudget mBudget;
};

} // namespace

std::optional<QVariant> readOldStylePropertyList(QStringView text)
{
    return Reader(text).read();
}
