// SPDX-License-Identifier: MIT
#include "cli/plistjson.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QVariantMap>

namespace {

QJsonObject jsonFromDictionary(const QVariantMap &dictionary)
{
    QJsonObject object;
    for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it)
        object.insert(it.key(), jsonFromPropertyList(it.value()));
    return object;
}

QJsonArray jsonFromArray(const QVariantList &array)
{
    QJsonArray result;
    for (const QVariant &element : array)
        result.append(jsonFromPropertyList(element));
    return result;
}

} // namespace

QJsonValue jsonFromPropertyList(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: return jsonFromDictionary(value.toMap());
    case QMetaType::QVariantList: return jsonFromArray(value.toList());
    case QMetaType::QByteArray: return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QDateTime: return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    case QMetaType::ULongLong:
        // JSON readers keep 53 bits anyway; what fits a signed number stays exact here.
        if (value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
            return static_cast<double>(value.toULongLong());
        return value.toLongLong();
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Float:
    case QMetaType::Double: return QJsonValue::fromVariant(value);
    default: return QJsonValue::Null;
    }
}
