// SPDX-License-Identifier: MIT
#include "base/xmlplistreader.h"

#include "base/propertylistbudget.h"
#include "base/xmloutline.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Recursive descent over the element tree. Every read… function starts at a value's start element. When it returns
/// true, it has consumed the end element.
class Reader
{
public:
    explicit Reader(const QString &text) : mXml(text)
    {
        // A property list has no namespaces. With them, the parser would compare each element with all declared ones.
        mXml.setNamespaceProcessing(false);
    }

    std::optional<QVariant> read()
    {
        QVariant root;
        if (!nextElement() || mXml.qualifiedName() != "plist"_L1)
            return {};
        if (!nextElement() || !readValue(root, 1) || nextElement()) // exactly one value
            return {};
        while (!mXml.atEnd() && !mFailed) {
            if (mXml.readNext() == QXmlStreamReader::StartElement)
                mFailed = true;
        }
        return mFailed || mXml.hasError() ? std::nullopt : std::optional<QVariant>(root);
    }

private:
    /// Moves to the next start element. False at the end of the surrounding element, and permanently after an error.
    bool nextElement()
    {
        while (!mFailed && !mXml.atEnd()) {
            switch (mXml.readNext()) {
            case QXmlStreamReader::StartElement: return true;
            case QXmlStreamReader::EndElement: return false;
            case QXmlStreamReader::Characters: mFailed = !mXml.isWhitespace(); break;
            case QXmlStreamReader::DTD:
            case QXmlStreamReader::StartDocument:
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction: break;
            default: mFailed = true;
            }
        }
        mFailed = true;
        return false;
    }

    bool readValue(QVariant &value, int depth)
    {
        if (!mBudget.takeNodes(1))
            return fail();
        const QStringView name = mXml.qualifiedName();
        if (name == "dict"_L1)
            return readDictionary(value, depth);
        if (name == "array"_L1)
            return readArray(value, depth);
        if (name == "true"_L1 || name == "false"_L1)
            return readBoolean(value, name == "true"_L1);
        struct Scalar
        {
            QLatin1StringView name;
            bool (*parse)(const QString &text, QVariant &value);
        };
        static constexpr Scalar scalars[] = {{"string"_L1, parseString},
                                             {"integer"_L1, parseInteger},
                                             {"real"_L1, parseReal},
                                             {"data"_L1, parseData},
                                             {"date"_L1, parseDate}};
        for (const Scalar &scalar : scalars) {
            if (name == scalar.name) {
                const QString text = readText();
                return !mFailed && (scalar.parse(text, value) || fail());
            }
        }
        return fail();
    }

    bool readDictionary(QVariant &value, int depth)
    {
        if (depth > PropertyList::maximumDepth)
            return fail();
        QVariantMap dictionary;
        while (nextElement()) {
            if (mXml.qualifiedName() != "key"_L1 || !mBudget.takeNodes(1))
                return fail();
            const QString key = readText();
            QVariant element;
            if (mFailed || !nextElement() || !readValue(element, depth + 1))
                return fail();
            dictionary.insert(key, element);
        }
        value = dictionary;
        return !mFailed;
    }

    bool readArray(QVariant &value, int depth)
    {
        if (depth > PropertyList::maximumDepth)
            return fail();
        QVariantList array;
        while (nextElement()) {
            QVariant element;
            if (!readValue(element, depth + 1))
                return fail();
            array.append(element);
        }
        value = array;
        return !mFailed;
    }

    bool readBoolean(QVariant &value, bool boolean)
    {
        value = boolean;
        return readText().trimmed().isEmpty() && !mFailed ? true : fail();
    }

    /// Returns the text up to the end of the element, which may contain only text. (QXmlStreamReader::readElementText
    /// would skip entities that it does not know.)
    QString readText()
    {
        QString text = u""_s;
        while (!mFailed) {
            switch (mXml.readNext()) {
            case QXmlStreamReader::Characters: text += mXml.text(); break;
            case QXmlStreamReader::EndElement: mFailed = !mBudget.takeContent(quint64(text.size()) * 2); return text;
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction: break;
            default: mFailed = true;
            }
        }
        return text;
    }

    static bool parseString(const QString &text, QVariant &value)
    {
        value = text;
        return true;
    }

