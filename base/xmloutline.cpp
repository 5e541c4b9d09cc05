// SPDX-License-Identifier: MIT
#include "base/xmloutline.h"

#include "base/propertylist.h"

using namespace Qt::StringLiterals;

namespace {

/// Passes over the text once. Every skip… function starts at the first character of its markup. When it returns true,
/// it has passed the last one.
class Scanner
{
public:
    explicit Scanner(QStringView text) : mText(text) {}

    XmlOutline outline()
    {
        bool isGood = true;
        while (isGood && skipToMarkup())
            isGood = skipMarkup();
        return {.isWithinLimits = isGood, .steps = mAt + mComparisons};
    }

private:
    static bool isSpace(QChar character)
    {
        return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
    }

    bool skipToMarkup()
    {
        const qsizetype markup = mText.indexOf(u'<', mAt);
        mAt = markup < 0 ? mText.size() : markup;
        return markup >= 0;
    }

    bool skipMarkup()
    {
        const QStringView markup = mText.sliced(mAt);
        if (markup.startsWith("<!--"_L1))
            return skipThrough("-->"_L1, 4);
        if (markup.startsWith("<![CDATA["_L1))
            return skipThrough("]]>"_L1, 9);
        if (markup.startsWith("<!"_L1))
            return skipDocumentType();
        if (markup.startsWith("<?"_L1))
            return isDeclaration(markup) ? skipTag() : skipInstruction();
        if (markup.startsWith("</"_L1))
            return skipTag() && --mDepth >= 0;
        return skipElementStart();
    }

    bool skipThrough(QLatin1StringView end, qsizetype from)
    {
        const qsizetype at = mText.indexOf(end, mAt + from);
        mAt = at < 0 ? mText.size() : at + end.size();
        return at >= 0;
    }

    bool skipDocumentType()
    {
        const qsizetype start = mAt;
        return skipTag(Quoted::anywhere) && !mText.sliced(start, mAt - start).contains(u'[');
    }

    /// True for the XML declaration, which has attributes like an element. In other instructions quotes have no
    /// meaning.
    static bool isDeclaration(QStringView markup)
    {
        return markup.startsWith("<?xml"_L1) && markup.size() > 5 && isSpace(markup[5]);
    }

    bool skipInstruction()
    {
        const qsizetype start = mAt + 2;
        if (!skipThrough("?>"_L1, 2))
            return false;
        const QStringView instruction = mText.sliced(start, mAt - start - 2);
        qsizetype name = 0;
        while (name < instruction.size() && name <= maximumXmlName && !isSpace(instruction[name]))
            ++name;
        return name <= maximumXmlName;
    }

    bool skipElementStart()
    {
        // The element "plist" is not a value, and the deepest container may hold scalars.
        ++mElements;
        ++mDepth;
        if (mElements > qint64(PropertyList::maximumNodes) + 1 || mDepth > PropertyList::maximumDepth + 2 || !skipTag())
            return false;
        if (mText[mAt - 2] == u'/')
            --mDepth;
        return true;
    }

    static bool isQuote(QChar character) { return character == u'"' || character == u'\''; }

    static bool endsName(QChar character)
    {
        return isSpace(character) || isQuote(character) || character == u'=' || character == u'/';
    }

    /// Where text in quotes may be. The parser stops at the first that is elsewhere.
    enum class Quoted { asValue, anywhere };

    /// Skips everything up to a > outside quotes. Text in quotes is the value of an attribute.
    bool skipTag(Quoted quoted = Quoted::asValue)
    {
        int attributes = 0;
        qsizetype name = 0;
        QChar before = u' '; // the last character that is not a space
        for (++mAt; mAt < mText.size(); ++mAt) {
            const QChar character = mText[mAt];
            if (character == u'>') {
                ++mAt;
                return true;
            }
            if (character == u'=' && endsName(before))
                return false;
            if (isQuote(character)) {
                const bool isValue = before == u'=';
                if (!isValue && quoted == Quoted::asValue)
                    return false;
                mComparisons += isValue ? attributes : 0;
                const qsizetype end = mText.indexOf(character, mAt + 1);
                if (end < 0 || ++attributes > maximumXmlAttributes)
                    return false;
                mAt = end;
            }
            name = endsName(character) ? 0 : name + 1;
            if (name > maximumXmlName)
                return false;
            if (!isSpace(character))
                before = character;
        }
        return false;
    }

    QStringView mText;
    qsizetype mAt = 0;
    qint64 mElements = 0;
    qint64 mComparisons = 0;
    int mDepth = 0;
};

} // namespace

XmlOutline outlineOfXml(QStringView text)
{
    return Scanner(text).outline();
}
