// SPDX-License-Identifier: MIT
#include "cli/documentfile.h"

#include "base/qlcoreutility.h"
#include "cli/plistjson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

CommandResult<QVariantMap> readJson(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return wrongUsage(
            u"line %1: %2"_s.arg(bytes.first(std::min<qsizetype>(error.offset, bytes.size())).count('\n') + 1)
                .arg(error.errorString()));
    if (!json.isObject())
        return wrongUsage(u"the JSON is not an object"_s);
    return propertyListFromJson(json.object()).toMap();
}

/// The place of the fault in XML; empty if the XML itself is well-formed.
QString xmlFault(const QByteArray &bytes)
{
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd())
        reader.readNext();
    if (!reader.hasError())
        return {};
    return u"line %1, column %2: %3"_s.arg(reader.lineNumber()).arg(reader.columnNumber()).arg(reader.errorString());
}

} // namespace

std::optional<QByteArray> DocumentFile::contents(const QString &path, const QVariantMap &document)
{
    if (!path.endsWith(".json"_L1, Qt::CaseInsensitive))
        return QlCoreUtility::convertDictionaryToData(document);
    return QJsonDocument(jsonFromPropertyList(document).toObject()).toJson();
}

CommandResult<QVariantMap> DocumentFile::read(const QByteArray &bytes)
{
    const QByteArray start = bytes.first(std::min<qsizetype>(bytes.size(), 1000)).trimmed();
    if (start.startsWith('{') || start.startsWith('['))
        return readJson(bytes);
    const bool isBinary = bytes.startsWith("bplist");
    const bool isXml = start.startsWith('<') || start.startsWith("\xef\xbb\xbf<");
    const std::optional<QVariantMap> document =
        isBinary || isXml ? QlCoreUtility::convertDataToDictionary(bytes) : std::nullopt;
    if (document)
        return *document;
    const QString fault = isXml ? xmlFault(bytes) : QString();
    return wrongUsage(!fault.isEmpty() ? fault
                      : isBinary       ? u"the binary property list is damaged, or has no dictionary"_s
                      : isXml          ? u"the XML is not a property list with a dictionary"_s
                                       : u"it is neither a binary or XML property list nor JSON"_s);
}