    /// Accepts a decimal number, or a hexadecimal one after 0x, with an optional sign; from INT64_MIN to UINT64_MAX.
    static bool parseInteger(const QString &text, QVariant &value)
    {
        QStringView digits = QStringView(text).trimmed();
        const bool isNegative = digits.startsWith(u'-');
        if (isNegative || digits.startsWith(u'+'))
            digits = digits.sliced(1);
        const bool isHexadecimal = digits.startsWith("0x"_L1, Qt::CaseInsensitive);
        if (isHexadecimal)
            digits = digits.sliced(2);
        if (digits.isEmpty() || !QChar(digits.front()).isLetterOrNumber()) // a second sign
            return false;
        bool ok = false;
        const qulonglong magnitude = digits.toULongLong(&ok, isHexadecimal ? 16 : 10);
        constexpr auto maximum = qulonglong(std::numeric_limits<qlonglong>::max());
        if (!ok || (isNegative && magnitude > maximum + 1))
            return false;
        if (!isNegative && magnitude > maximum) {
            value = magnitude;
            return true;
        }
        const auto number = qlonglong(isNegative ? 0 - magnitude : magnitude);
        const auto narrow = int(number);
        value = narrow == number ? QVariant(narrow) : QVariant(number);
        return true;
    }

    /// True if `text` is digits with an optional sign, fraction and exponent, in lower case.
    static bool isDecimalNumber(QStringView text)
    {
        const auto take = [&text](QStringView characters) {
            const bool isThere = !text.isEmpty() && characters.contains(text.front());
            text = text.sliced(isThere ? 1 : 0);
            return isThere;
        };
        const auto takeDigits = [&take] {
            bool areThere = false;
            while (take(u"0123456789"))
                areThere = true;
            return areThere;
        };
        take(u"+-");
        bool hasDigits = takeDigits();
        if (take(u"."))
            hasDigits = takeDigits() || hasDigits;
        if (hasDigits && take(u"e")) {
            take(u"+-");
            hasDigits = takeDigits();
        }
        return hasDigits && text.isEmpty();
    }

    static bool parseReal(const QString &text, QVariant &value)
    {
        QString number = text.trimmed().toLower();
        number.replace("infinity"_L1, "inf"_L1);
        bool ok = false;
        const double real = number.toDouble(&ok);
        // For a number out of range, toDouble() fails, with infinity or zero as its result. As in strtod, this is the
        // number.
        value = ok ? real : std::copysign(real, number.startsWith(u'-') ? -1.0 : 1.0);
        return ok || isDecimalNumber(number);
    }

    static bool parseData(const QString &text, QVariant &value)
    {
        QByteArray characters = text.toUtf8();
        characters.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
        if (characters.size() % 4 != 0) // the decoder would accept it
            return false;
        const auto decoded =
            QByteArray::fromBase64Encoding(std::move(characters), QByteArray::AbortOnBase64DecodingErrors);
        value = decoded.decoded;
        return bool(decoded);
    }

    /// Accepts "2011-05-17T09:30:00Z", always UTC.
    static bool parseDate(const QString &text, QVariant &value)
    {
        const QString trimmed = text.trimmed();
        if (trimmed.size() != 20 || !trimmed.endsWith(u'Z'))
            return false;
        const QDateTime date = QDateTime::fromString(trimmed, Qt::ISODate);
        value = date.toUTC();
        return date.isValid();
    }

    bool fail()
    {
        mFailed = true;
        return false;
    }

    QXmlStreamReader mXml;
    PropertyListBudget mBudget;
    bool mFailed = false;
};

/// Returns the encoding that the declaration at the start of `data` names, or UTF-8 if it names none. Absent when the
/// declaration is not well-formed.
std::optional<QByteArray> declaredEncoding(QByteArrayView data)
{
    constexpr qsizetype longestDeclaration = 256;
    QXmlStreamReader declaration(data.first(std::min(data.size(), longestDeclaration)).toByteArray());
    declaration.readNext();
    if (declaration.error() == QXmlStreamReader::NotWellFormedError)
        return {};
    const QByteArray encoding = declaration.documentEncoding().toLatin1();
    return encoding.isEmpty() ? QByteArray("UTF-8") : encoding;
}

} // namespace

bool isXmlPropertyList(QStringView text)
{
    const QStringView start = text.trimmed();
    return start.startsWith("<?"_L1) || start.startsWith("<!"_L1) || start.startsWith("<plist"_L1);
}

std::optional<QVariant> readXmlPropertyList(QByteArrayView data)
{
    const std::optional<QByteArray> encoding = declaredEncoding(data);
    if (!encoding)
        return {};
    QStringDecoder decoder(encoding->constData());
    if (!decoder.isValid())
        return {};
    const QString text = decoder.decode(data);
    return decoder.hasError() ? std::nullopt : readXmlPropertyList(text);
}

std::optional<QVariant> readXmlPropertyList(const QString &text)
{
    return outlineOfXml(text).isWithinLimits ? Reader(text).read() : std::nullopt;
}
