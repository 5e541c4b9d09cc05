// SPDX-License-Identifier: MIT
#include "app/util/xmlplistreader.h"

#include "app/util/propertylistbudget.h"

#include <QDateTime>
#include <QXmlStreamReader>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Recursive descent over the element tree. Every read… function starts on a value's start element and, when it returns
/// true, has consumed its end element.
class Reader
{
public:
    explicit Reader(const QByteArray &data) : m_xml(data) {}
    explicit Reader(const QString &text) : m_xml(text) {}

    std::optional<QVariant> read()
    {
        QVariant root;
        if (!nextElement() || m_xml.name() != "plist"_L1)
            return {};
        if (!nextElement() || !readValue(root, 1) || nextElement()) // exactly one value
            return {};
        while (!m_xml.atEnd() && !m_failed) {
            if (m_xml.readNext() == QXmlStreamReader::StartElement)
                m_failed = true;
        }
        return m_failed || m_xml.hasError() ? std::nullopt : std::optional<QVariant>(root);
    }

private:
    /// Moves to the next start element; false at the end of the surrounding element, and for good after an error.
    bool nextElement()
    {
        while (!m_failed && !m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement: return true;
            case QXmlStreamReader::EndElement: return false;
            case QXmlStreamReader::Characters: m_failed = !m_xml.isWhitespace(); break;
            // A document type with declarations of its own could define entities that expand without end.
            case QXmlStreamReader::DTD: m_failed = m_xml.text().contains(u'['); break;
            case QXmlStreamReader::StartDocument:
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction: break;
            default: m_failed = true;
            }
        }
        m_failed = true;
        return false;
    }

    bool readValue(QVariant &value, int depth)
    {
        if (!m_budget.takeNodes(1))
            return fail();
        const QStringView name = m_xml.name();
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
                return !m_failed && (scalar.parse(text, value) || fail());
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
            if (m_xml.name() != "key"_L1 || !m_budget.takeNodes(1))
                return fail();
            const QString key = readText();
            QVariant element;
            if (m_failed || !nextElement() || !readValue(element, depth + 1))
                return fail();
            dictionary.insert(key, element);
        }
        value = dictionary;
        return !m_failed;
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
        return !m_failed;
    }

    bool readBoolean(QVariant &value, bool boolean)
    {
        value = boolean;
        return readText().trimmed().isEmpty() && !m_failed ? true : fail();
    }

    /// The text up to the end of the element; nothing but text may stand there. (QXmlStreamReader::readElementText
    /// would pass over entities that it does not know.)
    QString readText()
    {
        QString text = u""_s;
        while (!m_failed) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::Characters: text += m_xml.text(); break;
            case QXmlStreamReader::EndElement: m_failed = !m_budget.takeContent(quint64(text.size()) * 2); return text;
            case QXmlStreamReader::Comment:
            case QXmlStreamReader::ProcessingInstruction: break;
            default: m_failed = true;
            }
        }
        return text;
    }

    static bool parseString(const QString &text, QVariant &value)
    {
        value = text;
        return true;
    }

    /// Decimal, or hexadecimal behind 0x, with an optional sign; from INT64_MIN to UINT64_MAX.
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

    static bool parseReal(const QString &text, QVariant &value)
    {
        QString number = text.trimmed().toLower();
        number.replace("infinity"_L1, "inf"_L1);
        bool ok = false;
        value = number.toDouble(&ok);
        return ok;
    }

    static bool parseData(const QString &text, QVariant &value)
    {
        QByteArray characters = text.toUtf8();
        characters.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
        if (characters.size() % 4 != 0) // which the decoder would not mind
            return false;
        const auto decoded =
            QByteArray::fromBase64Encoding(std::move(characters), QByteArray::AbortOnBase64DecodingErrors);
        value = decoded.decoded;
        return bool(decoded);
    }

    /// "2011-05-17T09:30:00Z", always UTC.
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
        m_failed = true;
        return false;
    }

    QXmlStreamReader m_xml;
    PropertyListBudget m_budget;
    bool m_failed = false;
};

} // namespace

bool isXmlPropertyList(QStringView text)
{
    const QStringView start = text.trimmed();
    return start.startsWith("<?"_L1) || start.startsWith("<!"_L1) || start.startsWith("<plist"_L1);
}

std::optional<QVariant> readXmlPropertyList(const QByteArray &data)
{
    return Reader(data).read();
}

std::optional<QVariant> readXmlPropertyList(const QString &text)
{
    return Reader(text).read();
}
