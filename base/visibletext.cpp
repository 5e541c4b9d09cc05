// SPDX-License-Identifier: MIT
#include "base/visibletext.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace {

bool isInvisible(char32_t character)
{
    constexpr char32_t nonJoiner = 0x200c;
    constexpr char32_t joiner = 0x200d;
    constexpr char32_t firstTag = 0xe0020;
    constexpr char32_t lastTag = 0xe007f;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph: return true;
    case QChar::Other_Format:
        return character != nonJoiner && character != joiner && (character < firstTag || character > lastTag);
    default: return false;
    }
}

/// Returns `text` with `replacement(character)` for each invisible character. A surrogate without its other half, which
/// no encoding can have, becomes the replacement character.
template <typename Replacement> QString replaced(const QString &text, Replacement replacement)
{
    QString result;
    result.reserve(text.size());
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters) {
        if (isInvisible(character))
            result += replacement(character);
        else
            result += QChar::fromUcs4(character);
    }
    return result;
}

QString jsonEscape(char32_t character)
{
    if (character == U'\n') // between the values; within a string it is already escaped
        return u"\n"_s;
    QString escape;
    for (const char16_t unit : QChar::fromUcs4(character))
        escape += u"\\u%1"_s.arg(uint(unit), 4, 16, QChar(u'0'));
    return escape;
}

} // namespace

QString visibleText(const QString &text, QChar replacement)
{
    return replaced(text, [replacement](char32_t) { return replacement; });
}

QString visibleJson(const QString &json)
{
    return replaced(json, jsonEscape);
}
